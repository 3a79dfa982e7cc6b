#include "printer/memo_wrap.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace cw {
namespace {

// Lines of a memo measured one unit per character.
std::vector<std::string> Wrap(std::string_view text, double available) {
  MemoWrap wrap(text, available);
  std::vector<std::string> lines;
  std::string line;
  const auto width = [](std::string_view part) { return static_cast<double>(part.size()); };
  while (wrap.NextLine(width, line)) lines.push_back(line);
  return lines;
}

TEST(MemoWrap, BreaksLinesAsMemoOutDoes) {
  struct Case {
    const char* why;
    std::string text;
    double available;
    std::vector<std::string> lines;
  };
  const std::vector<Case> cases{
      {"an empty memo is one empty line", "", 10, {""}},
      {"words stay with their trailing space", "one two three", 8, {"one two ", "three"}},
      {"a line exactly as wide as the space fits", "one two", 7, {"one two"}},
      {"an over-wide first word follows an empty line", "abcdefghijkl xy", 5, {"", "abcdefghijkl ", "xy"}},
      {"an over-wide word in the middle has a line of its own", "ab abcdefghijkl xy", 5,
       {"ab ", "abcdefghijkl ", "xy"}},
      {"CR LF forces a break and is dropped", "ab\r\ncd", 10, {"ab", "cd"}},
      {"two breaks make an empty line", "ab\r\n\r\ncd", 10, {"ab", "", "cd"}},
      {"a closing break leaves an empty last line", "ab\r\n", 10, {"ab", ""}},
      {"a word that overflows before a break is its own line", "aaaa bbbbbb\r\ncc", 6,
       {"aaaa ", "bbbbbb", "cc"}},
      {"a break before the next space ends the word there", "ab cd\r\nef gh", 100, {"ab cd", "ef gh"}},
      {"a lone line feed is no break", "a\nb c", 100, {"a\nb c"}},
      {"runs of spaces are kept", "a  b", 100, {"a  b"}},
  };
  for (const Case& c : cases) EXPECT_EQ(Wrap(c.text, c.available), c.lines) << c.why;
}

}  // namespace
}  // namespace cw
