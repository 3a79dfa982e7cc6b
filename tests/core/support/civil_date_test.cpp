#include "support/civil_date.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "core/support/error_number.h"
#include "testing/expected_file.h"

namespace cw {
namespace {

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

TEST(CivilDateTest, DatesRollOverLikeDateSerialWithTheirSerialsAndWeekdays) {
  testing::ExpectTableMatches("support/civil-dates.txt", [](const std::string& text) {
    int year = 0, month = 0, day = 0;
    std::sscanf(text.c_str(), "%d %d %d", &year, &month, &day);
    return test::OutcomeText([&] {
      const CivilDate date = CivilDate::FromYmd(year, month, day);
      return std::to_string(date.Year()) + "-" + std::to_string(date.Month()) + "-" + std::to_string(date.Day()) +
             " serial " + std::to_string(date.Serial()) + " weekday " + std::to_string(date.Weekday());
    });
  });
  ExpectYmd(CivilDate::FromSerial(45296), {2024, 1, 5});
  ExpectYmd(CivilDate::FromSerial(-1), {1899, 12, 29});
  EXPECT_EQ(CivilDate::FromYmd(2024, 1, 5).AddDays(27), CivilDate::FromYmd(2024, 2, 1));
  EXPECT_LT(CivilDate::FromYmd(2023, 12, 31), CivilDate::FromYmd(2024, 1, 1));
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

}  // namespace
}  // namespace cw
