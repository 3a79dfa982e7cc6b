// The report request: its checks and messages in their order, the settings it
// stores, the document it configures, the page headings of every tab, the
// printer-error answer, and the history of a number.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "analysis_rig.h"
#include "core/data/log_lines.h"
#include "reports/get_history.h"

namespace cw {
namespace {

using testing::Call;
using testing::LogOf;
using testing::MemorySettingsStore;
using testing::TakeBoxes;
using testing::TempFolder;

// Writes down the order in which keys are saved, and where.
class OrderedSettingsStore : public MemorySettingsStore {
 public:
  void Save(std::string_view app, std::string_view section, std::string_view key, std::string_view value) override {
    MemorySettingsStore::Save(app, section, key, value);
    saved += "saved: " + std::string(app) + "/" + std::string(section) + "/" + std::string(key) + "=" + std::string(value) + "\n";
  }
  std::string saved;
};

// Ninety unanswered incoming calls on line 1 from ninety different callers:
// enough rows for a second page in every listing.
std::vector<Call> NinetyCalls() {
  std::vector<Call> calls;
  for (int i = 1; i <= 90; ++i) {
    const std::string n = std::to_string(1000 + i).substr(1);
    calls.push_back(Call().Date("01/15/2026").Name("CALLER " + n).Number("(555) 100-0" + n).Answered("No").Rings("2").Duration("0:00:05"));
  }
  return calls;
}

// A request for January 2026 in and out, of the default kind unless told.
struct Rig : testing::BasicRig<testing::SpoolCapturingHost, OrderedSettingsStore> {
  explicit Rig(const std::vector<Call>& calls = {Call().Date("01/15/2026")}, std::int16_t activeLines = 2)
      : BasicRig(LogOf(calls), kind::kDailyCallStatistics, activeLines) {
    Request().fromDate = "01/01/2026";
    Request().toDate = "01/31/2026";
  }
};

// The boxes of each refused request are in dispatch-refusals.txt, in the
// order of the requests here.
TEST(Dispatch, RefusesIncompleteRequestsInOrderWithTheirMessages) {
  std::string boxes;
  {
    // The log is looked for before the dates: with both missing, only the
    // log is reported.
    Rig rig;
    ReportEnvironment environment;
    environment.logPath = rig.folder.File("gone.txt");
    rig.Open(environment);
    rig.Request().fromDate = rig.Request().toDate = "";
    boxes += TakeBoxes(rig.host, rig.Run());
    EXPECT_EQ(rig.form->Document(), nullptr);
  }
  {
    // An empty (or blank) From stops the request whatever else is wrong.
    Rig rig;
    rig.Request().fromDate = "   ";
    rig.Request().toDate = "";
    rig.Request().kind = kind::kAbandonedCalls;
    boxes += TakeBoxes(rig.host, rig.Run());
    EXPECT_TRUE(rig.settings.saved.empty());
  }
  {
    // An empty To is not checked: its conversion fails in the procedure.
    Rig rig;
    rig.Request().toDate = "";
    boxes += TakeBoxes(rig.host, rig.Run());
    EXPECT_TRUE(rig.host.previews.empty());
    EXPECT_EQ(rig.form->Document(), nullptr);
  }
  // Missing search text on the two search tabs; the document of the
  // previous request stays the current one.
  Rig rig;
  rig.Request().kind = kind::kCallHistory;
  ASSERT_EQ(rig.Run(), RequestOutcome::kProduced);
  OrlPrinter* previous = rig.form->Document();
  for (std::int16_t tab : {kind::kByName, kind::kByTelNumber}) {
    rig.Request().kind = tab;
    rig.Request().searchText = "  ";
    boxes += TakeBoxes(rig.host, rig.Run());
    EXPECT_EQ(rig.form->Document(), previous);
  }
  EXPECT_EQ(rig.host.previews.size(), 1u);
  // A printer error answers "retry" whatever the user chose.
  for (MessageAnswer answer : {MessageAnswer::kRetry, MessageAnswer::kCancel}) {
    rig.host.answers = {answer};
    bool retry = false;
    rig.form->OnPrinterError(retry);
    EXPECT_TRUE(retry);
    boxes += TakeBoxes(rig.host);
  }
  // A number's history stops in its error box when the stored DTMF setting
  // is no truth value.
  rig.settings.values[{"Vorn Ringtally", "Reports", "DTMF"}] = "maybe";
  boxes += TakeBoxes(rig.host, GetHistory(*rig.form, rig.host, rig.settings, "5551234567"));
  EXPECT_EQ(rig.host.previews.size(), 1u);
  testing::ExpectMatchesFixture(boxes, "dispatch-refusals.txt");
}

// The filters of abandoned-filters.txt, each with what its request did and
// stored in abandoned-filters-done.txt: the seconds are checked before the
// rings, an unanswered-only filter does not look at the boxes, and a refused
// filter stores nothing. A store that refuses one key is not asked for the
// next ones, and the report still runs. The call-backs tab checks the filter
// as well.
TEST(Dispatch, AbandonedFilterChecksAndTheSettingsTheyStore) {
  std::string done;
  for (const std::vector<std::string>& c : testing::TableCases("reports/abandoned-filters.txt")) {
    Rig rig;
    rig.Request().kind = static_cast<std::int16_t>(std::stoi(c[6]));
    rig.Request().abandoned = {c[0] == "1", c[1], c[2] == "1", c[3], c[4] == "1", 0};
    rig.settings.failing = c[5] == "failing";
    done += "filter: " + c[0] + "|" + c[1] + "|" + c[2] + "|" + c[3] + "|" + c[4] + "|" + c[5] + "|" + c[6] + "\n";
    done += TakeBoxes(rig.host, rig.Run()) + rig.settings.saved;
    done += "previews: " + std::to_string(rig.host.previews.size()) + "\n";
  }
  testing::ExpectMatchesFixture(done, "abandoned-filters-done.txt");
}

// The tabs of tab-titles.txt, each with its outcome, document title,
// previews and hourglass in tab-titles-done.txt. A busy variant that names
// no report sets the title and prints nothing.
TEST(Dispatch, TitlesHourglassAndOutcomePerTab) {
  std::string done;
  for (const std::vector<std::string>& c : testing::TableCases("reports/tab-titles.txt")) {
    Rig rig;
    rig.Request().kind = static_cast<std::int16_t>(std::stoi(c[0]));
    rig.Request().chart = c[1] == "chart";
    if (!c[2].empty()) rig.Request().variant = c[2];
    rig.Request().searchText = rig.Request().kind == kind::kByName ? "SMITH JOHN" : "5551234567";
    rig.Request().lines = {false, {1}};
    done += "tab: " + c[0] + "|" + c[1] + "|" + c[2] + "\n" + TakeBoxes(rig.host, rig.Run());
    ASSERT_NE(rig.form->Document(), nullptr);
    done += "title: " + rig.form->Document()->Title() + "\n";
    for (const auto& preview : rig.host.previews) done += "preview: " + preview.title + "\n";
    done += "hourglass:";
    for (bool busy : rig.host.busyChanges) done += busy ? " on" : " off";
    done += "\n";
  }
  testing::ExpectMatchesFixture(done, "tab-titles-done.txt");
}

TEST(Dispatch, DocumentConfiguration) {
  Rig rig;
  rig.Request().kind = kind::kCallHistory;
  ASSERT_EQ(rig.Run("01/05/2026", "02/10/2026"), RequestOutcome::kProduced);
  ASSERT_EQ(rig.host.documents.size(), 1u);
  const SpoolHeader& header = rig.host.documents[0].header;
  // Inches, portrait, single spacing, the 10-point bold Arial heading block.
  EXPECT_EQ((std::vector<double>{double(header.scaleMode), double(header.orientation), header.spacing,
                                 double(header.autoHeadingsFontSize), double(header.autoHeadingsFontAttr)}),
            (std::vector<double>{5, 1, 1.0, 10, 1}));
  EXPECT_TRUE(header.autoHeadings && header.autoNewPage);
  EXPECT_EQ(header.autoHeadingsFontName, "Arial");
  // The configuration ends with the document font, before any report row.
  ASSERT_FALSE(rig.host.documents[0].records.empty());
  EXPECT_EQ(rig.host.documents[0].records[0].font, (FontSpec{"Arial", 9}));
  // The preview takes 96 % of the screen's height and 72 % of its width.
  const OrlPrinter::OutputOptions& options = rig.form->Document()->Options();
  EXPECT_EQ(options.previewWindowHeight, 10368);
  EXPECT_EQ(options.previewWindowWidth, 13824);

  // The preview size is a 16-bit value: a screen taller than 34132 twips
  // overflows.
  Rig tall;
  tall.host.screen = {19200, 34200};
  tall.Request().kind = kind::kCallHistory;
  tall.ExpectRun("01/01/2026", "01/31/2026", "dispatch-tall-screen.txt");
  EXPECT_EQ(tall.form->Document(), nullptr);
}

TEST(Dispatch, TheNextReportCountsNothingOfTheLastOne) {
  Rig rig({Call().Date("01/15/2026").Direction("In"), Call().Date("01/16/2026").Direction("Out")});
  rig.folder.Write("BusyLines.log", "01/15/2026,9:00 AM,9:01 AM,60,1-2\r\n");
  rig.Request().variant = "Summary";
  for (std::int16_t tab : {kind::kDailyCallStatistics, kind::kLineUsageStatistics, kind::kAllLinesBusy}) {
    rig.Request().kind = tab;
    ASSERT_EQ(rig.Run(), RequestOutcome::kProduced);
    ASSERT_EQ(rig.Run(), RequestOutcome::kProduced);
    EXPECT_EQ(rig.host.previews.back().text, rig.host.previews[rig.host.previews.size() - 2].text);
  }
}

// ---------------------------------------------------------------------------
// Page headings
//
// Every report over two pages' worth of calls is compared with its expected
// text export, which shows the listings repeating their headings on page 2
// at the same places; every report draws the double rule under the
// engine's heading block (a rule is not part of a text export).

// The first two records after the engine's heading block ("Page: N", the
// subtitle and the font restored) on a page: "rule <y>" for a rule across
// the page, the keyword for anything else.
std::vector<std::string> UnderHeadingBlock(const testing::SpoolCapturingHost::Document& document, int page) {
  const std::string pageText = "Page: " + std::to_string(page);
  const auto& records = document.records;
  auto at = std::find_if(records.begin(), records.end(), [&](const SpoolCommand& command) {
    return command.keyword == SpoolKeyword::kTextOut && command.text == pageText;
  });
  std::vector<std::string> found;
  for (at += at == records.end() ? 0 : 4; at != records.end() && found.size() < 2; ++at) {
    const bool across = at->keyword == SpoolKeyword::kLineOut && at->x1 == 0 && at->x2 == 9 && at->y1 == at->y2;
    found.push_back(across ? "rule " + std::to_string(at->y1) : at->keywordText);
  }
  return found;
}

TEST(PageHeadings, RepeatedOnEveryPageUnderTheDoubleRule) {
  std::string busyLog;
  for (int i = 0; i < 90; ++i) busyLog += "01/15/2026,9:00 AM,9:01 AM,60,1-2\r\n";
  const double blockEnd = 0.5 + 3 * 240 / 1440.0;  // half an inch and three lines of the 10-point heading
  const std::vector<std::string> rule{"rule " + std::to_string(blockEnd + 0.03), "rule " + std::to_string(blockEnd + 0.05)};
  for (const std::vector<std::string>& c : testing::TableCases("reports/headings-cases.txt")) {
    SCOPED_TRACE(c[5]);
    const std::int16_t tab = static_cast<std::int16_t>(std::stoi(c[0]));
    Rig rig(NinetyCalls(), tab == kind::kLineUsageStatistics ? 40 : 2);
    rig.folder.Write("BusyLines.log", busyLog);
    ReportRequest& request = rig.Request();
    request.kind = tab;
    request.dtmf = c[1] == "dtmf";
    request.columns = DetailColumnPositions(request.dtmf);
    request.searchText = c[2];
    request.chart = c[3] == "chart";
    request.variant = c[4];
    request.partial = request.abandoned.unanswered = true;
    request.direction = "In";
    request.lines = {false, {1}};
    ASSERT_EQ(rig.Run(), RequestOutcome::kProduced);
    ASSERT_EQ(rig.host.documents.size(), 1u);
    testing::ExpectMatchesFixture(rig.Text(), "headings-" + c[5] + ".txt");
    const bool twoPages = c[6] == "2";
    EXPECT_EQ(UnderHeadingBlock(rig.host.documents[0], 1), rule);
    EXPECT_EQ(rig.host.previews[0].totalPages, twoPages ? 2 : 1);
    EXPECT_EQ(UnderHeadingBlock(rig.host.documents[0], 2), twoPages ? rule : std::vector<std::string>{});
  }
}

// ---------------------------------------------------------------------------
// History of a number

TEST(GetHistory, BuildsTheInAndOutHistoryOverTheWholeLog) {
  Rig rig({Call().Date("03/02/2025").Number("555-123-4567"), Call().Date("11/20/2026").Number("(555) 123-4567"),
           Call().Date("11/21/2026").Number("555-999-0000")});
  rig.host.today = CivilDate::FromYmd(2026, 11, 22);
  rig.Request().partial = rig.Request().chart = true;
  rig.settings.values[{"Vorn Ringtally", "Reports", "DTMF"}] = "1";

  // The number's report from the log's first day to today with the stored
  // touch-tone columns: both spellings of the number, and not the other
  // caller.
  const RequestOutcome outcome = GetHistory(*rig.form, rig.host, rig.settings, "5551234567");
  testing::ExpectMatchesFixture(TakeBoxes(rig.host, outcome) + rig.Text(), "history-of-number.txt");
  // An exact search, and no chart left checked for the next request.
  EXPECT_FALSE(rig.Request().partial || rig.Request().chart);
  EXPECT_GT(rig.host.eventsRun, 0);
}

TEST(GetHistory, StartDateAndControlsFromTheLogAndTheHardware) {
  const CivilDate today = CivilDate::FromYmd(2026, 11, 22);
  ReportEnvironment environment;
  MemorySettingsStore settings;
  {
    // An undated first line starts the history today.
    TempFolder folder;
    environment.logPath = folder.Write("CallLog.txt", "-- log started --\r\n" + Call().Text() + "\r\n");
    ReportRequest request;
    BuildHistoryRequest(request, "5551234567", environment, settings, today, {});
    EXPECT_EQ(request.fromDate, "11/22/2026");
  }
  {
    // Without a log, From stays as it was.
    environment.logPath = "/nonexistent/CallLog.txt";
    ReportRequest request;
    request.fromDate = "05/05/2025";
    EXPECT_TRUE(BuildHistoryRequest(request, "1", environment, settings, today, {}).directionOptionsEnabled);
    EXPECT_EQ(request.fromDate, "05/05/2025");
    EXPECT_EQ(request.toDate, "11/22/2026");
  }
  // Hardware that cannot tell the directions (5 and 6, as the report form's
  // tests show) turns their options off.
  environment.hardwareType = 6;
  ReportRequest request;
  EXPECT_FALSE(BuildHistoryRequest(request, "1", environment, settings, today, {}).directionOptionsEnabled);
  EXPECT_EQ(request.direction, "InOut");  // a history is of the calls both ways
}


}  // namespace
}  // namespace cw
