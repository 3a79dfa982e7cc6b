#include "reports/detail_rules.h"

#include <cstdlib>

#include "data/log_conversions.h"
#include "support/whole_numbers.h"

namespace cw {

namespace {

void AppendTwoDigits(std::string& text, std::int64_t value) {
  text += static_cast<char>('0' + value / 10);
  text += static_cast<char>('0' + value % 10);
}

constexpr std::string_view kLineListingTitle = "LINE DETAILS REPORT";

}  // namespace

std::string TotalDurationText(std::int64_t seconds) {
  // A duration field such as "0:-5:00" converts to negative seconds; the sum
  // then keeps its sign in front rather than in every part.
  std::int64_t rest = seconds;
  std::string text;
  if (rest < 0) {
    text = "-";
    rest = -rest;
  }
  text += std::to_string(rest / 3600);
  text += ':';
  AppendTwoDigits(text, rest / 60 % 60);
  text += ':';
  AppendTwoDigits(text, rest % 60);
  return text;
}

std::int32_t AbandonedPercentage(std::int32_t abandoned, std::int32_t considered) {
  if (abandoned < 1 || considered < 1) return 0;
  return ToInt32(static_cast<double>(MulInt32(abandoned, 100)) / considered);
}

std::string AbandonedSummaryText(std::int32_t abandoned, std::int32_t considered) {
  return std::to_string(abandoned) + " of " + std::to_string(considered) + "  (" +
         std::to_string(AbandonedPercentage(abandoned, considered)) + "%)";
}

AbandonedCallTest::AbandonedCallTest(const AbandonedFilter& filter, std::string_view direction) {
  if (direction == "In") {
    unansweredOnly_ = filter.unanswered;
    ringLimit_ = filter.ringCount;
    if (ringLimit_) maxRings_ = TextToInt32(filter.rings);
  }
  notLasting_ = filter.notLasting;
  if (notLasting_) lastingSeconds_ = TextToInt32(filter.seconds);
}

bool AbandonedCallTest::IsAbandoned(const CallRecord& record) const {
  if (unansweredOnly_ && record.Answered() == "Yes") return false;
  if (ringLimit_) {
    // A call without a ring count cannot be shown to have rung few times.
    const std::string_view rings = record.Rings();
    if (rings.empty() || TextToInt32(rings) > maxRings_) return false;
  }
  if (notLasting_ && DurationToSeconds(record.ShortDuration()) >= lastingSeconds_) return false;
  return true;
}

std::string LineListingTitle(const std::vector<std::int16_t>& lines) {
  std::string title(kLineListingTitle);
  if (lines.empty()) return title;
  if (lines.size() == 1) return title + " (Line " + std::to_string(lines.front()) + ")";
  title += " (Lines ";
  for (std::size_t first = 0; first < lines.size();) {
    std::size_t last = first;
    while (last + 1 < lines.size() && lines[last + 1] == lines[last] + 1) ++last;
    if (first > 0) title += ',';
    title += std::to_string(lines[first]);
    if (last > first) title += '-' + std::to_string(lines[last]);
    first = last + 1;
  }
  return title + ")";
}

}  // namespace cw
