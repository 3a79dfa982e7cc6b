#include "data/record_selection.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "core/support/error_number.h"
#include "log_lines.h"

namespace cw {
namespace {

using testing::Call;
using Names = std::vector<std::string>;

// A log of these calls, named A, B, C... in turn.
std::string Log(std::vector<Call> calls) {
  for (std::size_t k = 0; k < calls.size(); ++k) calls[k].Name(std::string(1, static_cast<char>('A' + k)));
  return testing::LogOf(calls);
}

std::string Dated(std::initializer_list<const char*> dates) {
  std::vector<Call> calls;
  for (const char* date : dates) calls.push_back(Call().Date(date));
  return Log(calls);
}

CivilDate Day(int month, int day) { return CivilDate::FromYmd(2024, month, day); }

SelectionCriteria Period(CivilDate from, CivilDate to) {
  SelectionCriteria criteria;
  criteria.from = from;
  criteria.to = to;
  return criteria;
}

SelectionCriteria AllYear() { return Period(Day(1, 1), Day(12, 31)); }

// The names of the selected records, in the order handed out, added to
// names (where those handed out before an error stay).
const Names& Selected(RecordSelection& selection, Names& names) {
  selection.ForEach([&names](const CallRecord& record, CivilDate) { names.emplace_back(record.Name()); }, 1000,
                    [] {});
  return names;
}

Names Selected(std::string_view log, SelectionCriteria criteria) {
  RecordSelection selection(log, std::move(criteria));
  Names names;
  return Selected(selection, names);
}

TEST(RecordSelection, PeriodStopsAtTheFirstLaterRecord) {
  struct Case {
    std::string log;
    CivilDate from, to;
    Names names;
    std::int64_t read;  // records read, the first later one included
  };
  const std::string fiveDays = Dated({"01/05/2024", "01/10/2024", "01/10/2024", "01/20/2024", "01/08/2024"});
  // Consecutive records share their date conversion only while all ten date
  // columns are the same; the first and the last column matter as well.
  const std::string oneColumnApart = Dated({"01/10/2024", "11/10/2024", "11/10/2025"});
  // The From date is tested only until the period begins.
  const std::string goesBack = Dated({"01/05/2024", "01/15/2024", "01/06/2024", "01/16/2024"});
  const Case cases[] = {
      {fiveDays, Day(1, 6), Day(1, 10), {"B", "C"}, 4},
      {fiveDays, Day(1, 1), Day(12, 31), {"A", "B", "C", "D", "E"}, 5},
      {fiveDays, Day(2, 1), Day(3, 1), {}, 5},  // a From date after every record: all of it read
      {fiveDays, Day(1, 1), Day(1, 2), {}, 1},  // a To date before the first record
      {oneColumnApart, Day(1, 1), Day(1, 31), {"A"}, 2},
      {oneColumnApart, Day(1, 1), Day(12, 31), {"A", "B"}, 3},
      {oneColumnApart, Day(11, 1), Day(12, 31), {"B"}, 3},
      {goesBack, Day(1, 10), Day(1, 31), {"B", "C", "D"}, 4},
  };
  for (const Case& c : cases) {
    RecordSelection selection(c.log, Period(c.from, c.to));
    Names names;
    EXPECT_EQ(Selected(selection, names), c.names) << c.from.Serial() << '-' << c.to.Serial();
    EXPECT_EQ(selection.RecordsRead(), c.read);
  }
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
    SelectionCriteria criteria = AllYear();
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
  const std::string log =
      Log({Call().Direction("In"), Call().Direction("Out"), Call().Direction(""), Call().Direction("In")});
  ExpectSearches(log, SearchBy::kNone,
                 {{"In", false, {"A", "D"}}, {"Out", false, {"B"}}, {"InOut", false, {"A", "B", "C", "D"}},
                  {"", false, {"A", "B", "C", "D"}}, {"in", false, {}}});  // the comparison is exact
  // The field is trimmed wherever the blanks stand; a choice with blanks of
  // its own matches nothing.
  const std::string padded = Log({Call().Direction(" In"), Call().Direction("In"), Call().Direction(" I")});
  ExpectSearches(padded, SearchBy::kNone, {{"In", false, {"A", "B"}}, {"I", false, {"C"}}, {" In", false, {}}});
  // A line that ends inside the direction columns.
  const std::string cut = Call().Name("D").Text().substr(0, 85) + "\r\n";
  ExpectSearches(cut, SearchBy::kNone, {{"In", false, {"D"}}, {"I", false, {}}});
}

TEST(RecordSelection, NameSearch) {
  std::vector<Call> calls;
  // E and C with acute and cedilla, both cases; S caron, OE, Z caron, Y diaeresis.
  for (const char* name : {"Smith John", "SMITH JOHN", "Smithers Ann", "Jones Smith", "\xC9MILE \xC7" "A",
                           "\xE9mile \xE7" "a", "EMILE CA", "\x8A\x8C\x8E\x9F"}) {
    calls.push_back(Call().Name(name));
  }
  ExpectSearches(testing::LogOf(calls), SearchBy::kName,
                 {{"  smith john ", false, {"Smith John", "SMITH JOHN"}},
                  {"SMITH", false, {}},
                  {"SMITH", true, {"Smith John", "SMITH JOHN", "Smithers Ann", "Jones Smith"}},
                  {" smith", true, {"Jones Smith"}},  // a partial search keeps its blanks
                  {"\xE9mile \xE7" "a", false, {"\xC9MILE \xC7" "A", "\xE9mile \xE7" "a"}},
                  {"\x9A\x9C\x9E\xFF", false, {"\x8A\x8C\x8E\x9F"}}});
}

TEST(RecordSelection, NumberSearch) {
  const std::string log = Log({Call().Number("(555) 123-4567"), Call().Number("555-123-4567"),
                               Call().Number("5559990000"), Call().Number("1 800 555 1234"), Call().Number("")});
  ExpectSearches(log, SearchBy::kNumber,
                 {{"5551234567", false, {"A", "B"}},
                  {" 5559990000 , 5551234567,18005551234", false, {"A", "B", "C", "D"}},
                  // The search text loses the characters the field loses: a
                  // number written as the reports print it finds the same calls.
                  {"555-123-4567", false, {"A", "B"}}, {"(555) 123-4567", false, {"A", "B"}},
                  {" ( 555 )123 - 4567 ", false, {"A", "B"}}, {"5551234567,1 800 555 1234", false, {"A", "B", "D"}},
                  {"555123", false, {}}, {"555.123.4567", false, {}},  // other characters stay
                  {"555123", true, {"A", "B", "D"}}, {"(555) 12", true, {"A", "B", "D"}},
                  {"555", true, {"A", "B", "C", "D"}},
                  // Punctuation alone is no number: it must not match every call.
                  {"-", true, {}}, {"()", true, {}}, {" - ", true, {}}});
  // A line that ends inside the number column has a shorter number; one that
  // ends before it has none, and its empty field is cleaned without touching
  // memory (the sanitizer build checks the copy of nothing).
  ExpectSearches("01/15/2024 9:05AM  (555) 12\r\n", SearchBy::kNumber, {{"55512", false, {""}}});
  const std::string tooShort = "01/15/2024 9:05AM\r\n01/15/2024 9:05AM  5\r\n";
  ExpectSearches(tooShort, SearchBy::kNumber, {{"55512", false, {}}, {"5", true, {""}}});

  EXPECT_EQ(CleanNumber(" (555) 123-4567 "), "5551234567");
  EXPECT_EQ(NumberSearchList("1, 2 ,,(3) 4-5"), (std::vector<std::string>{"1", "2", "", "345"}));
}

// A date that is no date is an error naming its record
// (DailyCallAnalysis.ABadDateStopsTheWalkInItsOwnBox); short and binary
// lines fail the same way instead of reading past their end.
TEST(RecordSelection, ShortOrBinaryLinesRaiseTypeMismatch) {
  using namespace std::string_literals;
  for (const std::string& line : {"x"s, "\0\0\0"s, "\xff\xfe/\x80"s}) {
    EXPECT_EQ(test::ErrorNumberOf([&] { Selected(line + "\r\n", AllYear()); }), err::kTypeMismatch);
  }
}

TEST(RecordSelection, EveryWalkStartsAtTheTopAndReportsItsProgress) {
  const std::string log = Log({Call(), Call(), Call(), Call(), Call()});
  RecordSelection selection(log, AllYear());
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
}

}  // namespace
}  // namespace cw
