#include "support/fast_cat.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "core/support/error_number.h"
#include "testing/expected_file.h"

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

// Before the colon the page size, after it the appends, split at ", ".
TEST(FastCatTest, AppendsJoinWithinAPageAndSpillOverAsTheyAlwaysHave) {
  testing::ExpectTableMatches("support/fast-cat-appends.txt", [](const std::string& row) {
    const std::size_t colon = row.find(": ");
    cFastCat builder = WithPageSize(std::stoi(row.substr(0, colon)));
    std::istringstream appends(row.substr(colon + 2));
    for (std::string text; std::getline(appends, text, ',');) {
      builder.Append(text.starts_with(' ') ? text.substr(1) : text);
    }
    EXPECT_EQ(builder.LengthB(), 2 * builder.Length());
    return State(builder) + " capacity " + std::to_string(builder.Capacity());
  });
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

}  // namespace
}  // namespace cw
