// The line usage summary: calls and time per line, by day of the week, the
// seconds row, what is left out (lines beyond the active ones, calls without
// a direction, line fields that are not numbers), and the per-line chart.

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

#include "core/data/log_lines.h"
#include "data/log_conversions.h"
#include "reports/matrix_cells.h"
#include "reports/seconds_to_text.h"
#include "support/whole_numbers.h"
#include "support/text.h"
#include "analysis_rig.h"

namespace cw {
namespace {

using testing::AnalysisRig;
using testing::Call;
using testing::LogOf;
using testing::ReportFixture;
using testing::RowAfter;

// Seconds back from "m:ss" or "h:mm:ss".
int SecondsOf(const std::string& text) {
  int total = 0;
  std::size_t start = 0;
  for (std::size_t colon; (colon = text.find(':', start)) != std::string::npos; start = colon + 1) {
    total = total * 60 + std::stoi(text.substr(start, colon - start));
  }
  return total * 60 + std::stoi(text.substr(start));
}

TEST(SecondsToText, MinutesUnderAnHourAndHoursFromThereOn) {
  struct Case {
    std::int64_t seconds;
    const char* shortText;
    const char* longText;
  };
  const Case cases[] = {
      {0, "0:00", "00:00"},          {5, "0:05", "00:05"},          {59, "0:59", "00:59"},
      {60, "1:00", "01:00"},         {605, "10:05", "10:05"},       {3599, "59:59", "59:59"},
      {3600, "1:00:00", "1:00:00"},  {3661, "1:01:01", "1:01:01"},  {86399, "23:59:59", "23:59:59"},
      {360000, "100:00:00", "100:00:00"},
      // A negative length is a call measured across midnight: a day is added.
      {-1, "23:59:59", "23:59:59"},  {-86340, "1:00", "01:00"},
      // Years of calls on several lines.
      {3000000000LL, "833333:20:00", "833333:20:00"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(SecondsToText(c.seconds, true), c.shortText) << c.seconds;
    EXPECT_EQ(SecondsToText(c.seconds, false), c.longText) << c.seconds;
  }
}

TEST(LineUsage, LengthAndLineOfACallAgreeWithTheConversions) {
  const char* const durations[] = {"0:04:09", "9:59:59", "12:34:56", "0:00:00", "0:75:00", "04:09",  "9999:59",
                                   "1:2:3",   "0:04",    "0:04:0x",  "x:04:09", "",        "0:04:09:1", "1.5:00:00",
                                   "-1:00:00", " 0:04:09", "0:04:09 ", "0::09"};
  for (const char* duration : durations) {
    EXPECT_EQ(SecondsOfCall(duration), DurationToSeconds(duration)) << duration;
  }
  const char* const lines[] = {"1", "4", "12", "999", "0", "007", "1000", "32767", "32768", "x", "", "1x", "+3", "2.5",
                               "-1"};
  for (const char* line : lines) {
    int expected = -100000;
    int expectedError = 0;
    try {
      expected = TextToInt16(line);
    } catch (const RuntimeError& error) {
      expectedError = error.Number();
    }
    int actual = -100000;
    int actualError = 0;
    try {
      actual = LineOfCall(line);
    } catch (const RuntimeError& error) {
      actualError = error.Number();
    }
    EXPECT_EQ(actual, expected) << line;
    EXPECT_EQ(actualError, expectedError) << line;
  }
}

// Four active lines over a week: calls on lines 1 to 4 in and out, and calls
// that must not count (line 5, direction "??", line fields "x" and empty).
TEST(LineUsage, FourLinesMatchTheirTextExport) {
  AnalysisRig rig(ReportFixture("line-usage-four.log"), kind::kLineUsageStatistics, 4);
  ASSERT_EQ(rig.Run("11/02/2026", "11/08/2026"), RequestOutcome::kProduced);
  EXPECT_TRUE(rig.host.messages.empty());
  const std::string text = rig.Text();
  testing::ExpectMatchesFixture(text, "line-usage-four.txt");

  // Line 1 has 1800 + 1799 seconds, line 2 3540 + 60: one second apart
  // across the hour.
  EXPECT_EQ(RowAfter(text, "Line 1"), (std::vector<std::string>{"2", "0", "2", "59:59"}));
  EXPECT_EQ(RowAfter(text, "Line 2"), (std::vector<std::string>{"1", "1", "2", "1:00:00"}));
  // Line 3 without its "??" call, line 4 without the line-5 call.
  EXPECT_EQ(RowAfter(text, "Line 3"), (std::vector<std::string>{"1", "1", "2", "3:00"}));
  EXPECT_EQ(RowAfter(text, "Line 4"), (std::vector<std::string>{"1", "1", "2", "2:00:01"}));
  EXPECT_EQ(RowAfter(text, "Total Calls"), (std::vector<std::string>{"5", "3", "8", "4:03:00"}));
  EXPECT_TRUE(RowAfter(text, "Line 5").empty());

  // The weekday table: calls per line, their sums, then the time of all
  // lines per weekday (Sunday first).
  EXPECT_EQ(RowAfter(text, "Line 1", 1), (std::vector<std::string>{"0", "1", "1", "0", "0", "0", "0"}));
  EXPECT_EQ(RowAfter(text, "Line 4", 1), (std::vector<std::string>{"1", "0", "0", "0", "0", "1", "0"}));
  EXPECT_EQ(RowAfter(text, "Total Calls", 1), (std::vector<std::string>{"1", "1", "1", "2", "1", "1", "1"}));
  EXPECT_EQ(RowAfter(text, "Total Time"), (std::vector<std::string>{"0:01", "30:00", "29:59", "1:00:00", "0:45",
                                                                     "2:00:00", "2:15"}));
}

TEST(LineUsage, PerLineSecondsAreTheSumOfTheDurations) {
  // Calls spread over lines, weekdays and lengths, the durations known here.
  std::vector<std::string> lines;
  std::vector<int> expectedSeconds(4, 0);
  std::vector<int> expectedCalls(4, 0);
  int weekdaySeconds = 0;
  for (int k = 0; k < 60; ++k) {
    const int line = k % 4 + 1;
    const int seconds = 37 * k + (k % 7) * 600;
    char date[16];
    std::snprintf(date, sizeof date, "11/%02d/2026", k / 5 + 2);
    char duration[16];
    std::snprintf(duration, sizeof duration, "%d:%02d:%02d", seconds / 3600, seconds / 60 % 60, seconds % 60);
    lines.push_back(Call()
                        .Date(date)
                        .Line(std::to_string(line))
                        .Direction(k % 3 == 0 ? "Out" : "In")
                        .Duration(duration)
                        .Text());
    expectedSeconds[static_cast<std::size_t>(line - 1)] += seconds;
    expectedCalls[static_cast<std::size_t>(line - 1)] += 1;
    weekdaySeconds += seconds;
  }
  AnalysisRig rig(LogOf(lines), kind::kLineUsageStatistics, 4);
  ASSERT_EQ(rig.Run("11/01/2026", "11/30/2026"), RequestOutcome::kProduced);
  const std::string text = rig.Text();
  int allSeconds = 0;
  for (int line = 1; line <= 4; ++line) {
    const std::vector<std::string> totals = RowAfter(text, "Line " + std::to_string(line));
    ASSERT_EQ(totals.size(), 4u);
    EXPECT_EQ(SecondsOf(totals[3]), expectedSeconds[static_cast<std::size_t>(line - 1)]) << line;
    EXPECT_EQ(std::stoi(totals[2]), expectedCalls[static_cast<std::size_t>(line - 1)]) << line;
    allSeconds += SecondsOf(totals[3]);
    // The line's weekday cells add up to its calls.
    const std::vector<std::string> week = RowAfter(text, "Line " + std::to_string(line), 1);
    ASSERT_EQ(week.size(), 7u);
    EXPECT_EQ(std::accumulate(week.begin(), week.end(), 0,
                              [](int sum, const std::string& cell) { return sum + std::stoi(cell); }),
              expectedCalls[static_cast<std::size_t>(line - 1)]);
  }
  EXPECT_EQ(SecondsOf(RowAfter(text, "Total Calls")[3]), allSeconds);
  const std::vector<std::string> time = RowAfter(text, "Total Time");
  ASSERT_EQ(time.size(), 7u) << text;
  EXPECT_EQ(std::accumulate(time.begin(), time.end(), 0,
                            [](int sum, const std::string& cell) { return sum + SecondsOf(cell); }),
            weekdaySeconds);
}

TEST(LineUsage, LineZeroShowsTheBuilderBoxWithTheRecord) {
  const std::string zero = Call().Date("11/02/2026").Line("0").Text();
  AnalysisRig rig(LogOf({zero, Call().Date("11/03/2026").Line("2").Text()}), kind::kLineUsageStatistics, 2);
  EXPECT_EQ(rig.Run("11/01/2026", "11/30/2026"), RequestOutcome::kFailed);
  ASSERT_EQ(rig.host.messages.size(), 1u);
  const std::string& box = rig.host.messages[0].text;
  EXPECT_NE(box.find("Error 9 Subscript out of range"), std::string::npos) << box;
  EXPECT_NE(box.find("in Form fReport procedure Build_LineMatrix."), std::string::npos) << box;
  EXPECT_TRUE(box.ends_with("\r\nProcessing: " + std::string(Trim(zero)))) << box;
  // The report goes on with the next record.
  EXPECT_EQ(RowAfter(rig.Text(), "Line 2"), (std::vector<std::string>{"1", "0", "1", "2:03"}));
}

TEST(LineUsage, SecondsBeyondThirtyTwoBitsAreAnOverflowInTheBuilder) {
  // 9999:59 is the longest call the seven-character column holds (599999
  // seconds); 3579 of them fit in 32 bits, the 3580th does not.
  std::vector<std::string> log(3580, Call().Date("11/02/2026").Duration("9999:59").Text());
  AnalysisRig rig(LogOf(log), kind::kLineUsageStatistics, 1);
  EXPECT_EQ(rig.Run("11/01/2026", "11/30/2026"), RequestOutcome::kFailed);
  ASSERT_EQ(rig.host.messages.size(), 1u);
  EXPECT_NE(rig.host.messages[0].text.find("Error 6 Overflow"), std::string::npos);
  EXPECT_NE(rig.host.messages[0].text.find("procedure Build_LineMatrix."), std::string::npos);
  // The call that overflowed left the tables as they were: 3579 calls,
  // 3579 * 599999 seconds.
  EXPECT_EQ(RowAfter(rig.Text(), "Line 1"), (std::vector<std::string>{"3579", "0", "3579", "596499:00:21"}));
}

TEST(LineUsage, TimeOfAllLinesMayOutgrowThirtyTwoBits) {
  // Each line's time fits in 32 bits, the two together do not.
  std::vector<std::string> log(1800, Call().Date("11/02/2026").Line("1").Duration("9999:59").Text());
  log.insert(log.end(), 1800, Call().Date("11/03/2026").Line("2").Duration("9999:59").Text());
  AnalysisRig rig(LogOf(log), kind::kLineUsageStatistics, 2);
  ASSERT_EQ(rig.Run("11/01/2026", "11/30/2026"), RequestOutcome::kProduced);
  EXPECT_TRUE(rig.host.messages.empty());
  // 1800 * 599999 = 1079998200 seconds a line.
  EXPECT_EQ(RowAfter(rig.Text(), "Line 1"), (std::vector<std::string>{"1800", "0", "1800", "299999:30:00"}));
  EXPECT_EQ(RowAfter(rig.Text(), "Total Calls"), (std::vector<std::string>{"3600", "0", "3600", "599999:00:00"}));
}

TEST(LineUsage, ChartOfCallsPerLineUnderTheTables) {
  AnalysisRig rig(ReportFixture("line-usage-four.log"), kind::kLineUsageStatistics, 4);
  ASSERT_EQ(rig.Run("11/02/2026", "11/08/2026", true), RequestOutcome::kProduced);
  ASSERT_EQ(rig.host.charts.size(), 1u);
  const BarChartSpec& chart = rig.host.charts[0];
  EXPECT_EQ(chart.colLabels, (std::vector<std::string>{"L1", "L2", "L3", "L4"}));
  EXPECT_EQ(chart.values, (std::vector<std::int32_t>{2, 2, 2, 2}));
  EXPECT_EQ(chart.maxY, 10);
  EXPECT_EQ(chart.ticks, 2);
  EXPECT_EQ(rig.host.chartFiles[0], rig.ChartFile());
  EXPECT_FALSE(std::filesystem::exists(rig.ChartFile()));

  const std::vector<SpoolCommand> images = rig.host.Commands(SpoolKeyword::kImageOut);
  ASSERT_EQ(images.size(), 1u);
  EXPECT_DOUBLE_EQ(images[0].x1, 1.5);
  EXPECT_DOUBLE_EQ(images[0].ImageWidth(), 5.5);
  EXPECT_DOUBLE_EQ(images[0].ImageHeight(), 2.1);
  // Three lines below the "Total Time" row.
  const SpoolCommand lastText = rig.host.Commands(SpoolKeyword::kTextOut).back();
  const double line = 9 * FixedPitchMetrics::kLineTwipsPerPoint / 1440.0;
  EXPECT_EQ(images[0].page, lastText.page);
  EXPECT_NEAR(images[0].y1 - lastText.y1, 3 * line, 1e-9);
}

TEST(LineUsage, ManyLinesPutTheChartOnANewPageOnlyWhenTheTablesEndLow) {
  // One call on each of `lines` active lines, chart on.
  auto run = [](int lines) {
    std::vector<std::string> log;
    for (int line = 1; line <= lines; ++line) log.push_back(Call().Date("11/02/2026").Line(std::to_string(line)).Text());
    auto rig = std::make_unique<AnalysisRig>(LogOf(log), kind::kLineUsageStatistics, static_cast<std::int16_t>(lines));
    EXPECT_EQ(rig->Run("11/01/2026", "11/30/2026", true), RequestOutcome::kProduced);
    return rig;
  };
  // 17 lines end above 8.5 inches: the chart follows on the same page.
  {
    const auto rig = run(17);
    const SpoolCommand lastText = rig->host.Commands(SpoolKeyword::kTextOut).back();
    const std::vector<SpoolCommand> images = rig->host.Commands(SpoolKeyword::kImageOut);
    ASSERT_EQ(images.size(), 1u);
    ASSERT_LT(lastText.y1, 8.5);
    EXPECT_EQ(images[0].page, lastText.page);
    EXPECT_GT(images[0].y1, lastText.y1);
    EXPECT_EQ(rig->host.previews[0].totalPages, 1);
    EXPECT_EQ(rig->host.charts[0].values.size(), 17u);
  }
  // 21 lines end below 8.5 inches: the chart starts page 2.
  {
    const auto rig = run(21);
    const SpoolCommand lastText = rig->host.Commands(SpoolKeyword::kTextOut).back();
    const std::vector<SpoolCommand> images = rig->host.Commands(SpoolKeyword::kImageOut);
    ASSERT_EQ(images.size(), 1u);
    EXPECT_EQ(rig->host.previews[0].totalPages, 2);
    EXPECT_EQ(images[0].page, 2);
    EXPECT_EQ(rig->host.charts[0].colLabels.back(), "L21");
    // The tables end on page 1 below 8.5 inches, well above the bottom
    // margin; page 2 carries only the repeated weekday heading and the chart.
    double lastRowY = 0;
    for (const SpoolCommand& command : rig->host.Commands(SpoolKeyword::kTextOut)) {
      if (command.page == 1) lastRowY = command.y1;
    }
    EXPECT_GE(lastRowY, 8.5);
    EXPECT_LT(lastRowY, 9.5);
    EXPECT_EQ(lastText.page, 2);
    EXPECT_EQ(lastText.text, "Sat");
  }
}

TEST(LineUsage, NoChartMeansNoBitmapMadeOrDeleted) {
  AnalysisRig rig(ReportFixture("line-usage-four.log"), kind::kLineUsageStatistics, 4);
  rig.folder.Write("Chart.bmp", testing::RecordingHost::TinyBitmap());
  ASSERT_EQ(rig.Run("11/02/2026", "11/08/2026"), RequestOutcome::kProduced);
  EXPECT_TRUE(rig.host.charts.empty());
  EXPECT_TRUE(rig.host.Commands(SpoolKeyword::kImageOut).empty());
  EXPECT_TRUE(std::filesystem::exists(rig.ChartFile()));
}

}  // namespace
}  // namespace cw
