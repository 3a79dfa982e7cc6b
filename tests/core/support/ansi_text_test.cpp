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

TEST(AnsiTextTest, UnmappableAndMalformedInputBecomesQuestionMarks) {
  EXPECT_EQ(Utf8ToWin1252("a\u65E5b"), "a?b");          // CJK character
  EXPECT_EQ(Utf8ToWin1252("a\U0001F600b"), "a?b");      // four-byte sequence, one character
  EXPECT_EQ(Utf8ToWin1252("\xC2\x80"), "?");            // C1 control whose byte is the euro
  EXPECT_EQ(Utf8ToWin1252("a\xFF" "b"), "a?b");          // not UTF-8 at all
  EXPECT_EQ(Utf8ToWin1252("a\xE2\x82"), "a??");         // cut short
  EXPECT_EQ(Utf8ToWin1252("\xC0\xAF"), "??");           // overlong '/'
  EXPECT_EQ(Utf8ToWin1252("\xED\xA0\x80"), "???");      // surrogate
  EXPECT_EQ(Utf8ToWin1252("\xF4\x90\x80\x80"), "????");  // beyond U+10FFFF
}

// Each text that Windows-1252 can hold converts both ways, exactly or not.
TEST(AnsiTextTest, HighBytesMapToTheirCharactersAndExactConversionRefusesTheRest) {
  struct Case {
    std::string utf8;
    std::optional<std::string> bytes;
    std::string unmappable;
  };
  const Case cases[] = {
      {"JOS\u00C9 GARC\u00CDA", "JOS\xC9 GARC\xCD" "A", ""},
      {"\u20AC 5 \u2013 ?", "\x80 5 \x96 ?", ""},  // a question mark of its own is kept
      // Euro, trade mark, Y with diaeresis, S caron, quotes; NBSP, y diaeresis.
      {"\u20AC\u2122\u0178\u0160\u0161\u201CQ\u201D caf\u00E9 \u00A0\u00FF",
       "\x80\x99\x9F\x8A\x9A\x93Q\x94 caf\xE9 \xA0\xFF", ""},
      // The five bytes without a character stand for the C1 controls of the same number.
      {"\xC2\x81\xC2\x8D\xC2\x8F\xC2\x90\xC2\x9D", "\x81\x8D\x8F\x90\x9D", ""},
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
    if (c.bytes) {
      EXPECT_EQ(Win1252ToUtf8(*c.bytes), c.utf8);
      EXPECT_EQ(Utf8ToWin1252(c.utf8), *c.bytes);
    }
    EXPECT_EQ(IsValidUtf8(c.utf8), c.utf8 != "caf\xE9" && c.utf8 != "\xED\xA0\x80");
  }
}

}  // namespace
}  // namespace cw
