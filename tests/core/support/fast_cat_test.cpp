#include "support/fast_cat.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/support/error_number.h"

namespace cw {
namespace {

using test::ErrorNumberOf;

cFastCat WithPageSize(std::int32_t bytes) {
  cFastCat builder;
  builder.SetPageSize(bytes);
  return builder;
}

// The value, the current page, the position in it and the length.
std::string State(const cFastCat& builder) {
  return builder.Value() + "|" + std::to_string(builder.CurrentPage()) + "|" + std::to_string(builder.PagePos()) +
         "|" + std::to_string(builder.Length());
}

// Appends within a page join exactly. An append that spills over starts its
// tail on the next page r / 2 characters early when the tail is not clipped
// at the start of the text, so part of the text is repeated and as much lost;
// page 1 takes what fits of the tail, the position still moves by the whole
// remainder, and the value ends in blanks. Length counts full pages in
// characters (two bytes each) and the current page in bytes.
TEST(FastCatTest, AppendsJoinWithinAPageAndSpillOverAsTheyAlwaysHave) {
  struct Case {
    std::int32_t pageSize;
    std::vector<std::string> appends;
    std::string state;
    std::int32_t capacity;
  };
  const Case cases[] = {
      {100, {"abc"}, "abc|0|6|6", 100},
      {100, {"abc", "defgh", ""}, "abcdefgh|0|16|16", 100},
      {8, {"abcd"}, "abcd|0|8|8", 8},
      {8, {"abc", "defgh"}, "abcddefg|1|8|12", 16},
      {20, {"ABCDEFGHIJKL"}, "ABCDEFGHIJIJ|1|4|14", 40},  // K and L lost, I and J repeated
      {8, {"abcd", "ef"}, "abcdef|1|4|8", 16},           // a page filled to the last byte spills nothing twice
      {4, {"abcdefgh"}, "abab    |1|12|14", 8},
  };
  for (const Case& c : cases) {
    cFastCat builder = WithPageSize(c.pageSize);
    for (const std::string& text : c.appends) builder.Append(text);
    EXPECT_EQ(State(builder), c.state) << c.pageSize;
    EXPECT_EQ(builder.Capacity(), c.capacity) << c.state;
    EXPECT_EQ(builder.LengthB(), 2 * builder.Length());
  }
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
  EXPECT_EQ(State(builder), "abcd|1|4|6");

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
