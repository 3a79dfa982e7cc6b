#include "printer/memo_wrap.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "testing/expected_file.h"

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
  testing::ExpectTableMatches("printer/memo-wraps.txt", [](const std::string& row) {
    const std::size_t colon = row.find(": ");
    std::string shown;
    for (const std::string& line : Wrap(testing::Unescaped(row.substr(colon + 2)), std::stod(row.substr(0, colon)))) {
      shown += "[" + testing::Visible(line) + "]";
    }
    return shown;
  });
}

}  // namespace
}  // namespace cw
