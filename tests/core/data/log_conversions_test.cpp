#include "data/log_conversions.h"

#include <gtest/gtest.h>

#include "support/runtime_error.h"

namespace cw {
namespace {

int ErrorNumberOf(auto&& call) {
  try {
    call();
  } catch (const RuntimeError& error) {
    return error.Number();
  }
  return 0;
}

TEST(ParseLogDate, ReadsMonthDayAndYearFromTheirColumns) {
  EXPECT_EQ(ParseLogDate("01/15/2024"), CivilDate::FromYmd(2024, 1, 15));
  EXPECT_EQ(ParseLogDate("12/31/1999"), CivilDate::FromYmd(1999, 12, 31));
  // Only the positions count, not the separators.
  EXPECT_EQ(ParseLogDate("03-04-2023"), CivilDate::FromYmd(2023, 3, 4));
  // The year is the last four characters of whatever text comes in.
  EXPECT_EQ(ParseLogDate("03/04/ 2023"), CivilDate::FromYmd(2023, 3, 4));
  EXPECT_EQ(ParseLogDate(" 3/ 4/2023"), CivilDate::FromYmd(2023, 3, 4));
}

TEST(ParseLogDate, RollsOverLikeDateSerial) {
  EXPECT_EQ(ParseLogDate("02/30/2024"), CivilDate::FromYmd(2024, 3, 1));
  EXPECT_EQ(ParseLogDate("13/01/2024"), CivilDate::FromYmd(2025, 1, 1));
  EXPECT_EQ(ParseLogDate("00/00/2024"), CivilDate::FromYmd(2023, 11, 30));
}

TEST(ParseLogDate, PartThatIsNotANumberIsTypeMismatch) {
  EXPECT_EQ(ErrorNumberOf([] { ParseLogDate("ab/15/2024"); }), err::kTypeMismatch);
  EXPECT_EQ(ErrorNumberOf([] { ParseLogDate("01/xx/2024"); }), err::kTypeMismatch);
  EXPECT_EQ(ErrorNumberOf([] { ParseLogDate("01/15/20z4"); }), err::kTypeMismatch);
  EXPECT_EQ(ErrorNumberOf([] { ParseLogDate(""); }), err::kTypeMismatch);
  EXPECT_EQ(ErrorNumberOf([] { ParseLogDate("01/1"); }), err::kTypeMismatch);
  EXPECT_EQ(ErrorNumberOf([] { ParseLogDate(std::string_view("01/15/\0\0\0\0", 10)); }),
            err::kTypeMismatch);
  EXPECT_EQ(ErrorNumberOf([] { ParseLogDate("\xff\xff/15/2024"); }), err::kTypeMismatch);
}

TEST(DurationToSeconds, CountsHoursMinutesAndSeconds) {
  EXPECT_EQ(DurationToSeconds("1:02:03"), 3723);
  EXPECT_EQ(DurationToSeconds("02:03"), 123);
  EXPECT_EQ(DurationToSeconds("0:00:00"), 0);
  EXPECT_EQ(DurationToSeconds("99:59"), 99 * 60 + 59);
  // Any other number of parts gives 0.
  EXPECT_EQ(DurationToSeconds("5"), 0);
  EXPECT_EQ(DurationToSeconds(""), 0);
  EXPECT_EQ(DurationToSeconds("1:2:3:4"), 0);
  // A part that is not a number counts as 0; the others still count.
  EXPECT_EQ(DurationToSeconds("1:xx:03"), 3603);
  EXPECT_EQ(DurationToSeconds("ab:10"), 10);
  EXPECT_EQ(DurationToSeconds(":"), 0);
  EXPECT_EQ(DurationToSeconds(" 1: 02"), 62);
}

TEST(DurationToSeconds, OverflowOf32BitsIsAnError) {
  EXPECT_EQ(DurationToSeconds("596523:14:07"), 2147483647);
  EXPECT_EQ(ErrorNumberOf([] { DurationToSeconds("596523:14:08"); }), err::kOverflow);
  EXPECT_EQ(ErrorNumberOf([] { DurationToSeconds("999999999:00:00"); }), err::kOverflow);
  EXPECT_EQ(ErrorNumberOf([] { DurationToSeconds("99999999999:00"); }), err::kOverflow);
}

}  // namespace
}  // namespace cw
