#include "support/civil_date.h"

#include <gtest/gtest.h>

#include "core/support/error_number.h"

namespace cw {
namespace {

using test::ErrorNumberOf;

struct Ymd {
  int year;
  int month;
  int day;
};

void ExpectYmd(CivilDate date, Ymd expected) {
  EXPECT_EQ(date.Year(), expected.year);
  EXPECT_EQ(date.Month(), expected.month);
  EXPECT_EQ(date.Day(), expected.day);
}

TEST(CivilDateTest, SerialsMatchTheClassicDateNumbers) {
  EXPECT_EQ(CivilDate::FromYmd(1899, 12, 30).Serial(), 0);
  EXPECT_EQ(CivilDate::FromYmd(1900, 1, 1).Serial(), 2);
  EXPECT_EQ(CivilDate::FromYmd(2024, 1, 5).Serial(), 45296);
  EXPECT_EQ(CivilDate::FromYmd(1899, 12, 24).Serial(), -6);
  ExpectYmd(CivilDate::FromSerial(45296), {2024, 1, 5});
  ExpectYmd(CivilDate::FromSerial(-1), {1899, 12, 29});
  EXPECT_EQ(CivilDate::FromYmd(2024, 1, 5).AddDays(27), CivilDate::FromYmd(2024, 2, 1));
  EXPECT_LT(CivilDate::FromYmd(2023, 12, 31), CivilDate::FromYmd(2024, 1, 1));
}

TEST(CivilDateTest, OutOfRangeMonthsDaysAndShortYearsRollOverLikeDateSerial) {
  struct Case {
    Ymd given, expected;
  };
  const Case cases[] = {
      {{2024, 13, 1}, {2025, 1, 1}},     {{2024, 0, 1}, {2023, 12, 1}},    {{2024, -11, 1}, {2023, 1, 1}},
      {{2024, 1, 0}, {2023, 12, 31}},    {{2024, 3, 0}, {2024, 2, 29}},    {{2024, 3, -1}, {2024, 2, 28}},
      {{2023, 2, 30}, {2023, 3, 2}},     {{2024, 1, 366}, {2024, 12, 31}}, {{1900, 2, 29}, {1900, 3, 1}},
      {{2000, 2, 29}, {2000, 2, 29}},    {{2100, 2, 29}, {2100, 3, 1}},
      // Two-digit years: 0-29 are this century, 30-99 the last.
      {{29, 12, 31}, {2029, 12, 31}},    {{30, 1, 1}, {1930, 1, 1}},       {{0, 0, 0}, {1999, 11, 30}},
      {{100, 1, 1}, {100, 1, 1}},        {{9999, 12, 31}, {9999, 12, 31}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::to_string(c.given.year) + "-" + std::to_string(c.given.month) + "-" + std::to_string(c.given.day));
    ExpectYmd(CivilDate::FromYmd(c.given.year, c.given.month, c.given.day), c.expected);
  }
}

TEST(CivilDateTest, SerialAndCalendarAgreeDayByDay) {
  // Walks every day from 1890 to 2110 and checks that the calendar fields
  // step exactly as the serial does.
  const int monthDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  std::int32_t serial = CivilDate::FromYmd(1890, 1, 1).Serial();
  for (int year = 1890; year <= 2110; ++year) {
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    for (int month = 1; month <= 12; ++month) {
      const int days = monthDays[month - 1] + (month == 2 && leap ? 1 : 0);
      for (int day = 1; day <= days; ++day, ++serial) {
        const CivilDate date = CivilDate::FromSerial(serial);
        ASSERT_EQ(date.Year(), year) << serial;
        ASSERT_EQ(date.Month(), month) << serial;
        ASSERT_EQ(date.Day(), day) << serial;
        ASSERT_EQ(CivilDate::FromYmd(year, month, day).Serial(), serial);
      }
    }
  }
}

TEST(CivilDateTest, WeekdayCountsFromSunday) {
  // A Friday, a Thursday, a Sunday; 30 Dec 1899 (serial 0) was a Saturday.
  for (auto [serial, weekday] : {std::pair{CivilDate::FromYmd(2024, 1, 5).Serial(), 6},
                                 {CivilDate::FromYmd(2024, 2, 29).Serial(), 5},
                                 {CivilDate::FromYmd(1969, 7, 20).Serial(), 1}, {0, 7}, {-6, 1}, {-7, 7}}) {
    EXPECT_EQ(CivilDate::FromSerial(serial).Weekday(), weekday) << serial;
  }
}

TEST(CivilDateTest, YearsOutsideOneHundredToNineThousandNineHundredNinetyNineAreInvalid) {
  for (Ymd bad : {Ymd{100, 1, 0}, {9999, 12, 32}, {10000, 1, 1}, {-1, 1, 1}, {2024, 2147483647, 2147483647}}) {
    EXPECT_EQ(ErrorNumberOf([&] { CivilDate::FromYmd(bad.year, bad.month, bad.day); }), 5) << bad.year;
  }
}

}  // namespace
}  // namespace cw
