#include "support/date_format.h"

#include <gtest/gtest.h>

#include "core/support/error_number.h"

namespace cw {
namespace {

using test::ErrorNumberOf;

constexpr TimeOfDay At(int hour, int minute, int second = 0) { return hour * 3600 + minute * 60 + second; }

TEST(DateFormatTest, EveryDatePatternAndName) {
  const CivilDate friday = CivilDate::FromYmd(2024, 1, 5);
  const CivilDate christmas = CivilDate::FromYmd(2023, 12, 25);
  for (const char* pattern : {"mm/dd/yyyy", "MM/DD/YYYY"}) EXPECT_EQ(FormatDate(friday, pattern), "01/05/2024");
  EXPECT_EQ(FormatDate(christmas, "mm/dd/yyyy"), "12/25/2023");
  EXPECT_EQ(FormatDate(friday, "mmm dd, yyyy"), "Jan 05, 2024");
  EXPECT_EQ(FormatDate(christmas, "mmmm yyyy"), "December 2023");
  EXPECT_EQ(FormatDate(christmas, "dddd"), "Monday");
  EXPECT_EQ(FormatDate(friday, "ddd"), "Fri");
  EXPECT_EQ(FormatDate(CivilDate::FromYmd(2024, 9, 8), "dddd"), "Sunday");
  EXPECT_EQ(ErrorNumberOf([&] { FormatDate(friday, "yyyy-mm-dd"); }), 5);

  EXPECT_EQ(WeekdayName(1, false), "Sunday");
  EXPECT_EQ(WeekdayName(7, true), "Sat");
  EXPECT_EQ(MonthName(9, false), "September");
  EXPECT_EQ(ErrorNumberOf([] { WeekdayName(0, false); }), 5);
  EXPECT_EQ(ErrorNumberOf([] { WeekdayName(8, true); }), 5);
  EXPECT_EQ(ErrorNumberOf([] { MonthName(13, false); }), 5);
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
  for (auto [time, pattern] : {std::pair{-1, "h"}, {86400, "h"}, {0, "hh:mm"}}) {
    EXPECT_EQ(ErrorNumberOf([&] { FormatTime(time, pattern); }), 5) << time << ' ' << pattern;
  }
}

TEST(DateFormatTest, NumberPatternsRoundHalvesToEven) {
  for (auto [value, text] : {std::pair{7.0, "7"}, {0.0, "0"}, {2.5, "2"}, {3.5, "4"}, {-2.5, "-2"}, {-0.4, "0"},
                             {66.6667, "67"}, {1234567.0, "1234567"}}) {
    EXPECT_EQ(FormatNumber(value, "#0"), text) << value;
  }
  for (auto [value, text] : {std::pair{5.0, "05"}, {0.0, "00"}, {9.5, "10"}, {123.0, "123"}, {-5.0, "-05"}}) {
    EXPECT_EQ(FormatNumber(value, "00"), text) << value;
  }
  EXPECT_EQ(ErrorNumberOf([] { FormatNumber(1, "0.00"); }), 5);
}

TEST(DateFormatTest, CaptionDatesParseByColumnWithDateSerialRules) {
  for (auto [text, date] : {std::pair{"01/05/2024", "01/05/2024"}, {" 1/ 5/2024", "01/05/2024"},
                            {"13/01/2024", "01/01/2025"}, {"02/30/2024", "03/01/2024"}, {"12/31/1999", "12/31/1999"},
                            {"01/05/0099", "01/05/1999"}}) {
    EXPECT_EQ(FormatDate(ParseCaptionDate(text), "mm/dd/yyyy"), date) << text;
  }
  for (auto [text, error] : {std::pair{"ab/05/2024", 13}, {"01/xx/2024", 13}, {"01/05/24", 13}, {"", 13},
                             {"01/05/-001", 5}}) {
    EXPECT_EQ(ErrorNumberOf([&] { ParseCaptionDate(text); }), error) << text;
  }
}

}  // namespace
}  // namespace cw
