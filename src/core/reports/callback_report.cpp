// The call-back report of tab 9: each missed inbound call of the period with
// the call that returned it (or "not returned"), a summary of how long the
// callers waited, and with "Include Graph" a chart of the four groups.

#include <cstdint>
#include <string>
#include <vector>

#include "data/log_buffer.h"
#include "data/record_selection.h"
#include "reports/callback_columns.h"
#include "reports/callback_rules.h"
#include "reports/chart_handover.h"
#include "reports/detail_rules.h"
#include "reports/progress_interval.h"
#include "reports/report_form.h"
#include "support/date_format.h"
#include "support/runtime_error.h"

namespace cw {

namespace {

constexpr std::string_view kNotReturned = "not returned";

std::vector<std::string> CallBackDataColumns() {
  return {"Date",          "Time",          "Number",        "Name",
          "Line",          "Returned",      "Returned Date", "Returned Time",
          "Returned Line", "Returned Direction", "Wait",     "Wait Seconds",
          "Group"};
}

}  // namespace

void ReportForm::Print_CallBacks() {
  std::string chartFile;  // set once a chart is asked for: deleted after the report
  try {
    OrlPrinter& document = *document_;
    const LogBuffer log = LogBuffer::Load(environment_.logPath);
    const std::int32_t window = request_.callBackWindowDays;
    if (window < 0) throw RuntimeError(err::kInvalidCall, "A call-back window of " + std::to_string(window) + " days");
    // A call missed near the period's end may be returned after it: the
    // walk goes on for the window past To, as far as the log goes.
    SelectionCriteria criteria = PeriodCriteria("InOut", environment_.logPath);
    criteria.to = toDate_.AddDays(window);
    RecordSelection selection(log.Text(), std::move(criteria));
    CallBackMatcher matcher(window, request_.abandoned);
    selection.ForEach(
        [&](const CallRecord& record, CivilDate date) { matcher.Add(record, date, date <= toDate_); },
        kProgressEvery, SelectionProgress(host_, selection));

    ReportData& data = *data_;
    data.Begin(CallBackDataColumns());
    auto right = [&](double x, std::string_view text) { document.TextOut(RightAlignedX(x, text), text); };
    std::int64_t written = 0;
    for (const MissedCall& missed : matcher.Missed()) {
      const CallRecord& call = missed.call;
      const std::string time = FormatTime(missed.time, "h:mmampm");
      // The line goes first: a page that begins at it sets the body font
      // before the right-aligned columns are measured.
      document.TextOut(callback::kLineX, call.Line());
      document.TextOut(callback::kNameX, call.Name());
      right(callback::kNumberX, call.Number());
      document.TextOut(callback::kDateX, call.Date());
      right(callback::kTimeX, time);
      if (missed.Returned()) {
        const CallRecord& back = missed.returnedBy;
        document.TextOut(callback::kReturnedX,
                         FormatDate(missed.returnDate, "mm/dd/yyyy") + " " + FormatTime(missed.returnTime, "h:mmampm"));
        document.TextOut(callback::kByLineX, std::string(back.Line()) + " " + std::string(back.Direction()));
        right(callback::kAfterX, TotalDurationText(missed.waitSeconds));
      } else {
        document.TextOut(callback::kReturnedX, kNotReturned);
      }
      document.NewLine();
      if (data.Keeping()) {
        const bool returned = missed.Returned();
        const CallRecord& back = missed.returnedBy;
        const std::string cells[] = {DataDate(missed.date),
                                     DataTime(missed.time),
                                     std::string(call.Number()),
                                     std::string(call.Name()),
                                     std::string(call.Line()),
                                     returned ? "yes" : "no",
                                     returned ? DataDate(missed.returnDate) : "",
                                     returned ? DataTime(missed.returnTime) : "",
                                     std::string(back.Line()),
                                     std::string(back.Direction()),
                                     returned ? TotalDurationText(missed.waitSeconds) : "",
                                     returned ? std::to_string(missed.waitSeconds) : "",
                                     std::string(CallBackWaitText(missed.Wait()))};
        data.AddRow(cells);
      }
      if (++written % kProgressEvery == 0) host_.DoEvents();
    }

    // The summary: how many missed calls waited how long, and their share.
    const auto counts = matcher.Counts();
    const auto missedCount = static_cast<std::int32_t>(matcher.Missed().size());
    document.NewLine();
    document.NewLine();
    SetHeadingFont();
    document.TextOut(-1, "Call Back Summary");
    document.NewLine();
    right(callback::kCountX, "Calls");
    right(callback::kShareX, "Share");
    auto summaryRow = [&](std::string_view label, std::int32_t count) {
      document.NewLine();
      SetHeadingFont();
      right(callback::kLabelX, label);
      SetBodyFont();
      right(callback::kCountX, std::to_string(count));
      right(callback::kShareX, std::to_string(AbandonedPercentage(count, missedCount)) + "%");
    };
    std::vector<std::string> labels;
    std::vector<std::int32_t> values;
    for (std::size_t group = 0; group < kCallBackWaits; ++group) {
      const auto wait = static_cast<CallBackWait>(group);
      summaryRow(CallBackWaitText(wait), counts[group]);
      labels.emplace_back(CallBackWaitLabel(wait));
      values.push_back(counts[group]);
    }
    summaryRow("Missed Calls", missedCount);

    if (request_.chart) {
      // ImageOut puts the picture's top at the current line, which still
      // holds the last row: one line down, and one blank line before it.
      document.NewLine();
      document.NewLine();
      chartFile = ChartBitmapPath(environment_.pathFolder, environment_.tempFolder);
      PlaceBarChart(document, host_, MakeBarChart(std::move(labels), std::move(values)), chartFile, kDailyChartLeft);
    }

    document.EndDoc();
    document.PreviewReport();
    document.DestroyReport();
  } catch (const RuntimeError& error) {
    ShowError(error, "Print_CallBacks");
  }
  if (!chartFile.empty()) DeleteChartBitmap(chartFile);
}

}  // namespace cw
