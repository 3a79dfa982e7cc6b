#include "support/text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "testing/expected_file.h"

namespace cw {
namespace {

TEST(TextTest, CaseFoldingFollowsTheLettersOfWindows1252) {
  testing::ExpectTableMatches("support/letter-case.txt", [](const std::string& hex) {
    const char byte = static_cast<char>(std::stoi(hex, nullptr, 16));
    char shown[32];
    std::snprintf(shown, sizeof shown, "lower %02X, upper %02X", static_cast<unsigned char>(LowerCaseLetter(byte)),
                  static_cast<unsigned char>(UpperCaseLetter(byte)));
    return std::string(shown);
  });
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
