// The call detail reports: the rules behind them, totals at a page end,
// accented callers and bad records (every listing's page is ReportPages').

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "analysis_rig.h"
#include "core/data/log_lines.h"
#include "core/support/error_number.h"
#include "data/call_record.h"
#include "reports/detail_rules.h"

namespace cw {
namespace {

std::string LogLine(std::string_view duration, std::string_view answered, std::string_view rings,
                    std::string_view direction = "In") {
  return testing::Call().Date("11/10/2026").Direction(std::string(direction)).Duration(std::string(duration))
      .Answered(std::string(answered)).Rings(std::string(rings)).Text();
}

// A report form on a call log, asked for the first days of November 2026 in
// and out.
struct DetailRig : testing::AnalysisRig {
  explicit DetailRig(std::string_view logText) : BasicRig(logText, kind::kCallHistory) {
    Request().fromDate = "11/01/2026";
    Request().toDate = "11/06/2026";
  }
};

// ---------------------------------------------------------------------------
// Rules on values

TEST(DetailRulesTest, TotalsPercentagesAndTitles) {
  for (auto [seconds, text] : {std::pair{0, "0:00:00"}, {3599, "0:59:59"}, {3600, "1:00:00"},
                               {100 * 3600 + 40 * 60 + 39, "100:40:39"}, {-300, "-0:05:00"}}) {
    EXPECT_EQ(TotalDurationText(seconds), text);
  }
  // Halves go to the even whole number: 12.5 down, 37.5 up.
  for (auto [abandoned, considered, percent] : {std::tuple{12, 40, 30}, {1, 8, 12}, {3, 8, 38}, {2, 3, 67}, {5, 0, 0}}) {
    EXPECT_EQ(AbandonedPercentage(abandoned, considered), percent) << abandoned << " of " << considered;
  }
  EXPECT_EQ(AbandonedSummaryText(12, 40), "12 of 40  (30%)");
  EXPECT_EQ(test::ErrorNumberOf([] { AbandonedPercentage(30'000'000, 40'000'000); }), err::kOverflow);

  EXPECT_EQ(LineListingTitle({1, 3, 4, 5, 8}), "LINE DETAILS REPORT (Lines 1,3-5,8)");
  EXPECT_EQ(LineListingTitle({4, 2}), "LINE DETAILS REPORT (Lines 4,2)");
  EXPECT_EQ(LineListingTitle({}), "LINE DETAILS REPORT");
}

// The ring, answer and duration limits at their thresholds and by direction
// are in the abandoned-calls fixture log; these are the rules it leaves out.
TEST(DetailRulesTest, AbandonedRulesBeyondTheListingFixture) {
  AbandonedFilter unanswered;
  unanswered.unanswered = true;
  EXPECT_TRUE(AbandonedCallTest(unanswered, "In").IsAbandoned(CallRecord(LogLine("0:00:10", "yes", "1"))))
      << "only \"Yes\" means answered";

  // Without "Calls Not Lasting" the duration is not looked at.
  const AbandonedFilter ringsOnly{false, "", true, "2", false, 0};
  const AbandonedCallTest rings(ringsOnly, "In");
  EXPECT_TRUE(rings.IsAbandoned(CallRecord(LogLine("0:59:59", "Yes", "2"))));
  EXPECT_EQ(test::ErrorNumberOf([&] { rings.IsAbandoned(CallRecord(LogLine("0:00:01", "No", "x"))); }), err::kTypeMismatch);
}

// ---------------------------------------------------------------------------
// Listings (their pages are ReportPages')

TEST(DetailListingTest, TotalsStayWithTheirLabelsAcrossAPageEnd) {
  // Enough calls to fill a page and some; one of these counts leaves room
  // for the labels but not for their figures.
  for (int calls = 52; calls <= 64; ++calls) {
    std::string text;
    for (int k = 0; k < calls; ++k) {
      const std::string minute = (k % 60 < 10 ? "0" : "") + std::to_string(k % 60);
      text += testing::Call().Date("11/02/2026").Time((k < 60 ? "09:" : "10:") + minute + "AM").Duration("0:01:00").Text() + "\r\n";
    }
    DetailRig rig(text);
    rig.Request().direction = "In";
    ASSERT_EQ(rig.Run(), RequestOutcome::kProduced) << testing::TakeBoxes(rig.host);
    const std::string exported = rig.Text();
    const std::vector<std::string> lines = testing::Lines(exported);
    EXPECT_EQ(std::ranges::count_if(lines, [](const std::string& line) { return line.find("11/02/2026") != std::string::npos; }),
              calls);
    const auto label = std::ranges::find_if(lines, [](const std::string& line) { return line.find("Total Calls") != std::string::npos; });
    ASSERT_TRUE(label != lines.end() && label + 1 != lines.end());
    EXPECT_EQ(testing::Replaced(label[1], " ", ""), std::to_string(calls) + TotalDurationText(calls * 60));
    EXPECT_EQ(exported.find('\f', exported.find("Total Calls")), std::string::npos)
        << calls << " calls: the totals block is split over two pages";
  }
}

TEST(CondensedHistoryTest, CallersAreOneWhateverTheCaseOfTheirAccentedLetters) {
  // "Jos\xE9" and "JOS\xC9" are one caller, as "Jose" and "JOSE" are; the
  // accent still tells Jose from Jos\xE9.
  const std::string log = testing::LogOf({
      testing::Call().Date("11/02/2026").Name("Jos\xE9").Number("5550001111"),
      testing::Call().Date("11/02/2026").Name("JOS\xC9").Number("5550001111"),
      testing::Call().Date("11/03/2026").Name("Jose").Number("5550001111"),
      testing::Call().Date("11/03/2026").Name("JOSE").Number("5550001111"),
      testing::Call().Date("11/04/2026").Name("\x8A" "ARKA \x8C" "E").Number("5550002222"),
      testing::Call().Date("11/04/2026").Name("\x9A" "arka \x9C" "e").Number("5550002222"),
  });
  DetailRig rig(log);
  ASSERT_EQ(rig.Run("11/01/2026", "11/06/2026", true), RequestOutcome::kProduced);
  testing::ExpectMatchesFixture(rig.Text(), "detail-condensed-accents.txt");
}

// ---------------------------------------------------------------------------
// Bad records

// No line chosen, a time that is no time, a line that is no number: the
// boxes are in detail-errors.txt.
TEST(DetailErrorTest, RefusedOrFailedRequestsShowOneBoxAndNoPreview) {
  std::string boxes;
  for (const auto& [log, tab, lines] : {std::tuple{"detail-calls.log", kind::kByLineNumber, std::vector<std::int16_t>{}},
                                        {"detail-bad-time.log", kind::kCallHistory, {}},
                                        {"detail-bad-line.log", kind::kByLineNumber, {1}}}) {
    DetailRig rig(testing::ReportFixture(log));
    rig.Request().kind = tab;
    rig.Request().lines.lines = lines;
    boxes += testing::TakeBoxes(rig.host, rig.Run());
    EXPECT_TRUE(rig.host.previews.empty()) << log;
  }
  testing::ExpectMatchesFixture(boxes, "detail-errors.txt");
}

}  // namespace
}  // namespace cw
