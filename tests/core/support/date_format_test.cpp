#include "support/date_format.h"

#include <gtest/gtest.h>

#include "core/support/error_number.h"

namespace cw {
namespace {

using test::ErrorNumberOf;

constexpr TimeOfDay At(int hour, int minute, int second = 0) { return hour * 3600 + minute * 60 + second; }

TEST(DateFormatTest, EveryDatePattern) {
  const CivilDate friday = CivilDate::FromYmd(2024, 1, 5);
  EXPECT_EQ(FormatDate(friday, "mm/dd/yyyy"), "01/05/2024");
  EXPECT_EQ(FormatDate(friday, "mmm dd, yyyy"), "Jan 05, 2024");
  EXPECT_EQ(FormatDate(friday, "mmmm yyyy"), "January 2024");
  EXPECT_EQ(FormatDate(friday, "dddd"), "Friday");
  EXPECT_EQ(FormatDate(friday, "ddd"), "Fri");

  const CivilDate christmas = CivilDate::FromYmd(2023, 12, 25);
  EXPECT_EQ(FormatDate(christmas, "mm/dd/yyyy"), "12/25/2023");
  EXPECT_EQ(FormatDate(christmas, "mmm dd, yyyy"), "Dec 25, 2023");
  EXPECT_EQ(FormatDate(christmas, "mmmm yyyy"), "December 2023");
  EXPECT_EQ(FormatDate(christmas, "dddd"), "Monday");
  EXPECT_EQ(FormatDate(CivilDate::FromYmd(2024, 9, 7), "ddd"), "Sat");
  EXPECT_EQ(FormatDate(CivilDate::FromYmd(2024, 9, 8), "dddd"), "Sunday");

  EXPECT_EQ(FormatDate(friday, "MM/DD/YYYY"), "01/05/2024");
  EXPECT_EQ(ErrorNumberOf([&] { FormatDate(friday, "yyyy-mm-dd"); }), 5);
  EXPECT_EQ(ErrorNumberOf([&] { FormatDate(friday, ""); }), 5);
}

TEST(DateFormatTest, EveryTimePatternAroundMidnightAndNoon) {
  struct Case {
    TimeOfDay time;
    const char* ampm;     // "h:mmampm"
    const char* hour;     // "h"
    const char* clock;    // "h:Nn"
    const char* spaced;   // "h:Nn AM/PM"
  };
  const Case cases[] = {
      {At(0, 0), "12:00AM", "0", "0:00", "12:00 AM"},
      {At(0, 5, 59), "12:05AM", "0", "0:05", "12:05 AM"},
      {At(9, 5), "9:05AM", "9", "9:05", "9:05 AM"},
      {At(11, 59, 59), "11:59AM", "11", "11:59", "11:59 AM"},
      {At(12, 0), "12:00PM", "12", "12:00", "12:00 PM"},
      {At(12, 30), "12:30PM", "12", "12:30", "12:30 PM"},
      {At(13, 0), "1:00PM", "13", "13:00", "1:00 PM"},
      {At(23, 59, 59), "11:59PM", "23", "23:59", "11:59 PM"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(FormatTime(c.time, "h:mmampm"), c.ampm) << c.time;
    EXPECT_EQ(FormatTime(c.time, "h"), c.hour) << c.time;
    EXPECT_EQ(FormatTime(c.time, "h:Nn"), c.clock) << c.time;
    EXPECT_EQ(FormatTime(c.time, "h:Nn AM/PM"), c.spaced) << c.time;
  }
  EXPECT_EQ(ErrorNumberOf([] { FormatTime(-1, "h"); }), 5);
  EXPECT_EQ(ErrorNumberOf([] { FormatTime(86400, "h"); }), 5);
  EXPECT_EQ(ErrorNumberOf([] { FormatTime(0, "hh:mm"); }), 5);
}

TEST(DateFormatTest, NumberPatternsRoundHalvesToEven) {
  EXPECT_EQ(FormatNumber(7, "#0"), "7");
  EXPECT_EQ(FormatNumber(0, "#0"), "0");
  EXPECT_EQ(FormatNumber(2.5, "#0"), "2");
  EXPECT_EQ(FormatNumber(3.5, "#0"), "4");
  EXPECT_EQ(FormatNumber(-2.5, "#0"), "-2");
  EXPECT_EQ(FormatNumber(-0.4, "#0"), "0");
  EXPECT_EQ(FormatNumber(66.6667, "#0"), "67");
  EXPECT_EQ(FormatNumber(1234567, "#0"), "1234567");
  EXPECT_EQ(FormatNumber(5, "00"), "05");
  EXPECT_EQ(FormatNumber(0, "00"), "00");
  EXPECT_EQ(FormatNumber(9.5, "00"), "10");
  EXPECT_EQ(FormatNumber(123, "00"), "123");
  EXPECT_EQ(FormatNumber(-5, "00"), "-05");
  EXPECT_EQ(ErrorNumberOf([] { FormatNumber(1, "0.00"); }), 5);
}

TEST(DateFormatTest, WeekdayAndMonthNames) {
  EXPECT_EQ(WeekdayName(1, false), "Sunday");
  EXPECT_EQ(WeekdayName(7, true), "Sat");
  EXPECT_EQ(WeekdayName(4, true), "Wed");
  EXPECT_EQ(MonthName(1, true), "Jan");
  EXPECT_EQ(MonthName(9, false), "September");
  EXPECT_EQ(MonthName(12, false), "December");
  EXPECT_EQ(ErrorNumberOf([] { WeekdayName(0, false); }), 5);
  EXPECT_EQ(ErrorNumberOf([] { WeekdayName(8, true); }), 5);
  EXPECT_EQ(ErrorNumberOf([] { MonthName(13, false); }), 5);
}

TEST(DateFormatTest, CaptionDatesParseByColumnWithDateSerialRules) {
  EXPECT_EQ(ParseCaptionDate("01/05/2024"), CivilDate::FromYmd(2024, 1, 5));
  EXPECT_EQ(ParseCaptionDate(" 1/ 5/2024"), CivilDate::FromYmd(2024, 1, 5));
  EXPECT_EQ(ParseCaptionDate("13/01/2024"), CivilDate::FromYmd(2025, 1, 1));
  EXPECT_EQ(ParseCaptionDate("02/30/2024"), CivilDate::FromYmd(2024, 3, 1));
  EXPECT_EQ(ParseCaptionDate("12/31/1999"), CivilDate::FromYmd(1999, 12, 31));
  EXPECT_EQ(ErrorNumberOf([] { ParseCaptionDate("ab/05/2024"); }), 13);
  EXPECT_EQ(ErrorNumberOf([] { ParseCaptionDate("01/xx/2024"); }), 13);
  EXPECT_EQ(ErrorNumberOf([] { ParseCaptionDate("01/05/24"); }), 13);
  EXPECT_EQ(ErrorNumberOf([] { ParseCaptionDate(""); }), 13);
  EXPECT_EQ(ParseCaptionDate("01/05/0099"), CivilDate::FromYmd(1999, 1, 5));
  EXPECT_EQ(ErrorNumberOf([] { ParseCaptionDate("01/05/-001"); }), 5);
}

}  // namespace
}  // namespace cw
