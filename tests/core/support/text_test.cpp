#include "support/text.h"

#include <gtest/gtest.h>

namespace cw {
namespace {

TEST(TextTest, CaseFoldingTouchesOnlyAsciiLetters) {
  EXPECT_EQ(LowerCase("Callwarden.INI 42"), "callwarden.ini 42");
  EXPECT_EQ(UpperCase("busylines.log @[`{"), "BUSYLINES.LOG @[`{");
  // Windows-1252 letters such as 0xC9 (E acute) and 0xE9 (e acute) stay as they are.
  EXPECT_EQ(LowerCase("\xC9T\xE9"), "\xC9t\xE9");
  EXPECT_EQ(UpperCase("\xC9t\xE9"), "\xC9T\xE9");
}

TEST(TextTest, TrimRemovesBlanksOnlyAndMidClips) {
  EXPECT_EQ(Trim("  Smith John  "), "Smith John");
  EXPECT_EQ(Trim("\tTab\t"), "\tTab\t");
  EXPECT_EQ(Trim("    "), "");
  EXPECT_EQ(Mid("01/05/2024", 4, 2), "05");
  EXPECT_EQ(Mid("01/05/2024", 9, 5), "24");
  EXPECT_EQ(Mid("abc", 4, 1), "");
  EXPECT_EQ(Mid("abc", 0, 1), "");
}

}  // namespace
}  // namespace cw
