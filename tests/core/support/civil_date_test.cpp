#include "support/civil_date.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "core/support/error_number.h"
#include "testing/expected_file.h"

namespace cw {
namespace {

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
  EXPECT_EQ(CivilDate::FromSerial(45296), CivilDate::FromYmd(2024, 1, 5));
  EXPECT_EQ(CivilDate::FromSerial(-1), CivilDate::FromYmd(1899, 12, 29));
  EXPECT_EQ(CivilDate::FromYmd(2024, 1, 5).AddDays(27), CivilDate::FromYmd(2024, 2, 1));
}

}  // namespace
}  // namespace cw
