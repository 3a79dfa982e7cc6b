// The all-lines-busy reports over small busy logs: the occurrence listing and
// the day-of-week / time-of-day summary, compared with their expected text
// exports, plus the busy-log line itself.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "analysis_rig.h"
#include "core/support/error_number.h"
#include "reports/busy_log.h"

namespace cw {
namespace {

using test::ErrorNumberOf;
using testing::ExpectMatchesFixture;
using testing::TakeBoxes;
using testing::TempFolder;

// One tab-3 request of the variant given over a busy log copied into the
// "Path" folder under the name given (the logging program's case is not
// always the one we ask for).
struct BusyRig : testing::AnalysisRig {
  BusyRig(std::string_view fixture, std::string_view variant, std::string_view nameOnDisk = "BusyLines.log")
      : BasicRig("", kind::kAllLinesBusy) {
    if (!fixture.empty()) folder.Write(nameOnDisk, testing::ReportFixture(fixture));
    Request().variant = variant;
  }

  // The text of the document a failed report left behind, as far as it got.
  std::string LeftDocumentText() {
    OrlPrinter* document = form->Document();
    if (document == nullptr) return {};
    document->EndDoc();
    document->SetPrintTextFile(folder.File("left.txt"));
    document->PrintToFile();
    return testing::ReadBytes(folder.File("left.txt"));
  }
};

TEST(BusyLogLine, SplitsFiveFieldsAndReadsTheLengthAsWholeSeconds) {
  const BusyLine line = SplitBusyLine("11/04/2026, 12:00 PM ,1:00 PM, 3600 ,1,2,3,4");
  EXPECT_EQ((std::vector<std::string_view>{line.date, line.start, line.end, line.seconds, line.lines}),
            (std::vector<std::string_view>{"11/04/2026", "12:00 PM", "1:00 PM", "3600", "1,2,3,4"}));
  EXPECT_EQ(SplitBusyLine("11/04/2026,1:00,2:00,5,").lines, "");
  EXPECT_EQ(ErrorNumberOf([] { SplitBusyLine("11/04/2026,1:00,2:00,5"); }), err::kSubscript);

  EXPECT_EQ(BusySeconds(" 3600 "), 3600);
  EXPECT_EQ(BusySeconds("2147483647"), 2147483647);
  for (const char* bad : {"abc", "12.5", "12.", ""}) EXPECT_EQ(ErrorNumberOf([&] { BusySeconds(bad); }), err::kTypeMismatch) << bad;
  EXPECT_EQ(ErrorNumberOf([] { BusySeconds("2147483648"); }), err::kOverflow);
}

TEST(BusyLogLine, FoundInAnyCaseAndAbsentMeansEmpty) {
  TempFolder folder;
  EXPECT_EQ(LoadBusyLog(folder.Path().string()).Size(), 0u);
  // An empty "Path" must not read a BusyLines.log from the current folder.
  EXPECT_EQ(LoadBusyLog("").Size(), 0u);

  TempFolder other;
  std::filesystem::create_directory(other.Path() / "BusyLines.log");
  EXPECT_EQ(ErrorNumberOf([&] { LoadBusyLog(other.Path().string()); }), err::kPathFileAccess);
}

// Period 11/03 to 11/05: the 11/02 line before the period is skipped, the
// 11/02 line met after the period began is listed (From is tested only until
// the period begins), the 11/06 line stops the listing, so the 11/04 line
// after it is never reached. Without a busy log the listing is empty.
TEST(BusyListing, ListsThePeriodWithItsTotals) {
  BusyRig("busy-listing.log", "Detailed", "busylines.LOG").ExpectRun("11/03/2026", "11/05/2026", "busy-listing.txt");
  BusyRig("", "Detailed").ExpectRun("11/01/2026", "11/30/2026", "busy-empty.txt");
}

// Sunday 11/01 to Sunday 11/08; the 10/31 line is before the period and the
// 11/09 line after it.
TEST(BusySummary, DayAndHourTablesMatchTheirTextExport) {
  BusyRig rig("busy-summary.log", "Summary");
  rig.ExpectRun("11/01/2026", "11/08/2026", "busy-summary.txt");
  EXPECT_TRUE(rig.host.charts.empty());
}

TEST(BusySummary, ChartHasTwentyFourHourlyBarsAndItsBitmapGoesAway) {
  BusyRig rig("busy-summary.log", "Summary");
  ASSERT_EQ(rig.Run("11/01/2026", "11/08/2026", true), RequestOutcome::kProduced);
  ASSERT_EQ(rig.host.charts.size(), 1u);
  const BarChartSpec& chart = rig.host.charts[0];
  // 12:10 AM Sunday; 9:00 and 9:30 AM Monday and 9:15 AM Sunday; 11:45 AM;
  // noon; 1:05 PM; 11:59:59 PM.
  EXPECT_EQ(chart.values,
            (std::vector<std::int32_t>{1, 0, 0, 0, 0, 0, 0, 0, 0, 3, 0, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}));
  EXPECT_EQ((std::vector<int>{chart.maxY, chart.ticks}), (std::vector<int>{10, 2}));
}

// A length that is not a number stops the listing, keeping the rows before
// it in the document, and stops the summary before anything is printed; a
// start time that is not a time costs the summary only its own line. The
// boxes are in busy-errors.txt and busy-summary-bad-time.txt.
TEST(BusyReports, BadLinesShowTheirBoxes) {
  std::string boxes;
  BusyRig listing("busy-bad-seconds.log", "Detailed");
  boxes += TakeBoxes(listing.host, listing.Run("11/01/2026", "11/30/2026"));
  EXPECT_TRUE(listing.host.previews.empty());
  ExpectMatchesFixture(listing.LeftDocumentText(), "busy-bad-seconds-left.txt");

  BusyRig summary("busy-bad-seconds.log", "Summary");
  boxes += TakeBoxes(summary.host, summary.Run("11/01/2026", "11/30/2026"));
  EXPECT_TRUE(summary.host.previews.empty());
  ExpectMatchesFixture(boxes, "busy-errors.txt");

  BusyRig badTime("", "Summary");
  badTime.folder.Write("BusyLines.log",
                       "11/03/2026,09:41:10 AM,09:42:04 AM,54,1-4\r\n"
                       "11/03/2026,25:00,09:50:00 AM,60,1-4\r\n"
                       "11/04/2026,10:00:00 AM,10:01:00 AM,60,1-4\r\n");
  badTime.ExpectRun("11/01/2026", "11/30/2026", "busy-summary-bad-time.txt");
}

}  // namespace
}  // namespace cw
