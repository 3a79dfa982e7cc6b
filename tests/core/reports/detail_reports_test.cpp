// The call detail reports end to end, from a fixture log through the request
// to the text export of the finished document, plus the rules behind them.

#include <gtest/gtest.h>

#include <cstdio>
#include <regex>
#include <string>
#include <vector>

#include "analysis_rig.h"
#include "core/data/log_lines.h"
#include "data/call_record.h"
#include "reports/detail_rules.h"
#include "support/text.h"

namespace cw {
namespace {

std::string LogLine(std::string_view duration, std::string_view answered, std::string_view rings,
                    std::string_view direction = "In") {
  return testing::Call().Date("11/10/2026").Direction(std::string(direction)).Duration(std::string(duration))
      .Answered(std::string(answered)).Rings(std::string(rings)).Text();
}

// What a user checks first: the rows of a listing against its totals block.
struct ListingFigures {
  int rows = 0;
  std::int64_t rowSeconds = 0;
  std::string totalCalls;     // the figures under "Total Calls" and "Duration"
  std::string totalDuration;
};

std::int64_t Seconds(const std::string& hms) {
  int h = 0, m = 0, s = 0;
  std::sscanf(hms.c_str(), "%d:%d:%d", &h, &m, &s);
  return h * 3600LL + m * 60 + s;
}

ListingFigures ReadListing(const std::string& text) {
  static const std::regex row(R"(^\s*\d+\s.*\s\d\d/\d\d/\d{4}\s*\d+:\d\d[AP]M\s+(In|Out)\s+(\d+:\d\d:\d\d)\s)");
  static const std::regex figures(R"(^\s*(\d+)\s+(\d+:\d\d:\d\d)\s*$)");
  ListingFigures result;
  const std::vector<std::string> lines = testing::Lines(text);
  for (std::size_t k = 0; k < lines.size(); ++k) {
    std::smatch match;
    const std::string line = lines[k] + " ";
    if (std::regex_search(line, match, row)) {
      ++result.rows;
      result.rowSeconds += Seconds(match[2]);
    } else if (lines[k].find("Total Calls") != std::string::npos && k + 1 < lines.size() &&
               std::regex_search(lines[k + 1], match, figures)) {
      result.totalCalls = match[1];
      result.totalDuration = match[2];
    }
  }
  return result;
}

// What follows "Total Abandoned Calls:" on its line.
std::string AbandonedFigures(const std::string& text) {
  const std::string label = "Total Abandoned Calls:";
  const std::size_t at = text.find(label);
  if (at == std::string::npos) return "<no abandoned totals>";
  const std::size_t end = text.find("\r\n", at);
  return std::string(Trim(text.substr(at + label.size(), end == std::string::npos ? end : end - at - label.size())));
}

void ExpectTotalsAddUp(const std::string& text, int rows) {
  const ListingFigures figures = ReadListing(text);
  EXPECT_EQ(figures.rows, rows);
  EXPECT_EQ(figures.totalCalls, std::to_string(figures.rows)) << "Total Calls is the number of rows listed";
  EXPECT_EQ(Seconds(figures.totalDuration), figures.rowSeconds) << "Duration is the sum of the rows' minutes";
}

// A report form on a call log, asked for the first days of November 2026 in
// and out.
struct DetailRig : testing::AnalysisRig {
  explicit DetailRig(std::string_view logText) : BasicRig(logText, kind::kCallHistory) {
    Request().fromDate = "11/01/2026";
    Request().toDate = "11/06/2026";
  }

  // Runs the request; the text export of its document, or "" without one.
  std::string RunText() {
    const std::size_t before = host.previews.size();
    outcome = Run();
    return host.previews.size() > before ? host.previews.back().text : std::string();
  }

  RequestOutcome outcome = RequestOutcome::kFailed;
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
  EXPECT_EQ(testing::Outcome([] { return AbandonedPercentage(30'000'000, 40'000'000); }).second, err::kOverflow);

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
  EXPECT_TRUE(AbandonedCallTest(ringsOnly, "In").IsAbandoned(CallRecord(LogLine("0:59:59", "Yes", "2"))));
  EXPECT_EQ(testing::Outcome([&] {
              return AbandonedCallTest(ringsOnly, "In").IsAbandoned(CallRecord(LogLine("0:00:01", "No", "x")));
            }).second,
            err::kTypeMismatch);
}

// ---------------------------------------------------------------------------
// Listings of every call

TEST(DetailListingTest, EveryCallOfThePeriodWithItsTotals) {
  DetailRig rig(testing::ReportFixture("detail-calls.log"));
  const std::string inOut = rig.RunText();
  testing::ExpectMatchesFixture(inOut, "detail-calls-inout.txt");
  ExpectTotalsAddUp(inOut, 9);
  EXPECT_EQ(rig.outcome, RequestOutcome::kProduced);

  // Inbound only, with the touch-tone digits: no split by direction.
  rig.Request().direction = "In";
  rig.Request().dtmf = true;
  rig.Request().columns = DetailColumnPositions(true);
  const std::string in = rig.RunText();
  testing::ExpectMatchesFixture(in, "detail-calls-in-dtmf.txt");
  ExpectTotalsAddUp(in, 7);

  // A kind without a tab of its own lists every call, as mode 0 does.
  rig.Request().kind = 10;
  EXPECT_EQ(ReadListing(rig.RunText()).totalCalls, "7");
  EXPECT_EQ(rig.host.previews.back().title, "CALLER DETAIL REPORT");

  // An empty period prints the headings and zero totals.
  rig.Request().kind = kind::kCallHistory;
  rig.Request().direction = "InOut";
  rig.Request().dtmf = false;
  rig.Request().columns = DetailColumnPositions(false);
  rig.Request().fromDate = "11/07/2026";
  rig.Request().toDate = "11/08/2026";
  const std::string empty = rig.RunText();
  testing::ExpectMatchesFixture(empty, "detail-calls-empty.txt");
  ExpectTotalsAddUp(empty, 0);
}

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
    const std::string exported = rig.RunText();
    ASSERT_FALSE(exported.empty()) << (rig.host.messages.empty() ? "" : rig.host.messages[0].text);
    ExpectTotalsAddUp(exported, calls);
    const std::size_t label = exported.find("Total Calls");
    ASSERT_NE(label, std::string::npos);
    EXPECT_EQ(exported.find('\f', label), std::string::npos)
        << calls << " calls: the totals block is split over two pages";
  }
}

// ---------------------------------------------------------------------------
// One caller, by name or by number

TEST(CallerListingTest, ByNameOrNumberExactOrPartial) {
  struct Case {
    std::int16_t tab;
    std::string search;
    bool partial;
    int rows;
    std::string fixture;  // the expected export, if any
    std::vector<std::pair<std::string, bool>> listed;  // a text and whether the export holds it
  };
  const Case cases[] = {
      // Names match whatever their case; an exact match is the whole name.
      {kind::kByName, "smith john", false, 2, "", {{"SMITH JOHN ", true}, {"Smith John ", true}, {"SMITH JOHNNY", false}}},
      {kind::kByName, "SMITH", true, 4, "detail-name-partial", {}},
      {kind::kByTelNumber, "5551234567", false, 3, "detail-number-exact", {}},  // written three ways in the log
      {kind::kByTelNumber, "5550198841, 5556120934", false, 3, "", {}},
      {kind::kByTelNumber, "123", false, 0, "", {}},  // an exact match is the whole number
      {kind::kByTelNumber, "123", true, 4, "", {{"(555) 312-3000", true}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.search + (c.partial ? " partial" : ""));
    DetailRig rig(testing::ReportFixture("detail-calls.log"));
    rig.Request().kind = c.tab;
    rig.Request().searchText = c.search;
    rig.Request().partial = c.partial;
    const std::string text = rig.RunText();
    ExpectTotalsAddUp(text, c.rows);
    if (!c.fixture.empty()) testing::ExpectMatchesFixture(text, c.fixture + ".txt");
    for (const auto& [listed, held] : c.listed) EXPECT_EQ(text.find(listed) != std::string::npos, held) << listed;
    EXPECT_FALSE(rig.form->PartialMatch());
  }
}

// ---------------------------------------------------------------------------
// Abandoned calls

TEST(AbandonedListingTest, InboundCallsByRingsAnswerAndDuration) {
  DetailRig rig(testing::ReportFixture("detail-abandoned.log"));
  ReportRequest& request = rig.Request();
  request.kind = kind::kAbandonedCalls;
  request.fromDate = request.toDate = "11/10/2026";
  request.direction = "In";
  request.abandoned = {true, "30", true, "3", true, 0};
  const std::string in = rig.RunText();
  testing::ExpectMatchesFixture(in, "detail-abandoned-in.txt");
  EXPECT_EQ(rig.host.previews.back().title, "ABANDONED CALLS DETAIL REPORT");
  EXPECT_EQ(ReadListing(in).rows, 4);
  EXPECT_EQ(AbandonedFigures(in), "4 of 8  (50%)");

  // Out and InOut: the answer and the rings are not looked at.
  request.direction = "Out";
  const std::string out = rig.RunText();
  EXPECT_EQ(ReadListing(out).rows, 1);
  EXPECT_NE(out.find("OUT ANSWERED"), std::string::npos);
  EXPECT_EQ(AbandonedFigures(out), "1 of 2  (50%)");
  request.direction = "InOut";
  const std::string both = rig.RunText();
  EXPECT_EQ(ReadListing(both).rows, 8);
  EXPECT_EQ(AbandonedFigures(both), "8 of 10  (80%)");
  EXPECT_EQ(both.find("LASTED THE LIMIT"), std::string::npos);
  EXPECT_EQ(both.find("OUT LONG"), std::string::npos);

  // No call in the period: nothing considered, 0 %.
  request.fromDate = request.toDate = "11/11/2026";
  const std::string none = rig.RunText();
  EXPECT_EQ(ReadListing(none).rows, 0);
  EXPECT_EQ(AbandonedFigures(none), "0 of 0  (0%)");
}

// ---------------------------------------------------------------------------
// Condensed history

TEST(CondensedHistoryTest, OneRowPerCallerInNameThenNumberOrder) {
  DetailRig rig(testing::ReportFixture("detail-calls.log"));
  rig.Request().chart = true;
  // SMITH JOHN at (555) 123-4567 and Smith John at 555-123-4567 are one
  // caller; SMITH JOHNNY at 5551234567 is another; rows by name, then number.
  testing::ExpectMatchesFixture(rig.RunText(), "detail-condensed.txt");
  rig.Request().fromDate = rig.Request().toDate = "11/07/2026";
  const ListingFigures empty = ReadListing(rig.RunText());
  EXPECT_EQ(empty.totalCalls, "0");
  EXPECT_EQ(empty.totalDuration, "0:00:00");
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
  rig.Request().chart = true;
  const std::string text = rig.RunText();
  std::vector<std::string> rows;
  for (const std::string& line : testing::Lines(text)) {
    const std::vector<std::string> words = testing::Words(line);
    if (words.size() >= 3 && words.end()[-3].starts_with("555000")) rows.push_back(words[0] + " " + words.end()[-2]);
  }
  EXPECT_EQ(rows, (std::vector<std::string>{"Jose 2", "Jos\xE9 2", "\x8A" "ARKA 2"})) << text;
}

// ---------------------------------------------------------------------------
// Line listing

TEST(LineListingTest, OneLineOrAllLinesEachOnItsOwnPages) {
  DetailRig rig(testing::ReportFixture("detail-calls.log"));
  rig.Request().kind = kind::kByLineNumber;
  rig.Request().lines.lines = {2};
  const std::string one = rig.RunText();
  testing::ExpectMatchesFixture(one, "detail-lines-one.txt");
  ExpectTotalsAddUp(one, 3);
  EXPECT_EQ(rig.host.previews.back().title, "LINE DETAILS REPORT (Line 2)");

  rig.Request().lines.allLines = true;
  const std::string all = rig.RunText();
  testing::ExpectMatchesFixture(all, "detail-lines-all.txt");
  EXPECT_EQ(rig.host.previews.back().title, "LINE DETAILS REPORT (Lines 1-4)");
  EXPECT_EQ(rig.host.previews.back().totalPages, 4);
  // Page by page: its line in the heading, its own calls and totals.
  const int callsOnLine[] = {4, 3, 2, 0};
  std::size_t start = 0;
  for (int line = 1; line <= 4; ++line) {
    const std::size_t end = all.find('\f', start);
    const std::string page = all.substr(start, end == std::string::npos ? std::string::npos : end - start);
    EXPECT_NE(page.find("LINE DETAILS REPORT (Line " + std::to_string(line) + ")"), std::string::npos);
    ExpectTotalsAddUp(page, callsOnLine[line - 1]);
    start = end == std::string::npos ? all.size() : end + 1;
  }
}

// ---------------------------------------------------------------------------
// Bad records

TEST(DetailErrorTest, RefusedOrFailedRequestsShowOneBoxAndNoPreview) {
  struct Case {
    std::string log;
    std::int16_t tab;
    std::vector<std::int16_t> lines;
    RequestOutcome outcome;
    std::string title;
    std::vector<std::string> parts;  // of the message, in full when one
  };
  const Case cases[] = {
      {"detail-calls.log", kind::kByLineNumber, {}, RequestOutcome::kRefused, "Callwarden Reports",
       {"No line # was selected.\r\nChoose a line # or check the \"All Lines\" option."}},
      {"detail-bad-time.log", kind::kCallHistory, {}, RequestOutcome::kFailed, "Error",
       {"Error: 13\r\n", "Procedure Name: Print_Detail."}},
      {"detail-bad-line.log", kind::kByLineNumber, {1}, RequestOutcome::kFailed, "Error",
       {"Error 13 Type mismatch", "in Form fReport procedure Print_Lines."}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.log);
    DetailRig rig(testing::ReportFixture(c.log));
    rig.Request().kind = c.tab;
    rig.Request().lines.lines = c.lines;
    EXPECT_EQ(rig.RunText(), "");
    EXPECT_EQ(rig.outcome, c.outcome);
    ASSERT_EQ(rig.host.messages.size(), 1u);
    EXPECT_EQ(rig.host.messages[0].title, c.title);
    for (const std::string& part : c.parts) {
      EXPECT_NE(rig.host.messages[0].text.find(part), std::string::npos) << part;
    }
    if (c.parts.size() == 1) {
      EXPECT_EQ(rig.host.messages[0].text, c.parts[0]);
    }
    EXPECT_EQ(rig.host.messages[0].icon, c.outcome == RequestOutcome::kRefused ? MessageIcon::kExclamation : MessageIcon::kCritical);
  }
}

}  // namespace
}  // namespace cw
