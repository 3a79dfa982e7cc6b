#include "support/fast_cat.h"

#include <gtest/gtest.h>

#include <string>

#include "core/support/error_number.h"

namespace cw {
namespace {

using test::ErrorNumberOf;

cFastCat WithPageSize(std::int32_t bytes) {
  cFastCat builder;
  builder.SetPageSize(bytes);
  return builder;
}

// The value, the current page and the position in it.
std::string State(const cFastCat& builder) {
  return builder.Value() + "|" + std::to_string(builder.CurrentPage()) + "|" + std::to_string(builder.PagePos());
}

TEST(FastCatTest, AppendsWithinAPageJoinExactly) {
  cFastCat builder = WithPageSize(100);
  builder.Append("abc");
  // Length counts the first page in bytes, two per character.
  EXPECT_EQ(builder.Length(), 6);
  EXPECT_EQ(builder.LengthB(), 12);
  builder.Append("defgh");
  builder.Append("");
  EXPECT_EQ(State(builder), "abcdefgh|0|16");
  EXPECT_EQ(builder.Capacity(), 100);

  cFastCat exact = WithPageSize(8);
  exact.Append("abcd");
  EXPECT_EQ(State(exact), "abcd|0|8");
}

TEST(FastCatTest, SpillRepeatsPartOfTheTextAndLosesAsMuch) {
  cFastCat builder = WithPageSize(8);
  builder.Append("abc");
  builder.Append("defgh");
  EXPECT_EQ(State(builder), "abcddefg|1|8");
  EXPECT_EQ(builder.Length(), 12);  // 8 / 2 characters of page 0, plus 8 bytes
  EXPECT_EQ(builder.LengthB(), 24);
  EXPECT_EQ(builder.Capacity(), 16);

  // The tail starts r / 2 = 2 characters early when it is not clipped at the
  // start of the text: K and L are lost, I and J repeated.
  cFastCat long_tail = WithPageSize(20);
  long_tail.Append("ABCDEFGHIJKL");
  EXPECT_EQ(State(long_tail), "ABCDEFGHIJIJ|1|4");

  // A page filled to the last byte spills nothing twice.
  cFastCat full = WithPageSize(8);
  full.Append("abcd");
  full.Append("ef");
  EXPECT_EQ(State(full), "abcdef|1|4");
}

TEST(FastCatTest, ASpillCrossesOneBoundaryAndCutsTheRest) {
  cFastCat builder = WithPageSize(4);
  builder.Append("abcdefgh");
  // Page 1 takes what fits of the tail; the position still moves by the
  // whole remainder, so the value ends in blanks.
  EXPECT_EQ(State(builder), "abab    |1|12");
  EXPECT_EQ(builder.Length(), 14);
}

TEST(FastCatTest, ResetKeepsThePagesAndClearDropsThem) {
  cFastCat builder = WithPageSize(8);
  builder.Append("abcdef");
  builder.Reset();
  builder.Append("xy");
  EXPECT_EQ(builder.Value(), "xy");
  EXPECT_EQ(builder.Capacity(), 16);
  builder.Clear();
  EXPECT_EQ(builder.Value(), "");
  EXPECT_EQ(builder.PageCount(), 1);
  builder.SetPageSize(16);
  builder.Append("hi");
  EXPECT_EQ(builder.Value(), "hi");
  EXPECT_EQ(builder.Capacity(), 16);
}

TEST(FastCatTest, OwnErrorsCarryNumberSourceAndDescription) {
  cFastCat builder = WithPageSize(8);
  auto expectError = [](auto&& call, int number, const char* description) {
    try {
      call();
      ADD_FAILURE() << description << ": accepted";
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.Number(), number);
      EXPECT_EQ(error.Source(), "cFastCat");
      EXPECT_EQ(error.Description(), description);
    }
  };
  for (std::int32_t bad : {0, -2}) {
    expectError([&] { builder.SetPageSize(bad); }, 7777, "Buffer page size must be larger than zero characters");
  }
  expectError([&] { builder.SetPageCount(0); }, 7776, "Buffer must contain at least one page");
  EXPECT_EQ(builder.PageSize(), 8);
  EXPECT_EQ(builder.PageCount(), 131);
}

TEST(FastCatTest, RunningOutOfPageSlotsIsSubscriptOutOfRange) {
  cFastCat builder = WithPageSize(4);
  builder.SetPageCount(2);
  builder.Append("ab");
  builder.Append("cd");
  EXPECT_EQ(builder.Value(), "abcd");
  EXPECT_EQ(ErrorNumberOf([&] { builder.Append("e"); }), 9);
  EXPECT_EQ(State(builder), "abcd|1|4");

  builder.SetPageCount(3);
  builder.Append("ef");
  EXPECT_EQ(builder.Value(), "abcdef");
}

TEST(FastCatTest, ManyAppendsOverManyPagesKeepTheirOrder) {
  // Appends that always fit the free space exactly never spill, so the text
  // comes back unchanged across page boundaries.
  cFastCat builder = WithPageSize(64);
  builder.SetPageCount(1000);
  std::string expected;
  for (int i = 0; i < 4000; ++i) {
    const std::string piece(8, static_cast<char>('a' + i % 26));
    builder.Append(piece);
    expected += piece;
  }
  EXPECT_EQ(builder.Value(), expected);
  EXPECT_EQ(builder.CurrentPage(), 999);
  EXPECT_EQ(builder.Capacity(), 64000);
}

}  // namespace
}  // namespace cw
