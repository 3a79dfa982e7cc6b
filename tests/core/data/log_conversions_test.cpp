#include "data/log_conversions.h"

#include <gtest/gtest.h>

#include "core/support/error_number.h"
#include "testing/case_table.h"

namespace cw {
namespace {

using test::ErrorNumberOf;

TEST(ParseLogDate, PartThatIsNotANumberIsTypeMismatch) {
  using namespace std::string_view_literals;
  for (std::string_view date : {"ab/15/2024"sv, "01/xx/2024"sv, "01/15/20z4"sv, ""sv, "01/1"sv, "01/15/\0\0\0\0"sv,
                                "\xff\xff/15/2024"sv}) {
    EXPECT_EQ(ErrorNumberOf([&] { ParseLogDate(date); }), err::kTypeMismatch) << date;
  }
}

// Month, day and year are read from their columns whatever the separators;
// parts out of range roll over as the calendar does, but such a date is told
// apart from the calendar date it rolls to.
TEST(ParseLogDate, ReadsTheColumnsAndTellsRolledDatesApart) {
  for (const std::vector<std::string>& c : testing::TableCases("data/log-dates.txt")) {
    SCOPED_TRACE(c[0]);
    const CivilDate date = ParseLogDate(c[0]);
    EXPECT_EQ(date, CivilDate::FromYmd(std::stoi(c[2]), std::stoi(c[3]), std::stoi(c[4])));
    EXPECT_EQ(IsCalendarDate(SplitLogDate(c[0]), date), c[1] == "calendar");
  }
}

// Hours, minutes and seconds, or minutes and seconds; any other number of
// parts gives 0, a part that is not a number counts as 0, and more than 32
// bits of seconds is an error.
TEST(DurationToSeconds, CountsHoursMinutesAndSecondsInto32Bits) {
  for (const std::vector<std::string>& c : testing::TableCases("data/durations.txt")) {
    if (c[1] == "overflow") {
      EXPECT_EQ(ErrorNumberOf([&] { DurationToSeconds(c[0]); }), err::kOverflow) << c[0];
    } else {
      EXPECT_EQ(DurationToSeconds(c[0]), std::stol(c[1])) << c[0];
    }
  }
}

}  // namespace
}  // namespace cw
