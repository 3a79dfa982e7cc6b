#include "support/date_format.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

#include "core/support/error_number.h"
#include "testing/expected_file.h"

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
  testing::ExpectTableMatches("support/time-patterns.txt", [](const std::string& text) {
    int hour = 0, minute = 0, second = 0;
    std::sscanf(text.c_str(), "%d:%d:%d", &hour, &minute, &second);
    const TimeOfDay time = At(hour, minute, second);
    std::string shown;
    for (const char* pattern : {"h:mmampm", "h", "h:Nn", "h:Nn AM/PM"}) {
      shown += std::string(shown.empty() ? "" : ", ") + pattern + " " + FormatTime(time, pattern);
    }
    return shown;
  });
  for (auto [time, pattern] : {std::pair{-1, "h"}, {86400, "h"}, {0, "hh:mm"}}) {
    EXPECT_EQ(ErrorNumberOf([&] { FormatTime(time, pattern); }), 5) << time << ' ' << pattern;
  }
}

TEST(DateFormatTest, NumberPatternsRoundHalvesToEven) {
  testing::ExpectTableMatches("support/number-patterns.txt", [](const std::string& text) {
    const double value = std::strtod(text.c_str(), nullptr);
    return "#0 " + FormatNumber(value, "#0") + ", 00 " + FormatNumber(value, "00");
  });
  EXPECT_EQ(ErrorNumberOf([] { FormatNumber(1, "0.00"); }), 5);
}

TEST(DateFormatTest, CaptionDatesParseByColumnWithDateSerialRules) {
  testing::ExpectTableMatches("support/caption-dates.txt", [](const std::string& text) {
    return test::OutcomeText([&] { return FormatDate(ParseCaptionDate(text), "mm/dd/yyyy"); });
  });
}

}  // namespace
}  // namespace cw
