#include "data/record_selection.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "log_lines.h"
#include "support/runtime_error.h"
#include "support/text.h"

namespace cw {
namespace {

using testing::Call;

std::string Log(const std::vector<Call>& calls) { return testing::LogOf(calls); }

CivilDate Day(int month, int day) { return CivilDate::FromYmd(2024, month, day); }

SelectionCriteria Period(CivilDate from, CivilDate to) {
  SelectionCriteria criteria;
  criteria.from = from;
  criteria.to = to;
  return criteria;
}

// The names of the selected records, in the order handed out.
std::vector<std::string> Selected(RecordSelection& selection, std::vector<std::string>* beforeError = nullptr) {
  std::vector<std::string> names;
  try {
    selection.ForEach([&names](const CallRecord& record, CivilDate) { names.emplace_back(record.Name()); }, 1000,
                      [] {});
  } catch (...) {
    if (beforeError != nullptr) *beforeError = names;
    throw;
  }
  return names;
}

std::vector<std::string> Selected(std::string_view log, SelectionCriteria criteria) {
  RecordSelection selection(log, std::move(criteria));
  return Selected(selection);
}

using Names = std::vector<std::string>;

TEST(RecordSelection, PeriodStopsAtTheFirstLaterRecord) {
  const std::string log = Log({Call().Date("01/05/2024").Name("A"),
                               Call().Date("01/10/2024").Name("B"),
                               Call().Date("01/10/2024").Name("C"),
                               Call().Date("01/20/2024").Name("D"),
                               Call().Date("01/08/2024").Name("E")});
  EXPECT_EQ(Selected(log, Period(Day(1, 6), Day(1, 10))), (Names{"B", "C"}));
  EXPECT_EQ(Selected(log, Period(Day(1, 1), Day(12, 31))), (Names{"A", "B", "C", "D", "E"}));

  // A From date later than every record gives nothing, after reading it all.
  RecordSelection late(log, Period(Day(2, 1), Day(3, 1)));
  EXPECT_EQ(Selected(late), Names{});
  EXPECT_EQ(late.RecordsRead(), 5);
  EXPECT_EQ(late.BytesConsumed(), log.size());

  // A To date before the first record stops at the first record.
  RecordSelection early(log, Period(Day(1, 1), Day(1, 2)));
  EXPECT_EQ(Selected(early), Names{});
  EXPECT_EQ(early.RecordsRead(), 1);
  EXPECT_EQ(early.BytesConsumed(), log.find("\r\n") + 2);
}

TEST(RecordSelection, DateDifferingInOneColumnIsConvertedAgain) {
  // Consecutive records share their date conversion only while all ten date
  // columns are the same; the first and the last column matter as well.
  const std::string log = Log({Call().Date("01/10/2024").Name("A"),
                               Call().Date("11/10/2024").Name("B"),
                               Call().Date("11/10/2025").Name("C")});
  EXPECT_EQ(Selected(log, Period(Day(1, 1), Day(1, 31))), Names{"A"});
  EXPECT_EQ(Selected(log, Period(Day(1, 1), Day(12, 31))), (Names{"A", "B"}));
  EXPECT_EQ(Selected(log, Period(Day(11, 1), Day(12, 31))), Names{"B"});
}

TEST(RecordSelection, FromDateIsTestedOnlyUntilThePeriodBegins) {
  const std::string log = Log({Call().Date("01/05/2024").Name("A"),
                               Call().Date("01/15/2024").Name("B"),
                               Call().Date("01/06/2024").Name("C"),
                               Call().Date("01/16/2024").Name("D")});
  EXPECT_EQ(Selected(log, Period(Day(1, 10), Day(1, 31))), (Names{"B", "C", "D"}));
}

// Searches of one kind over one log: the search text or direction, whether
// partial, and the names found.
struct SearchCase {
  std::string text;
  bool partial;
  Names names;
};

void ExpectSearches(std::string_view log, SearchBy by, const std::vector<SearchCase>& cases) {
  for (const SearchCase& c : cases) {
    SelectionCriteria criteria = Period(Day(1, 1), Day(12, 31));
    if (by == SearchBy::kNone) {
      criteria.direction = c.text;
    } else {
      criteria.search = by;
      criteria.searchText = c.text;
      criteria.partial = c.partial;
    }
    EXPECT_EQ(Selected(log, criteria), c.names) << '"' << c.text << '"' << (c.partial ? " partial" : "");
  }
}

TEST(RecordSelection, DirectionTest) {
  const std::string log = Log({Call().Name("A").Direction("In"), Call().Name("B").Direction("Out"),
                               Call().Name("C").Direction(""), Call().Name("D").Direction("In")});
  ExpectSearches(log, SearchBy::kNone,
                 {{"In", false, {"A", "D"}}, {"Out", false, {"B"}}, {"InOut", false, {"A", "B", "C", "D"}},
                  {"", false, {"A", "B", "C", "D"}}, {"in", false, {}}});  // the comparison is exact
  // The field is trimmed wherever the blanks stand; a choice with blanks of
  // its own matches nothing.
  const std::string padded = Log({Call().Name("A").Direction(" In"), Call().Name("B").Direction("In"),
                                  Call().Name("C").Direction(" I")});
  ExpectSearches(padded, SearchBy::kNone, {{"In", false, {"A", "B"}}, {"I", false, {"C"}}, {" In", false, {}}});
  // A line that ends inside the direction columns.
  const std::string cut = Call().Name("D").Text().substr(0, 85) + "\r\n";
  ExpectSearches(cut, SearchBy::kNone, {{"In", false, {"D"}}, {"I", false, {}}});
}

TEST(RecordSelection, NameSearch) {
  const std::string log = Log({Call().Name("Smith John"), Call().Name("SMITH JOHN"), Call().Name("Smithers Ann"),
                               Call().Name("Jones Smith")});
  ExpectSearches(log, SearchBy::kName,
                 {{"  smith john ", false, {"Smith John", "SMITH JOHN"}},
                  {"SMITH", false, {}},
                  {"SMITH", true, {"Smith John", "SMITH JOHN", "Smithers Ann", "Jones Smith"}},
                  {" smith", true, {"Jones Smith"}}});  // a partial search keeps its blanks
}

TEST(RecordSelection, NameSearchFoldsAccentedLetters) {
  const std::string log = Log({Call().Name("\xC9MILE \xC7" "A"),         // EMILE CA with acute and cedilla
                               Call().Name("\xE9mile \xE7" "a"),
                               Call().Name("EMILE CA"),
                               Call().Name("\x8A\x8C\x8E\x9F")});  // S caron, OE, Z caron, Y diaeresis
  SelectionCriteria criteria = Period(Day(1, 1), Day(12, 31));
  criteria.search = SearchBy::kName;
  criteria.searchText = "\xE9mile \xE7" "a";
  EXPECT_EQ(Selected(log, criteria), (Names{"\xC9MILE \xC7" "A", "\xE9mile \xE7" "a"}));
  criteria.searchText = "\x9A\x9C\x9E\xFF";
  EXPECT_EQ(Selected(log, criteria), Names{"\x8A\x8C\x8E\x9F"});
}

TEST(RecordSelection, RecordsDatedWithNoCalendarDateAreToldWithTheirNumber) {
  struct Told {
    std::int64_t record;
    std::string text;
    CivilDate readAs;
    bool operator==(const Told&) const = default;
  };
  // 10/32 rolls over to 11/01, after an October period: the walk ends there
  // as it always has, but not without a word.
  const std::string log = Log({Call().Date("10/30/2024").Name("A"),
                               Call().Date("10/32/2024").Name("B"),
                               Call().Date("10/32/2024").Name("C"),
                               Call().Date("10/31/2024").Name("D")});
  std::vector<Told> told;
  SelectionCriteria criteria = Period(Day(10, 1), Day(10, 31));
  criteria.onRolledDate = [&told](std::int64_t record, std::string_view text, CivilDate readAs) {
    told.push_back({record, std::string(text), readAs});
  };
  EXPECT_EQ(Selected(log, criteria), Names{"A"});
  EXPECT_EQ(told, (std::vector<Told>{{2, "10/32/2024", Day(11, 1)}}));

  // Inside the period the record is taken at the day it rolls to; a run of
  // the same date text is told once, the next run again.
  told.clear();
  const std::string february = Log({Call().Date("02/30/2024").Name("A"),
                                    Call().Date("02/30/2024").Name("B"),
                                    Call().Date("03/01/2024").Name("C"),
                                    Call().Date("02/31/2024").Name("D")});
  criteria.from = Day(2, 1);
  criteria.to = Day(3, 31);
  EXPECT_EQ(Selected(february, criteria), (Names{"A", "B", "C", "D"}));
  EXPECT_EQ(told, (std::vector<Told>{{1, "02/30/2024", Day(3, 1)}, {4, "02/31/2024", Day(3, 2)}}));
}

TEST(RecordSelection, NumberSearch) {
  const std::string log = Log({Call().Number("(555) 123-4567").Name("A"), Call().Number("555-123-4567").Name("B"),
                               Call().Number("5559990000").Name("C"), Call().Number("1 800 555 1234").Name("D"),
                               Call().Number("").Name("E")});
  ExpectSearches(log, SearchBy::kNumber,
                 {{"5551234567", false, {"A", "B"}},
                  {" 5559990000 , 5551234567,18005551234", false, {"A", "B", "C", "D"}},
                  // The search text loses the characters the field loses: a
                  // number written as the reports print it finds the same calls.
                  {"555-123-4567", false, {"A", "B"}},
                  {"(555) 123-4567", false, {"A", "B"}},
                  {" ( 555 )123 - 4567 ", false, {"A", "B"}},
                  {"5551234567,1 800 555 1234", false, {"A", "B", "D"}},
                  {"555123", false, {}},
                  {"555.123.4567", false, {}},  // other characters stay
                  {"555123", true, {"A", "B", "D"}},
                  {"(555) 12", true, {"A", "B", "D"}},
                  {"555", true, {"A", "B", "C", "D"}},
                  // Punctuation alone is no number: it must not match every call.
                  {"-", true, {}},
                  {"()", true, {}},
                  {" - ", true, {}}});
  // A line that ends inside the number column has a shorter number; one that
  // ends before it has none, and its empty field is cleaned without touching
  // memory (the sanitizer build checks the copy of nothing).
  ExpectSearches("01/15/2024 9:05AM  (555) 12\r\n", SearchBy::kNumber, {{"55512", false, {""}}});
  const std::string tooShort = "01/15/2024 9:05AM\r\n01/15/2024 9:05AM  5\r\n";
  ExpectSearches(tooShort, SearchBy::kNumber, {{"55512", false, {}}, {"5", true, {""}}});

  EXPECT_EQ(CleanNumber(" (555) 123-4567 "), "5551234567");
  EXPECT_EQ(NumberSearchList("1, 2 ,,(3) 4-5"), (std::vector<std::string>{"1", "2", "", "345"}));
}

TEST(RecordSelection, BadDateRaisesTypeMismatchWithTheRecord) {
  const std::string badLine = Call().Date("1x/05/2024").Text();
  const std::string log = Log({Call().Date("01/05/2024")}) + badLine + "\r\n";
  RecordSelection selection(log, Period(Day(1, 1), Day(12, 31)));
  Names handedOut;
  try {
    Selected(selection, &handedOut);
    FAIL() << "a bad date was accepted";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), err::kTypeMismatch);
    EXPECT_EQ(error.Processing(), Trim(badLine));
  }
  EXPECT_EQ(handedOut.size(), 1u);
  EXPECT_EQ(selection.RecordsRead(), 2);

  // Short and binary lines fail the same way instead of reading past them.
  using namespace std::string_literals;
  for (const std::string& line : {"x"s, "\0\0\0"s, "\xff\xfe/\x80"s}) {
    const std::string shortLog = line + "\r\n";
    RecordSelection bad(shortLog, Period(Day(1, 1), Day(12, 31)));
    try {
      Selected(bad);
      ADD_FAILURE() << "accepted a record without a date";
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.Number(), err::kTypeMismatch);
    }
  }
}

TEST(RecordSelection, EveryWalkStartsAtTheTopAndReportsItsProgress) {
  const std::string log = Log({Call().Name("A"), Call().Name("B"), Call().Name("C"), Call().Name("D"),
                               Call().Name("E")});
  RecordSelection selection(log, Period(Day(1, 1), Day(12, 31)));
  std::vector<std::pair<std::int64_t, std::size_t>> reports;
  for (int walk = 0; walk < 2; ++walk) {
    reports.clear();
    Names names;
    selection.ForEach([&names](const CallRecord& record, CivilDate) { names.emplace_back(record.Name()); }, 2,
                      [&] { reports.emplace_back(selection.RecordsRead(), selection.BytesConsumed()); });
    EXPECT_EQ(names, (Names{"A", "B", "C", "D", "E"}));
  }
  const std::size_t lineBytes = log.size() / 5;
  EXPECT_EQ(reports, (std::vector<std::pair<std::int64_t, std::size_t>>{{2, 2 * lineBytes}, {4, 4 * lineBytes}}));
  EXPECT_EQ(selection.RecordsRead(), 5);
  EXPECT_EQ(selection.BytesConsumed(), log.size());

  // An empty line ends the log for the selection too.
  const std::string gap = Log({Call().Name("A")}) + "\r\n" + Log({Call().Name("B")});
  EXPECT_EQ(Selected(gap, Period(Day(1, 1), Day(12, 31))), Names{"A"});
}

}  // namespace
}  // namespace cw
