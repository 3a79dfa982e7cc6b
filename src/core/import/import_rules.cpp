#include "import/import_rules.h"

#include <algorithm>

#include "support/runtime_error.h"
#include "support/file_helpers.h"
#include "support/text.h"

namespace cw {

namespace {

bool EndsName(char c) { return c == '-' || c == '/' || c == '@' || c == ';'; }

}  // namespace

const TrunkLine* ImportRules::TrunkOf(std::string_view channel) const {
  const TrunkLine* best = nullptr;
  for (const TrunkLine& trunk : trunks) {
    if (!channel.starts_with(trunk.prefix)) continue;
    const bool whole = channel.size() == trunk.prefix.size() || EndsName(trunk.prefix.back()) ||
                       EndsName(channel[trunk.prefix.size()]);
    if (whole && (best == nullptr || trunk.prefix.size() > best->prefix.size())) best = &trunk;
  }
  return best;
}

bool ImportRules::InboundContext(std::string_view context) const {
  return std::any_of(inboundContexts.begin(), inboundContexts.end(),
                     [context](const std::string& pattern) { return MatchesPattern(pattern, context); });
}

std::vector<std::int32_t> ImportRules::Lines() const {
  std::vector<std::int32_t> lines;
  for (const TrunkLine& trunk : trunks) lines.push_back(trunk.line);
  std::sort(lines.begin(), lines.end());
  lines.erase(std::unique(lines.begin(), lines.end()), lines.end());
  return lines;
}

std::vector<std::string> SplitList(std::string_view list) {
  std::vector<std::string> entries;
  while (!list.empty()) {
    const std::size_t comma = list.find(',');
    const std::string_view entry = Trim(list.substr(0, comma));
    if (!entry.empty()) entries.emplace_back(entry);
    if (comma == std::string_view::npos) break;
    list.remove_prefix(comma + 1);
  }
  return entries;
}

TrunkLine ParseTrunk(std::string_view entry) {
  entry = Trim(entry);
  const std::size_t equals = entry.rfind('=');
  const std::string_view prefix = equals == std::string_view::npos ? entry : Trim(entry.substr(0, equals));
  const std::string_view line = equals == std::string_view::npos ? std::string_view() : Trim(entry.substr(equals + 1));
  const bool lineOk = !line.empty() && line.size() <= 3 && IsAllDigits(line);
  const int number = lineOk ? std::stoi(std::string(line)) : 0;
  if (prefix.empty() || number < 1 || number > kMaxLine) {
    throw RuntimeError(err::kInvalidCall, "the trunk \"" + std::string(entry) +
                                              "\" is not CHANNEL-PREFIX=LINE with a line from 1 to 999");
  }
  return {std::string(prefix), number};
}

std::vector<TrunkLine> ParseTrunkList(std::string_view list) {
  std::vector<TrunkLine> trunks;
  for (const std::string& entry : SplitList(list)) {
    TrunkLine trunk = ParseTrunk(entry);
    for (const TrunkLine& earlier : trunks) {
      if (earlier.prefix == trunk.prefix) {
        throw RuntimeError(err::kInvalidCall, "the trunk " + trunk.prefix + " is given twice");
      }
    }
    trunks.push_back(std::move(trunk));
  }
  return trunks;
}

bool MatchesPattern(std::string_view pattern, std::string_view text) {
  // Greedy match with one remembered star: patterns are short, so the
  // backtracking stays small.
  std::size_t p = 0, t = 0, star = std::string_view::npos, resume = 0;
  while (t < text.size()) {
    if (p < pattern.size() && pattern[p] == '*') {
      star = p++;
      resume = t;
    } else if (p < pattern.size() && pattern[p] == text[t]) {
      ++p;
      ++t;
    } else if (star != std::string_view::npos) {
      p = star + 1;
      t = ++resume;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == '*') ++p;
  return p == pattern.size();
}

}  // namespace cw
