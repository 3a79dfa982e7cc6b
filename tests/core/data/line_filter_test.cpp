#include "data/line_filter.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>

#include "core/support/error_number.h"
#include "testing/case_table.h"
#include "support/runtime_error.h"
#include "support/whole_numbers.h"

namespace cw {
namespace {

TEST(ExpandLineFilter, WritesOutEveryRange) {
  for (const std::vector<std::string>& c : testing::TableCases("data/line-filters.txt")) {
    EXPECT_EQ(ExpandLineFilter(c[0]), c[1]) << c[0];
  }
}

// The rule as the box has always applied it, one range at a time over the
// whole text: the expansion counts runs of commas instead, which must come to
// the same text, or the same error, for any answer (a range end that is no
// 16-bit number is a type mismatch or an overflow).
std::string ExpandOneRangeAtATime(std::string text) {
  const auto collapse = [](const std::string& from) {
    std::string to;
    for (std::size_t i = 0; i < from.size(); ++i) {
      to += from[i];
      if (from[i] == ',' && i + 1 < from.size() && from[i + 1] == ',') ++i;
    }
    return to;
  };
  std::size_t dash;
  while ((dash = text.find('-')) != std::string::npos) {
    const std::size_t before = text.rfind(',', dash);
    const std::size_t lowStart = before == std::string::npos ? 0 : before + 1;
    std::size_t after = text.find(',', dash);
    if (after == std::string::npos) after = text.size();
    const int low = TextToInt16(std::string_view(text).substr(lowStart, dash - lowStart));
    const int high = TextToInt16(std::string_view(text).substr(dash + 1, after - dash - 1));
    std::string expanded = text.substr(0, lowStart);
    for (int line = low; line <= high; ++line) expanded += std::to_string(line) + ',';
    text = collapse(expanded + text.substr(after));
  }
  if (!text.empty() && text.back() == ',') text.pop_back();
  return text;
}

TEST(ExpandLineFilter, RunsOfCommasComeOutAsWhenEachRangeIsWrittenInTurn) {
  std::mt19937 random(20261125);
  const std::string letters = ",,,,--0123456789 x";
  for (int round = 0; round < 20000; ++round) {
    std::string answer(random() % 24, ' ');
    for (char& c : answer) c = letters[random() % letters.size()];
    std::string expected, expanded;
    const int expectedError = test::ErrorNumberOf([&] { expected = ExpandOneRangeAtATime(answer); });
    EXPECT_EQ(test::ErrorNumberOf([&] { expanded = ExpandLineFilter(answer); }), expectedError) << answer;
    EXPECT_EQ(expanded, expected) << answer;
  }
}

}  // namespace
}  // namespace cw
