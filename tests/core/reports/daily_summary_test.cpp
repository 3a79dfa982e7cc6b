// The daily call analysis: calls of a period by weekday and by hour, the kind
// of the previous call for calls without a direction, the fixed hour labels,
// and the hourly chart.

#include <gtest/gtest.h>

#include <filesystem>
#include <numeric>
#include <string>
#include <vector>

#include "core/data/log_lines.h"
#include "reports/hour_labels.h"
#include "reports/matrix_cells.h"
#include "support/time_text.h"
#include "support/text.h"
#include "testing/recording_host.h"
#include "analysis_rig.h"

namespace cw {
namespace {

using testing::AnalysisRig;
using testing::Call;
using testing::LogOf;
using testing::ReportFixture;
using testing::RowAfter;

int Number(const std::string& word) { return std::stoi(word); }

TEST(HourLabels, EveryHourOfTheTimeOfDayTable) {
  const std::vector<std::string> expected = {
      "12:00 - 1:00 AM",  "1:00 - 2:00 AM",   "2:00 - 3:00 AM",   "3:00 - 4:00 AM",  "4:00 - 5:00 AM",
      "5:00 - 6:00 AM",   "6:00 - 7:00 AM",   "7:00 - 8:00 AM",   "8:00 - 9:00 AM",  "9:00 - 10:00 AM",
      "10:00 - 11:00 AM", "11:00 - 12:00 AM", "12:00 - 1:00 PM",  "1:00 - 2:00 PM",  "2:00 - 3:00 PM",
      "3:00 - 4:00 PM",   "4:00 - 5:00 PM",   "5:00 - 6:00 PM",   "6:00 - 7:00 PM",  "7:00 - 8:00 PM",
      "8:00 - 9:00 PM",   "9:00 - 10:00 PM",  "10:00 - 11:00 PM", "11:00 - 12:00 PM"};
  for (int hour = 0; hour < 24; ++hour) EXPECT_EQ(HourLabel(hour), expected[static_cast<std::size_t>(hour)]) << hour;
  EXPECT_THROW(HourLabel(24), RuntimeError);
  EXPECT_THROW(HourLabel(-1), RuntimeError);

  const std::vector<std::string> chartLabels = HourChartLabels();
  ASSERT_EQ(chartLabels.size(), 24u);
  EXPECT_EQ(chartLabels[0], " ");
  EXPECT_EQ(chartLabels[1], "1AM");
  EXPECT_EQ(chartLabels[11], "11AM");
  EXPECT_EQ(chartLabels[12], " ");
  EXPECT_EQ(chartLabels[13], "1PM");
  EXPECT_EQ(chartLabels[23], "11PM");
}

TEST(DailyCallAnalysis, HourOfACallAgreesWithTheTimeConversion) {
  // The logging program's shapes and every other shape the conversion
  // accepts or refuses.
  const char* const times[] = {"06:02AM", "6:02AM",  "12:00AM", "12:59AM", "12:00PM", "11:59PM", "00:05AM",
                               "00:05PM", "9:05am",  "09:05pm", "10:15Am", "13:00PM", "12:60AM", "1:5AM",
                               "14:05",   "9:05:30", "23:59",   "9:05 PM", "9:05P",   "9:05a",   "24:00",
                               "9:05XM",  "x9:05AM", ":05AM",   "",        "9:05AMX", "99:00AM", "1:00:00P"};
  for (const char* time : times) {
    int expected = -1;
    try {
      expected = ParseTimeText(time) / 3600;
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.Number(), err::kTypeMismatch);
    }
    int hour = -1;
    try {
      hour = HourOfCall(time);
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.Number(), err::kTypeMismatch) << time;
    }
    EXPECT_EQ(hour, expected) << time;
  }
}

TEST(DailyCallAnalysis, DirectionKindIsAnExactComparison) {
  const char* const directions[] = {"In", "Out", "in", "IN", "OUT", "out", "Ou", "Outt", "I", "", "??",
                                    "In ", " In", "Ot", "Oux", "InO", "\xC9n"};
  for (const char* direction : directions) {
    const std::string_view text = direction;
    const int expected = text == "In" ? 1 : text == "Out" ? 2 : 0;
    EXPECT_EQ(DirectionKind(text), expected) << direction;
  }
}

// The week of the fixture: 13 calls from Monday 11/02 to Sunday 11/08, with
// calls before and after the period, a first call without a direction, later
// ones without a direction, 12 AM / 11 AM / 12 PM / 11 PM and a 24-hour time.
TEST(DailyCallAnalysis, WeekOfCallsMatchesItsTextExport) {
  AnalysisRig rig(ReportFixture("daily-week.log"), kind::kDailyCallStatistics);
  ASSERT_EQ(rig.Run("11/02/2026", "11/08/2026"), RequestOutcome::kProduced);
  EXPECT_TRUE(rig.host.messages.empty());
  const std::string text = rig.Text();
  testing::ExpectMatchesFixture(text, "daily-week.txt");

  // The tables add up to the 13 calls of the period.
  const std::vector<std::string> totals = RowAfter(text, "Totals");
  ASSERT_EQ(totals.size(), 3u);
  EXPECT_EQ(Number(totals[2]), 13);
  // 8 in and 4 out: the period's first call has no direction and no call
  // before it, so it counts in the total only.
  EXPECT_EQ(Number(totals[0]), 8);
  EXPECT_EQ(Number(totals[1]), 4);
  int weekdaySum = 0;
  for (const char* day : {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"}) {
    const std::vector<std::string> row = RowAfter(text, day);
    ASSERT_EQ(row.size(), 3u) << day;
    weekdaySum += Number(row[2]);
  }
  EXPECT_EQ(weekdaySum, 13);
  int hourSum = 0;
  int hourCells = 0;
  for (int hour = 0; hour < 24; ++hour) {
    const std::vector<std::string> row = RowAfter(text, HourLabel(hour));
    ASSERT_EQ(row.size(), 8u) << HourLabel(hour);
    const int days = std::accumulate(row.begin(), row.end() - 1, 0,
                                     [](int sum, const std::string& word) { return sum + Number(word); });
    EXPECT_EQ(days, Number(row.back())) << HourLabel(hour);
    hourSum += Number(row.back());
    hourCells += days;
  }
  EXPECT_EQ(hourSum, 13);
  EXPECT_EQ(hourCells, 13);
  // Monday: 12:05 AM, 1 AM, 9:05 AM, 11:59 AM and noon.
  EXPECT_EQ(RowAfter(text, "11:00 - 12:00 AM"), (std::vector<std::string>{"0", "1", "0", "0", "0", "0", "1", "2"}));
  EXPECT_EQ(RowAfter(text, "12:00 - 1:00 AM"), (std::vector<std::string>{"0", "1", "0", "0", "0", "1", "0", "2"}));
  EXPECT_EQ(RowAfter(text, "11:00 - 12:00 PM"), (std::vector<std::string>{"1", "0", "0", "1", "0", "0", "0", "2"}));
  EXPECT_EQ(RowAfter(text, "2:00 - 3:00 PM"), (std::vector<std::string>{"0", "0", "1", "0", "0", "0", "0", "1"}));
  EXPECT_TRUE(rig.host.charts.empty());
}

TEST(DailyCallAnalysis, EmptyPeriodPrintsBothTablesWithZeros) {
  AnalysisRig rig(ReportFixture("daily-week.log"), kind::kDailyCallStatistics);
  ASSERT_EQ(rig.Run("06/01/2025", "06/30/2025"), RequestOutcome::kProduced);
  const std::string text = rig.Text();
  testing::ExpectMatchesFixture(text, "daily-empty.txt");
  EXPECT_EQ(RowAfter(text, "Totals"), (std::vector<std::string>{"0", "0", "0"}));
  EXPECT_EQ(RowAfter(text, "12:00 - 1:00 PM"), std::vector<std::string>(8, "0"));
}

TEST(DailyCallAnalysis, CallWithoutDirectionTakesTheKindOfTheCallBefore) {
  AnalysisRig rig("", kind::kDailyCallStatistics);
  ReportForm& form = *rig.form;
  const std::string monday = "11/02/2026";
  form.Build_CallMatrix(monday, "9:00AM", "??");   // nothing before it: total only
  form.Build_CallMatrix(monday, "9:10AM", "Out");
  form.Build_CallMatrix(monday, "9:20AM", "");     // as the Out before it
  form.Build_CallMatrix(monday, "9:30AM", "In");
  form.Build_CallMatrix(monday, "9:40AM", "in");   // the direction is compared exactly: as the In before it
  form.Build_CallMatrix("11/03/2026", "3:00PM", "IN ");
  const auto& m = form.WorkingMatrices();
  EXPECT_EQ(m.day[2][1], 2);  // Monday inbound
  EXPECT_EQ(m.day[2][2], 2);  // Monday outbound
  EXPECT_EQ(m.day[2][3], 5);  // Monday, all calls
  EXPECT_EQ(m.day[3][1], 1);  // Tuesday: kind kept from Monday's last call
  EXPECT_EQ(m.hour[9][1], 5);
  EXPECT_EQ(m.hour[9][7], 5);
  EXPECT_EQ(m.hour[15][2], 1);
  EXPECT_TRUE(rig.host.messages.empty());
}

TEST(DailyCallAnalysis, BadTimeShowsTheBuilderBoxAndTheReportGoesOn) {
  const std::string bad = Call().Date("11/02/2026").Time("25:00").Text();
  AnalysisRig rig(LogOf({Call().Date("11/02/2026").Time("9:00AM").Text(), bad,
                         Call().Date("11/03/2026").Time("10:00AM").Direction("Out").Text()}),
                  kind::kDailyCallStatistics);
  EXPECT_EQ(rig.Run("11/01/2026", "11/30/2026"), RequestOutcome::kFailed);
  ASSERT_EQ(rig.host.messages.size(), 1u);
  const std::string& box = rig.host.messages[0].text;
  EXPECT_EQ(rig.host.messages[0].title, "Error");
  EXPECT_NE(box.find("Error 13 Type mismatch"), std::string::npos) << box;
  EXPECT_NE(box.find("in Form fReport procedure Build_CallMatrix."), std::string::npos) << box;
  // The record as the reader hands it out, trimmed.
  const std::string processing = "\r\nProcessing: " + std::string(Trim(bad));
  EXPECT_TRUE(box.ends_with(processing)) << box;
  // The other two calls are in the report.
  EXPECT_EQ(RowAfter(rig.Text(), "Totals"), (std::vector<std::string>{"1", "1", "2"}));
}

TEST(DailyCallAnalysis, BadDateStopsTheReportInItsProcessBox) {
  AnalysisRig rig(LogOf({Call().Date("11/02/2026").Text(), Call().Date("11/0x/2026").Text()}),
                  kind::kDailyCallStatistics);
  EXPECT_EQ(rig.Run("11/01/2026", "11/30/2026"), RequestOutcome::kFailed);
  ASSERT_EQ(rig.host.messages.size(), 1u);
  EXPECT_NE(rig.host.messages[0].text.find("in Form fReport procedure Process_DailySummary."), std::string::npos)
      << rig.host.messages[0].text;
  EXPECT_TRUE(rig.host.previews.empty());
}

TEST(DailyCallAnalysis, ChartOfTwentyFourHoursIsPlacedAndDeleted) {
  AnalysisRig rig(ReportFixture("daily-week.log"), kind::kDailyCallStatistics);
  ASSERT_EQ(rig.Run("11/02/2026", "11/08/2026", true), RequestOutcome::kProduced);
  ASSERT_EQ(rig.host.charts.size(), 1u);
  const BarChartSpec& chart = rig.host.charts[0];
  ASSERT_EQ(chart.values.size(), 24u);
  EXPECT_EQ(chart.values[0], 2);
  EXPECT_EQ(chart.values[10], 2);
  EXPECT_EQ(chart.values[23], 2);
  EXPECT_EQ(std::accumulate(chart.values.begin(), chart.values.end(), 0), 13);
  EXPECT_EQ(chart.colLabels, HourChartLabels());
  EXPECT_EQ(chart.maxY, 10);
  EXPECT_EQ(chart.ticks, 2);
  // Written into the "Path" folder, and gone after the report.
  EXPECT_EQ(rig.host.chartFiles[0], rig.ChartFile());
  EXPECT_FALSE(std::filesystem::exists(rig.ChartFile()));

  // Placed 5.5 wide and 2.1 high at 1.25, below the last hour's row.
  const std::vector<SpoolCommand> images = rig.host.Commands(SpoolKeyword::kImageOut);
  ASSERT_EQ(images.size(), 1u);
  EXPECT_EQ(images[0].text, rig.ChartFile());
  EXPECT_DOUBLE_EQ(images[0].x1, 1.25);
  EXPECT_DOUBLE_EQ(images[0].ImageWidth(), 5.5);
  EXPECT_DOUBLE_EQ(images[0].ImageHeight(), 2.1);
  const std::vector<SpoolCommand> texts = rig.host.Commands(SpoolKeyword::kTextOut);
  ASSERT_FALSE(texts.empty());
  EXPECT_EQ(texts.back().text, "2");  // the total of 11 PM
  EXPECT_EQ(images[0].page, texts.back().page);
  EXPECT_GT(images[0].y1, texts.back().y1);
  // The page's three opening lines give way to the chart: the tables start
  // higher than without it.
  AnalysisRig plain(ReportFixture("daily-week.log"), kind::kDailyCallStatistics);
  ASSERT_EQ(plain.Run("11/02/2026", "11/08/2026"), RequestOutcome::kProduced);
  EXPECT_EQ(plain.Text(), rig.Text());
  EXPECT_LT(texts.back().y1, plain.host.Commands(SpoolKeyword::kTextOut).back().y1);
}

TEST(DailyCallAnalysis, ChartBitmapThatNeverComesEndsInThePrintBox) {
  AnalysisRig rig(ReportFixture("daily-week.log"), kind::kDailyCallStatistics);
  rig.host.writeCharts = false;
  EXPECT_EQ(rig.Run("11/02/2026", "11/08/2026", true), RequestOutcome::kFailed);
  ASSERT_EQ(rig.host.messages.size(), 1u);
  const std::string& box = rig.host.messages[0].text;
  EXPECT_NE(box.find("Error 53 The chart bitmap " + rig.ChartFile() + " was not written"), std::string::npos) << box;
  EXPECT_NE(box.find("in Form fReport procedure Print_DailySummary."), std::string::npos) << box;
  EXPECT_TRUE(rig.host.previews.empty());
  EXPECT_FALSE(rig.host.busy);
}

TEST(DailyCallAnalysis, NoChartMeansNoBitmapMadeOrDeleted) {
  AnalysisRig rig(ReportFixture("daily-week.log"), kind::kDailyCallStatistics);
  // A bitmap of some earlier run stays where it is.
  rig.folder.Write("Chart.bmp", testing::RecordingHost::TinyBitmap());
  ASSERT_EQ(rig.Run("11/02/2026", "11/08/2026"), RequestOutcome::kProduced);
  EXPECT_TRUE(rig.host.charts.empty());
  EXPECT_TRUE(std::filesystem::exists(rig.ChartFile()));
}

}  // namespace
}  // namespace cw
