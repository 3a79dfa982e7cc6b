#include "data/line_filter.h"

#include <cstdint>

#include "support/whole_numbers.h"

namespace cw {

std::string LineFilterPrompt() {
  // "can entered" is how the prompt has always read.
  std::string prompt;
  prompt += "List the lines you want to limit the report to show, separated by a comma.\r\n\r\n";
  prompt += "A range of line numbers can entered as 1-5, separated by a dash.\r\n\r\n";
  prompt += "Example\r\n";
  prompt += "1,3-5,7\r\n\r\n";
  prompt += "If you want all lines included in the report, just click cancel.\r\n";
  return prompt;
}

namespace {

// Every ",," becomes ",", in one pass from the left (",,," becomes ",,").
std::string CollapseDoubleCommas(const std::string& text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    result += text[i];
    if (text[i] == ',' && i + 1 < text.size() && text[i + 1] == ',') ++i;
  }
  return result;
}

}  // namespace

std::string ExpandLineFilter(std::string_view answer) {
  std::string text(answer);
  if (text.empty()) return text;

  // Each round writes out the first range. The numbers written are never
  // negative (the low end holds no "-"), so every round removes a dash and the
  // loop ends.
  std::size_t dash;
  while ((dash = text.find('-')) != std::string::npos) {
    const std::size_t before = text.rfind(',', dash);  // npos: the range starts the text
    const std::size_t lowStart = before == std::string::npos ? 0 : before + 1;
    std::size_t after = text.find(',', dash);
    if (after == std::string::npos) after = text.size();

    const std::int16_t low = TextToInt16(std::string_view(text).substr(lowStart, dash - lowStart));
    const std::int16_t high = TextToInt16(std::string_view(text).substr(dash + 1, after - dash - 1));

    // The comma in front of the range stays, and so does the one after it,
    // which leaves a ",," behind the written-out numbers.
    std::string expanded = text.substr(0, lowStart);
    for (int line = low; line <= high; ++line) {
      expanded += std::to_string(line);
      expanded += ',';
    }
    expanded += text.substr(after);
    text = CollapseDoubleCommas(expanded);
  }
  if (!text.empty() && text.back() == ',') text.pop_back();
  return text;
}

}  // namespace cw
