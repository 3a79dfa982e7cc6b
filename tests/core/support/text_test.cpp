#include "support/text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace cw {
namespace {

TEST(TextTest, CaseFoldingFollowsTheLettersOfWindows1252) {
  struct Case {
    unsigned char upper;
    unsigned char lower;
    const char* what;
  };
  // Pairs that fold into each other, and bytes that are no letter with a
  // partner in the code page (upper == lower).
  const Case cases[] = {
      {'A', 'a', "first ASCII letter"},      {'Z', 'z', "last ASCII letter"},
      {0xC0, 0xE0, "A grave"},               {0xC9, 0xE9, "E acute"},
      {0xC7, 0xE7, "C cedilla"},             {0xD6, 0xF6, "O diaeresis"},
      {0xD8, 0xF8, "O stroke, after the multiplication sign"},
      {0xDE, 0xFE, "thorn, the last of the run"},
      {0x8A, 0x9A, "S caron"},               {0x8C, 0x9C, "OE"},
      {0x8E, 0x9E, "Z caron"},               {0x9F, 0xFF, "Y diaeresis"},
      {0xD7, 0xD7, "multiplication sign"},   {0xF7, 0xF7, "division sign"},
      {0xDF, 0xDF, "sharp s has no capital"}, {0xB5, 0xB5, "micro sign has no capital"},
      {'@', '@', "before A"},                {'[', '[', "after Z"},
      {'`', '`', "before a"},                {'{', '{', "after z"},
      {0xBF, 0xBF, "before A grave"},        {0x8B, 0x8B, "between S caron and OE"},
      {0x9B, 0x9B, "between s caron and oe"}, {'7', '7', "a digit"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const char upper = static_cast<char>(c.upper);
    const char lower = static_cast<char>(c.lower);
    EXPECT_EQ(LowerCaseLetter(upper), lower);
    EXPECT_EQ(LowerCaseLetter(lower), lower);
    EXPECT_EQ(UpperCaseLetter(lower), upper);
    EXPECT_EQ(UpperCaseLetter(upper), upper);
  }
  // 26 + 30 + 4 capitals in all, each with a partner of its own.
  int capitals = 0;
  for (int c = 0; c < 256; ++c) {
    const char byte = static_cast<char>(c);
    if (LowerCaseLetter(byte) == byte) continue;
    ++capitals;
    EXPECT_EQ(UpperCaseLetter(LowerCaseLetter(byte)), byte) << c;
  }
  EXPECT_EQ(capitals, 60);

  EXPECT_EQ(LowerCase("Callwarden.INI 42"), "callwarden.ini 42");
  EXPECT_EQ(LowerCase("\xC9MILE \xC7" "A"), "\xE9mile \xE7" "a");
  EXPECT_EQ(UpperCase("Jos\xE9 Garc\xED" "a \xFF"), "JOS\xC9 GARC\xCD" "A \x9F");
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
