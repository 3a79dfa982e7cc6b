#include "data/line_filter.h"

#include <gtest/gtest.h>

#include "core/support/error_number.h"

namespace cw {
namespace {

TEST(ExpandLineFilter, WritesOutEveryRange) {
  struct Case {
    std::string_view answer;
    std::string_view expanded;
  };
  const Case cases[] = {
      {"1,3-5,7", "1,3,4,5,7"},
      {"2-4", "2,3,4"},
      {"5-3", ""},
      {"1,5-3,7", "1,7"},
      {"1,2,", "1,2"},
      {"1,11-16,18-20,22", "1,11,12,13,14,15,16,18,19,20,22"},
      {"3-3", "3"},
      {"1-2,4-5", "1,2,4,5"},
      {" 2 - 4 ", "2,3,4"},
      {"7", "7"},
      {"", ""},
      // Without a range the text is left as typed, but for a trailing comma.
      {"1,,2,", "1,,2"},
  };
  for (const Case& c : cases) EXPECT_EQ(ExpandLineFilter(c.answer), c.expanded) << c.answer;
}

TEST(ExpandLineFilter, RangeEndsAre16BitNumbers) {
  for (const char* answer : {"a-3", "1-", "-5", "1-2-3"}) {
    EXPECT_EQ(test::ErrorNumberOf([&] { ExpandLineFilter(answer); }), err::kTypeMismatch) << answer;
  }
  EXPECT_EQ(test::ErrorNumberOf([] { ExpandLineFilter("1-40000"); }), err::kOverflow);
  // A negative high end is a number; the range is empty.
  EXPECT_EQ(test::ErrorNumberOf([] { ExpandLineFilter("3--5"); }), 0);
}

}  // namespace
}  // namespace cw
