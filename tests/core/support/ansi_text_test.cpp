#include "support/ansi_text.h"

#include <gtest/gtest.h>

#include <string>

namespace cw {
namespace {

TEST(AnsiTextTest, EveryByteSurvivesTheTripThroughUnicode) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  EXPECT_EQ(Utf8ToWin1252(Win1252ToUtf8(all)), all);
}

TEST(AnsiTextTest, HighBytesMapToTheirCharacters) {
  EXPECT_EQ(Win1252ToUtf8("\x80"), "\u20AC");  // euro sign
  EXPECT_EQ(Win1252ToUtf8("\x99"), "\u2122");  // trade mark
  EXPECT_EQ(Win1252ToUtf8("\x9F"), "\u0178");  // Y with diaeresis
  EXPECT_EQ(Win1252ToUtf8("\x8A\x9A"), "\u0160\u0161");
  EXPECT_EQ(Win1252ToUtf8("\x93Q\x94"), "\u201CQ\u201D");
  EXPECT_EQ(Win1252ToUtf8("caf\xE9 \xA0\xFF"), "caf\u00E9 \u00A0\u00FF");
  // The five bytes without a character stand for the C1 controls of the same number.
  EXPECT_EQ(Win1252ToUtf8("\x81\x8D\x8F\x90\x9D"), "\xC2\x81\xC2\x8D\xC2\x8F\xC2\x90\xC2\x9D");
  EXPECT_EQ(Utf8ToWin1252("\xC2\x81\xC2\x8D\xC2\x8F\xC2\x90\xC2\x9D"), "\x81\x8D\x8F\x90\x9D");
  EXPECT_EQ(Utf8ToWin1252("\u20AC 5 \u2013 caf\u00E9"), "\x80 5 \x96 caf\xE9");
}

TEST(AnsiTextTest, UnmappableAndMalformedInputBecomesQuestionMarks) {
  EXPECT_EQ(Utf8ToWin1252("a\u65E5b"), "a?b");          // CJK character
  EXPECT_EQ(Utf8ToWin1252("a\U0001F600b"), "a?b");      // four-byte sequence, one character
  EXPECT_EQ(Utf8ToWin1252("\xC2\x80"), "?");            // C1 control whose byte is the euro
  EXPECT_EQ(Utf8ToWin1252("a\xFF" "b"), "a?b");          // not UTF-8 at all
  EXPECT_EQ(Utf8ToWin1252("a\xE2\x82"), "a??");         // cut short
  EXPECT_EQ(Utf8ToWin1252("\xC0\xAF"), "??");           // overlong '/'
  EXPECT_EQ(Utf8ToWin1252("\xED\xA0\x80"), "???");      // surrogate
  EXPECT_EQ(Utf8ToWin1252("\xF4\x90\x80\x80"), "????");  // beyond U+10FFFF
  EXPECT_EQ(Utf8ToWin1252(""), "");
}

}  // namespace
}  // namespace cw
