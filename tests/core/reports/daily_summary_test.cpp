// The daily call analysis: calls of a period by weekday and by hour, the kind
// of the previous call for calls without a direction, the fixed hour labels,
// and the hourly chart.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "analysis_rig.h"
#include "core/data/log_lines.h"
#include "reports/hour_labels.h"

namespace cw {
namespace {

using testing::AnalysisRig;
using testing::Call;
using testing::LogOf;
using testing::ReportFixture;

// The time-of-day table's 24 labels are pinned by the week's text export.
TEST(HourLabels, ChartLabelsAndNoTwentyFifthHour) {
  EXPECT_THROW(HourLabel(24), RuntimeError);
  const std::vector<std::string> chart = HourChartLabels();
  ASSERT_EQ(chart.size(), 24u);
  EXPECT_EQ((std::vector<std::string>{chart[0], chart[1], chart[11], chart[12], chart[13], chart[23]}),
            (std::vector<std::string>{" ", "1AM", "11AM", " ", "1PM", "11PM"}));
}

// The week of the fixture: 13 calls from Monday 11/02 to Sunday 11/08, with
// calls before and after the period, a first call without a direction, later
// ones without a direction, 12 AM / 11 AM / 12 PM / 11 PM and a 24-hour time.
TEST(DailyCallAnalysis, WeekOfCallsMatchesItsTextExport) {
  AnalysisRig rig(ReportFixture("daily-week.log"), kind::kDailyCallStatistics);
  rig.ExpectRun("11/02/2026", "11/08/2026", "daily-week.txt");
  // A period without calls prints both tables with zeros.
  rig.ExpectRun("06/01/2025", "06/30/2025", "daily-empty.txt");
}

// A call without a direction counts as the kind of the call before it, also
// on the next day; with none before it, in the total only. "in" is no
// direction (compared exactly), " In" is In (the field is trimmed).
TEST(DailyCallAnalysis, CallWithoutDirectionTakesTheKindOfTheCallBefore) {
  const Call monday = Call().Date("11/02/2026");
  AnalysisRig rig(LogOf({Call(monday).Time("9:00AM").Direction("??"), Call(monday).Time("9:10AM").Direction("Out"),
                         Call(monday).Time("9:20AM").Direction(""), Call(monday).Time("9:30AM").Direction(" In"),
                         Call(monday).Time("9:40AM").Direction("in"), Call().Date("11/03/2026").Time("3:00PM").Direction("IN ")}),
                  kind::kDailyCallStatistics);
  rig.ExpectRun("11/01/2026", "11/30/2026", "daily-directions.txt");
}

TEST(DailyCallAnalysis, EveryTimeOfAnHourIsCheckedThoughItsHourIsReadOnce) {
  // After the first call of an hour the others are known by their hour
  // columns; a later one whose minutes are not a number is still an error,
  // and "am" is the same hour as "AM".
  const Call day = Call().Date("11/02/2026");
  AnalysisRig rig(LogOf({Call(day).Time("09:05AM"), Call(day).Time("09:59am").Direction("Out"), Call(day).Time("09:6xAM"),
                         Call(day).Time("09:07AM"), Call(day).Time("10:00AM"), Call().Date("11/03/2026").Time("10:01AM")}),
                  kind::kDailyCallStatistics);
  rig.ExpectRun("11/01/2026", "11/30/2026", "daily-hour-checked.txt");
}

// A bad time costs only its record (see the repeated errors); a bad date
// stops the walk in its own box, and no document is shown.
TEST(DailyCallAnalysis, ABadDateStopsTheWalkInItsOwnBox) {
  AnalysisRig dates(LogOf({Call().Date("11/02/2026"), Call().Date("11/0x/2026")}),
                    kind::kDailyCallStatistics);
  dates.ExpectRun("11/01/2026", "11/30/2026", "daily-bad-date.txt");
}

TEST(DailyCallAnalysis, ChartOfTwentyFourHoursIsPlacedUnderTheTables) {
  AnalysisRig rig(ReportFixture("daily-week.log"), kind::kDailyCallStatistics);
  ASSERT_EQ(rig.Run("11/02/2026", "11/08/2026", true), RequestOutcome::kProduced);
  ASSERT_EQ(rig.host.charts.size(), 1u);
  // The time-of-day table's totals (the labels are HourLabels').
  EXPECT_EQ(rig.host.charts[0].values,
            (std::vector<std::int32_t>{2, 1, 0, 0, 0, 0, 0, 0, 0, 1, 2, 2, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 2}));
  // Written into the "Path" folder and placed at 1.25 below the last hour's
  // row (its size is PlaceBarChartTest's).
  const std::vector<SpoolCommand> images = rig.host.Commands(SpoolKeyword::kImageOut);
  ASSERT_EQ(images.size(), 1u);
  EXPECT_EQ(images[0].text, rig.folder.File("Chart.bmp"));
  EXPECT_EQ(images[0].x1, 1.25);
  const SpoolCommand lastText = rig.host.Commands(SpoolKeyword::kTextOut).back();
  EXPECT_EQ(images[0].page, lastText.page);
  EXPECT_GT(images[0].y1, lastText.y1);

  // Without the chart the page opens with three blank lines, and a bitmap
  // of some earlier run is neither made nor deleted. (The text is the same:
  // PageHeadings.)
  AnalysisRig plain(ReportFixture("daily-week.log"), kind::kDailyCallStatistics);
  plain.folder.Write("Chart.bmp", testing::RecordingHost::TinyBitmap());
  ASSERT_EQ(plain.Run("11/02/2026", "11/08/2026"), RequestOutcome::kProduced);
  EXPECT_TRUE(plain.host.charts.empty());
  EXPECT_TRUE(std::filesystem::exists(plain.folder.File("Chart.bmp")));
  EXPECT_GT(plain.host.Commands(SpoolKeyword::kTextOut).back().y1, lastText.y1);
}

TEST(DailyCallAnalysis, ChartBitmapThatNeverComesEndsInThePrintBox) {
  AnalysisRig rig(ReportFixture("daily-week.log"), kind::kDailyCallStatistics);
  rig.host.writeCharts = false;
  rig.ExpectRun("11/02/2026", "11/08/2026", "daily-chart-missing.txt", true);
}

}  // namespace
}  // namespace cw
