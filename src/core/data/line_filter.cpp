#include "data/line_filter.h"

#include <algorithm>
#include <cstdint>
#include <vector>

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

// The box has always written out one range at a time, from the left, and
// after each one turned every ",," of the whole text into "," in one pass
// from the left. That pass halves a run of commas, rounding up (",,," becomes
// ",,"), and leaves every other character alone. So instead of rewriting the
// text once per range, each run of commas is kept as a count together with
// the number of ranges written when the count was last right, and is halved
// for every range written after that only once the whole text is known.
struct CommaRun {
  std::uint64_t commas = 0;
  int rangesBefore = 0;

  // The run's length once `ranges` ranges have been written out.
  std::uint64_t After(int ranges) const {
    if (commas == 0) return 0;
    const int halvings = ranges - rangesBefore;
    return halvings >= 64 ? 1 : ((commas - 1) >> halvings) + 1;
  }
};

// The text as written out so far: words (which never change again) and the
// runs of commas between them.
struct Piece {
  std::string word;  // empty for a run of commas
  CommaRun run;
};

std::string WrittenOut(std::int16_t low, std::int16_t high) {
  std::string numbers;
  for (int line = low; line <= high; ++line) {
    if (!numbers.empty()) numbers += ',';
    numbers += std::to_string(line);
  }
  return numbers;
}

}  // namespace

std::string ExpandLineFilter(std::string_view answer) {
  std::vector<Piece> pieces;
  int ranges = 0;
  std::size_t at = 0;
  while (at < answer.size()) {
    std::size_t end = answer.find(',', at);
    if (end == at) {  // a run of commas
      end = answer.find_first_not_of(',', at);
      if (end == std::string_view::npos) end = answer.size();
      pieces.push_back({{}, {end - at, 0}});  // halved by every range so far, too
      at = end;
      continue;
    }
    if (end == std::string_view::npos) end = answer.size();
    const std::string_view word = answer.substr(at, end - at);
    at = end;
    const std::size_t dash = word.find('-');
    if (dash == std::string_view::npos) {
      pieces.push_back({std::string(word), {}});
      continue;
    }

    const std::int16_t low = TextToInt16(word.substr(0, dash));
    const std::int16_t high = TextToInt16(word.substr(dash + 1));
    const std::string numbers = WrittenOut(low, high);

    // The comma written after the last number joins the run that followed
    // the range; with no numbers, the runs before and after the range join.
    std::uint64_t following = numbers.empty() ? 0 : 1;
    if (at < answer.size()) {
      const std::size_t runEnd = std::min(answer.find_first_not_of(',', at), answer.size());
      following += CommaRun{runEnd - at, 0}.After(ranges);
      at = runEnd;
    }
    if (!numbers.empty()) {
      pieces.push_back({numbers, {}});
    } else if (!pieces.empty() && pieces.back().word.empty()) {
      following += pieces.back().run.After(ranges);
      pieces.pop_back();
    }
    if (following > 0) pieces.push_back({{}, {following, ranges}});
    ++ranges;
  }

  std::string text;
  for (const Piece& piece : pieces) {
    if (piece.word.empty()) {
      text.append(piece.run.After(ranges), ',');
    } else {
      text += piece.word;
    }
  }
  if (!text.empty() && text.back() == ',') text.pop_back();
  return text;
}

}  // namespace cw
