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
  testing::ExpectTableMatches("support/date-patterns.txt", [](const std::string& row) {
    int year = 0, month = 0, day = 0;
    std::sscanf(row.c_str(), "%d-%d-%d", &year, &month, &day);
    return test::OutcomeText([&] { return FormatDate(CivilDate::FromYmd(year, month, day), row.substr(11)); });
  });
  // The names are in the table's rows; a number beyond them is error 5.
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
