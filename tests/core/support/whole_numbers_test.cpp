#include "support/whole_numbers.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>

#include "core/support/error_number.h"
#include "testing/expected_file.h"

namespace cw {
namespace {

using test::ErrorNumberOf;
using test::OutcomeText;

std::string Shown(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.16g", value);
  return text;
}

TEST(WholeNumbersTest, DoublesRoundHalvesToEvenWithinSixteenAndThirtyTwoBits) {
  testing::ExpectTableMatches("support/rounding.txt", [](const std::string& input) {
    const double value = std::strtod(input.c_str(), nullptr);
    return "round " + OutcomeText([&] { return Shown(RoundHalfEven(value)); }) + ", Int16 " +
           OutcomeText([&] { return std::to_string(ToInt16(value)); }) + ", Int32 " +
           OutcomeText([&] { return std::to_string(ToInt32(value)); });
  });
}

TEST(WholeNumbersTest, CheckedThirtyTwoBitArithmetic) {
  constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
  constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
  EXPECT_EQ(AddInt32(kMax - 1, 1), kMax);
  EXPECT_EQ(AddInt32(kMin, 0), kMin);
  EXPECT_EQ(ErrorNumberOf([] { AddInt32(kMax, 1); }), 6);
  EXPECT_EQ(ErrorNumberOf([] { AddInt32(kMin, -1); }), 6);
  EXPECT_EQ(MulInt32(46340, 46340), 2147395600);
  EXPECT_EQ(ErrorNumberOf([] { MulInt32(46341, 46341); }), 6);
  EXPECT_EQ(ErrorNumberOf([] { MulInt32(kMin, -1); }), 6);
}

TEST(WholeNumbersTest, NumericTextsConvertWithBlanksSignsAndFractions) {
  testing::ExpectTableMatches("support/numeric-texts.txt", [](const std::string& text) {
    return "Int16 " + OutcomeText([&] { return std::to_string(TextToInt16(text)); }) + ", Int32 " +
           OutcomeText([&] { return std::to_string(TextToInt32(text)); }) + ", Double " +
           OutcomeText([&] { return Shown(TextToDouble(text)); }) + (IsNumericText(text) ? ", numeric" : ", not numeric");
  });
}

}  // namespace
}  // namespace cw
