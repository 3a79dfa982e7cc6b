// The line usage summary: calls and time per line, by day of the week, the
// seconds row, what is left out (lines beyond the active ones, calls without
// a direction, line fields that are not numbers), and the per-line chart.

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "analysis_rig.h"
#include "core/data/log_lines.h"
#include "reports/seconds_to_text.h"

namespace cw {
namespace {

using testing::AnalysisRig;
using testing::Call;
using testing::LogOf;
using testing::ReportFixture;

// A negative length is a call measured across midnight; the largest are
// years of calls on several lines.
TEST(SecondsToText, MinutesUnderAnHourAndHoursFromThereOn) {
  for (const std::vector<std::string>& c : testing::TableCases("reports/seconds-text.txt")) {
    EXPECT_EQ(SecondsToText(std::stoll(c[0]), true), c[1]) << c[0];
    EXPECT_EQ(SecondsToText(std::stoll(c[0]), false), c[2]) << c[0];
  }
}

// Four active lines over a week: calls on lines 1 to 4 in and out, and calls
// that must not count (line 5, direction "??", line fields "x" and empty).
TEST(LineUsage, FourLinesMatchTheirTextExport) {
  AnalysisRig rig(ReportFixture("line-usage-four.log"), kind::kLineUsageStatistics, 4);
  // The call on line 5 is told of, and does not make the request one with
  // errors. Lines 1 and 2 are one second apart across the hour; line 3 is
  // without its "??" call; the weekday table ends with time, not calls.
  rig.ExpectRun("11/02/2026", "11/08/2026", "line-usage-four.txt");
}

TEST(LineUsage, PerLineSecondsAndCallsOverAMonth) {
  // Calls spread over lines, weekdays and lengths up to hours.
  std::vector<Call> log;
  for (int k = 0; k < 60; ++k) {
    const int length = 37 * k + (k % 7) * 600;
    char date[16];
    char duration[16];
    std::snprintf(date, sizeof date, "11/%02d/2026", k / 5 + 2);
    std::snprintf(duration, sizeof duration, "%d:%02d:%02d", length / 3600, length / 60 % 60, length % 60);
    log.push_back(Call().Date(date).Line(std::to_string(k % 4 + 1)).Direction(k % 3 ? "In" : "Out").Duration(duration));
  }
  // Every line is active: no note.
  AnalysisRig rig(LogOf(log), kind::kLineUsageStatistics, 4);
  rig.ExpectRun("11/01/2026", "11/30/2026", "line-usage-month.txt");
}

TEST(LineUsage, ThirtyTwoBitCellsOverflowInTheBuilderButTheGrandTotalDoesNot) {
  // 9999:59 is the longest call the seven-character column holds (599999
  // seconds): 3579 of them fit in a 32-bit cell, the 3580th does not, and
  // leaves the tables as they were.
  AnalysisRig full(LogOf(std::vector<Call>(3580, Call().Date("11/02/2026").Duration("9999:59"))),
                   kind::kLineUsageStatistics, 1);
  full.ExpectRun("11/01/2026", "11/30/2026", "line-usage-full-cell.txt");

  // Two lines that each fit add up beyond 32 bits in the total.
  std::vector<Call> log(1800, Call().Date("11/02/2026").Line("1").Duration("9999:59"));
  log.insert(log.end(), 1800, Call().Date("11/03/2026").Line("2").Duration("9999:59"));
  AnalysisRig two(LogOf(log), kind::kLineUsageStatistics, 2);
  two.ExpectRun("11/01/2026", "11/30/2026", "line-usage-full-total.txt");
}

TEST(LineUsage, OrdinaryCallsNearTheLimitOfACellAreTestedOneByOne) {
  // 35999 seconds a call: 59653 of them fit in a 32-bit cell, the 59654th
  // does not. The calls come over two days in the logging program's own
  // shape, counted a day at a time until the cells are nearly full.
  std::vector<Call> log(30000, Call().Date("11/02/2026").Line("  1").Duration("9:59:59"));
  log.insert(log.end(), 29654, Call().Date("11/03/2026").Line("  1").Duration("9:59:59"));
  log.push_back(Call().Date("11/03/2026").Line("  2"));
  AnalysisRig rig(LogOf(log), kind::kLineUsageStatistics, 2);
  // The weekday table: Monday and Tuesday, the second short of its last call.
  rig.ExpectRun("11/01/2026", "11/30/2026", "line-usage-near-limit.txt");
}

TEST(LineUsage, ChartOfCallsPerLineGoesUnderTheTablesOrOnANewPage) {
  AnalysisRig four(ReportFixture("line-usage-four.log"), kind::kLineUsageStatistics, 4);
  ASSERT_EQ(four.Run("11/02/2026", "11/08/2026", true), RequestOutcome::kProduced);
  ASSERT_EQ(four.host.charts.size(), 1u);
  EXPECT_EQ(four.host.charts[0].colLabels, (std::vector<std::string>{"L1", "L2", "L3", "L4"}));
  EXPECT_EQ(four.host.charts[0].values, (std::vector<std::int32_t>{2, 2, 2, 2}));
  // Fewer than 17 lines: three lines below the "Total Time" row, at 1.5.
  std::vector<SpoolCommand> images = four.host.Commands(SpoolKeyword::kImageOut);
  ASSERT_EQ(images.size(), 1u);
  SpoolCommand lastText = four.host.Commands(SpoolKeyword::kTextOut).back();
  EXPECT_EQ(images[0].x1, 1.5);
  EXPECT_NEAR(images[0].y1 - lastText.y1, 3 * 9 * FixedPitchMetrics::kLineTwipsPerPoint / 1440.0, 1e-9);

  // One call on each of `lines` active lines, chart on.
  auto run = [](int lines) {
    std::vector<Call> log;
    for (int line = 1; line <= lines; ++line) log.push_back(Call().Date("11/02/2026").Line(std::to_string(line)));
    auto rig = std::make_unique<AnalysisRig>(LogOf(log), kind::kLineUsageStatistics, static_cast<std::int16_t>(lines));
    EXPECT_EQ(rig->Run("11/01/2026", "11/30/2026", true), RequestOutcome::kProduced);
    return rig;
  };
  // 17 lines end above 8.5 inches: the chart follows on the same page.
  const auto seventeen = run(17);
  images = seventeen->host.Commands(SpoolKeyword::kImageOut);
  lastText = seventeen->host.Commands(SpoolKeyword::kTextOut).back();
  ASSERT_EQ(images.size(), 1u);
  ASSERT_LT(lastText.y1, 8.5);
  EXPECT_EQ(images[0].page, lastText.page);
  EXPECT_GT(images[0].y1, lastText.y1);
  // 21 lines end lower: the chart starts page 2, under the weekday heading
  // that every later page repeats.
  const auto twentyOne = run(21);
  images = twentyOne->host.Commands(SpoolKeyword::kImageOut);
  ASSERT_EQ(images.size(), 1u);
  EXPECT_EQ(images[0].page, 2);
  double lastRowOnPageOne = 0;
  for (const SpoolCommand& command : twentyOne->host.Commands(SpoolKeyword::kTextOut)) {
    if (command.page == 1) lastRowOnPageOne = command.y1;
  }
  EXPECT_GE(lastRowOnPageOne, 8.5);
  EXPECT_LT(lastRowOnPageOne, 9.5);  // well above the bottom margin: the new page is the chart's
  EXPECT_EQ(twentyOne->host.Commands(SpoolKeyword::kTextOut).back().text, "Sat");
}

}  // namespace
}  // namespace cw
