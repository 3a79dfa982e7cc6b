#pragma once
// What the office tells the import about its PBX: which channels are its
// telephone company trunks and on which line each one counts, which dialplan
// contexts take calls from outside, and how long one ring lasts.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cw {

struct TrunkLine {
  std::string prefix;  // "SIP/211553", "PJSIP/telco"
  std::int32_t line = 0;
};

struct ImportRules {
  std::vector<TrunkLine> trunks;
  std::vector<std::string> inboundContexts;  // patterns, "*" for any run of characters
  std::int32_t ringSeconds = 6;

  // The trunk a channel belongs to: the longest prefix that ends where the
  // channel's own name does (at its end or at one of "-/@;"), so that
  // "DAHDI/1" is not "DAHDI/10-1". nullptr for a channel on no trunk.
  const TrunkLine* TrunkOf(std::string_view channel) const;
  bool InboundContext(std::string_view context) const;
  // The lines the trunks are on, each once, in order.
  std::vector<std::int32_t> Lines() const;
};

inline constexpr std::int32_t kMaxLine = 999;      // the line column is three characters wide
inline constexpr std::int32_t kMaxRingSeconds = 60;

// "SIP/211553=1, PJSIP/telco=2". Error 5 naming the entry that is not
// PREFIX=LINE with a line from 1 to 999, or a prefix given twice.
std::vector<TrunkLine> ParseTrunkList(std::string_view list);
TrunkLine ParseTrunk(std::string_view entry);

// A comma list, each entry trimmed, empty entries dropped.
std::vector<std::string> SplitList(std::string_view list);

// Whether text matches a pattern in which "*" stands for any run of
// characters (none included); everything else must be equal.
bool MatchesPattern(std::string_view pattern, std::string_view text);

}  // namespace cw
