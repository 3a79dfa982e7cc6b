#include "support/ansi_text.h"

#include <gtest/gtest.h>

#include <optional>
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

TEST(AnsiTextTest, ExactConversionRefusesWhatWindows1252CannotHold) {
  struct Case {
    std::string utf8;
    std::optional<std::string> bytes;
    std::string unmappable;
  };
  const Case cases[] = {
      {"JOS\u00C9 GARC\u00CDA", "JOS\xC9 GARC\xCD" "A", ""},
      {"\u20AC 5 \u2013 ?", "\x80 5 \x96 ?", ""},  // a question mark of its own is kept
      {"\xC2\x81", "\x81", ""},                     // a C1 control that has a byte
      {"", "", ""},
      {"a\u65E5b\u00E9", std::nullopt, "\u65E5"},  // the first character without a byte is named
      {"\xC2\x80", std::nullopt, "\xC2\x80"},      // the C1 control whose byte is the euro
      {"caf\xE9", std::nullopt, ""},                 // not UTF-8: nothing to name
      {"\xED\xA0\x80", std::nullopt, ""},           // a surrogate
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.utf8);
    std::string unmappable = "left over";
    EXPECT_EQ(Utf8ToWin1252Exactly(c.utf8, &unmappable), c.bytes);
    EXPECT_EQ(unmappable, c.unmappable);
    EXPECT_EQ(IsValidUtf8(c.utf8), c.utf8 != "caf\xE9" && c.utf8 != "\xED\xA0\x80");
  }
}

}  // namespace
}  // namespace cw
