#include "support/whole_numbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "core/support/error_number.h"

namespace cw {
namespace {

using test::ErrorNumberOf;

TEST(WholeNumbersTest, RoundsHalvesToEvenOnBothSidesOfZero) {
  struct Case {
    double value;
    double rounded;
  };
  const Case cases[] = {
      {0.5, 0},   {1.5, 2},   {2.5, 2},   {3.5, 4},       {-0.5, 0},      {-1.5, -2},
      {-2.5, -2}, {-3.5, -4}, {2.4999, 2}, {2.5001, 3},   {-2.5001, -3},  {-2.4999, -2},
      {7, 7},     {-7, -7},   {0.0, 0},   {1e15 + 0.5, 1e15}, {1e15 + 1.5, 1e15 + 2},
  };
  for (const Case& c : cases) EXPECT_EQ(RoundHalfEven(c.value), c.rounded) << c.value;
}

TEST(WholeNumbersTest, SixteenAndThirtyTwoBitLimitsAfterRounding) {
  EXPECT_EQ(ToInt16(32767.0), 32767);
  EXPECT_EQ(ToInt16(32766.5), 32766);
  EXPECT_EQ(ToInt16(-32768.5), -32768);  // the tie goes to the even -32768
  EXPECT_EQ(ToInt16(-2.5), -2);
  for (double bad : {32767.5, -32769.0, std::nan("")}) EXPECT_EQ(ErrorNumberOf([&] { ToInt16(bad); }), 6) << bad;

  EXPECT_EQ(ToInt32(2147483646.5), 2147483646);
  EXPECT_EQ(ToInt32(-2147483648.5), -2147483647 - 1);
  for (double bad : {2147483647.5, -2147483649.0, std::numeric_limits<double>::infinity()}) {
    EXPECT_EQ(ErrorNumberOf([&] { ToInt32(bad); }), 6) << bad;
  }
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
  struct Case {
    const char* text;
    int value;
  };
  const Case cases[] = {
      {"5", 5},     {" 5", 5},    {"05", 5},   {" 12 ", 12}, {"+7", 7},   {"-7", -7},
      {"2.5", 2},   {"3.5", 4},   {"-2.5", -2}, {"-3.5", -4}, {"2.50", 2}, {"2.51", 3},
      {"2.49", 2},  {"0.5", 0},   {".5", 0},    {"1.5", 2},   {"5.", 5},   {"-0", 0},
      {"32767", 32767}, {"-32768", -32768}, {"32766.5", 32766},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(TextToInt16(c.text), c.value) << '"' << c.text << '"';
    EXPECT_EQ(TextToInt32(c.text), c.value) << '"' << c.text << '"';
  }
  EXPECT_EQ(TextToInt32("2147483647"), 2147483647);
  EXPECT_EQ(TextToInt32("-2147483648"), -2147483647 - 1);
  EXPECT_DOUBLE_EQ(TextToDouble("  -1.25 "), -1.25);
  EXPECT_DOUBLE_EQ(TextToDouble("3"), 3.0);
}

TEST(WholeNumbersTest, OutOfRangeTextsAreOverflow) {
  for (const char* text : {"32768", "-32769", "32767.5"}) {
    EXPECT_EQ(ErrorNumberOf([&] { TextToInt16(text); }), 6) << text;
  }
  for (const char* text : {"2147483648", "-2147483649", "99999999999999999999999"}) {
    EXPECT_EQ(ErrorNumberOf([&] { TextToInt32(text); }), 6) << text;
  }
  const std::string huge(400, '9');
  EXPECT_EQ(ErrorNumberOf([&] { TextToDouble(huge); }), 6);
  EXPECT_FALSE(IsNumericText(huge));
}

TEST(WholeNumbersTest, TextsThatAreNotNumbersAreTypeMismatch) {
  for (const char* text : {"", "   ", "ab", "1a", "a1", "1 2", "-", "+", ".", "-.", "1.2.3",
                           "1e3", "+-1", "--1", "\t5", "5\t", "1,000", "$5", "0x10"}) {
    EXPECT_EQ(ErrorNumberOf([&] { TextToInt16(text); }), 13) << '"' << text << '"';
    EXPECT_EQ(ErrorNumberOf([&] { TextToInt32(text); }), 13) << '"' << text << '"';
    EXPECT_EQ(ErrorNumberOf([&] { TextToDouble(text); }), 13) << '"' << text << '"';
    EXPECT_FALSE(IsNumericText(text)) << '"' << text << '"';
  }
  for (const char* text : {"0", " -12.5 ", ".5", "5.", "+3"}) EXPECT_TRUE(IsNumericText(text)) << text;
}

}  // namespace
}  // namespace cw
