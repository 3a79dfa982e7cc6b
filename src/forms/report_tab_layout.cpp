#include "forms/report_tab_layout.h"

#include "reports/report_request.h"

namespace cw {

namespace {

constexpr std::string_view kInCalls = "In Calls";
constexpr std::string_view kOutCalls = "Out Calls";
constexpr std::string_view kInAndOut = "In & Out";
constexpr std::string_view kIncludeGraph = "Include Graph";

ReportTabLayout DirectionTab() {
  ReportTabLayout layout;
  layout.option1 = kInCalls;
  layout.option2 = kOutCalls;
  layout.option3 = kInAndOut;
  return layout;
}

}  // namespace

ReportTabLayout LayoutOfTab(std::int16_t reportKind) {
  ReportTabLayout layout = DirectionTab();
  switch (reportKind) {
    case kind::kAllLinesBusy:
      // The options choose the listing or the summary; only the summary has
      // a chart.
      layout.option1 = "Busy Lines Occurance Listing";
      layout.option2 = "Busy Lines Stats Summary";
      layout.option3 = {};
      layout.directionOptions = false;
      layout.chart = true;
      layout.chartCaption = kIncludeGraph;
      break;
    case kind::kAbandonedCalls:
      // The abandoned-call box has its own in/out choice.
      layout.option1 = layout.option2 = layout.option3 = {};
      layout.directionOptions = false;
      layout.abandoned = true;
      break;
    case kind::kByName:
      layout.search = true;
      layout.searchLabel = "Name";
      break;
    case kind::kByTelNumber:
      layout.search = true;
      layout.searchLabel = "Number";
      break;
    case kind::kCallHistory:
      // Here the chart box chooses the condensed listing.
      layout.chart = true;
      layout.chartCaption = "Condensed Summary Version";
      break;
    case kind::kByLineNumber:
      layout.lines = true;
      break;
    case kind::kCallBacks:
      // Missed calls are inbound ones and their call backs go either way:
      // there is no direction to choose.
      layout.option1 = layout.option2 = layout.option3 = {};
      layout.directionOptions = false;
      layout.chart = true;
      layout.chartCaption = kIncludeGraph;
      layout.callBackWindow = true;
      break;
    default:  // daily call statistics, line usage
      layout.chart = true;
      layout.chartCaption = kIncludeGraph;
      break;
  }
  return layout;
}

}  // namespace cw
