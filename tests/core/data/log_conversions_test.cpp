#include "data/log_conversions.h"

#include <gtest/gtest.h>

#include "core/support/error_number.h"

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
  struct Case {
    const char* text;
    bool calendar;
    CivilDate readAs;
  };
  const Case cases[] = {
      {"10/31/2026", true, CivilDate::FromYmd(2026, 10, 31)},
      {"10/32/2026", false, CivilDate::FromYmd(2026, 11, 1)},
      {"02/29/2024", true, CivilDate::FromYmd(2024, 2, 29)},  // a leap year
      {"02/29/2026", false, CivilDate::FromYmd(2026, 3, 1)},
      {"02/30/2026", false, CivilDate::FromYmd(2026, 3, 2)},
      {"13/01/2026", false, CivilDate::FromYmd(2027, 1, 1)},
      {"00/10/2026", false, CivilDate::FromYmd(2025, 12, 10)},
      {"04/00/2026", false, CivilDate::FromYmd(2026, 3, 31)},
      {"12/31/1999", true, CivilDate::FromYmd(1999, 12, 31)},
      {" 3/ 4/2023", true, CivilDate::FromYmd(2023, 3, 4)},  // read by the general conversion
      {"03/04/0026", true, CivilDate::FromYmd(2026, 3, 4)},  // a two-digit year moves the century only
      {"03-04-2023", true, CivilDate::FromYmd(2023, 3, 4)},
      {"03/04/ 2023", true, CivilDate::FromYmd(2023, 3, 4)},  // the year is the last four characters
      {"00/00/2024", false, CivilDate::FromYmd(2023, 11, 30)},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    const LogDateParts parts = SplitLogDate(c.text);
    const CivilDate date = ParseLogDate(c.text);
    EXPECT_EQ(date, c.readAs);
    EXPECT_EQ(IsCalendarDate(parts, date), c.calendar);
  }
}

TEST(DurationToSeconds, CountsHoursMinutesAndSeconds) {
  EXPECT_EQ(DurationToSeconds("1:02:03"), 3723);
  EXPECT_EQ(DurationToSeconds("02:03"), 123);
  EXPECT_EQ(DurationToSeconds("0:00:00"), 0);
  EXPECT_EQ(DurationToSeconds("99:59"), 99 * 60 + 59);
  // Any other number of parts gives 0.
  for (const char* other : {"5", "", "1:2:3:4"}) EXPECT_EQ(DurationToSeconds(other), 0) << other;
  // A part that is not a number counts as 0; the others still count.
  EXPECT_EQ(DurationToSeconds("1:xx:03"), 3603);
  EXPECT_EQ(DurationToSeconds("ab:10"), 10);
  EXPECT_EQ(DurationToSeconds(":"), 0);
  EXPECT_EQ(DurationToSeconds(" 1: 02"), 62);
}

TEST(DurationToSeconds, OverflowOf32BitsIsAnError) {
  EXPECT_EQ(DurationToSeconds("596523:14:07"), 2147483647);
  EXPECT_EQ(ErrorNumberOf([] { DurationToSeconds("596523:14:08"); }), err::kOverflow);
  EXPECT_EQ(ErrorNumberOf([] { DurationToSeconds("99999999999:00"); }), err::kOverflow);
  // Ten digits that would wrap to 0 in 32 bits.
  EXPECT_EQ(ErrorNumberOf([] { DurationToSeconds("0:4294967296"); }), err::kOverflow);
}

}  // namespace
}  // namespace cw
