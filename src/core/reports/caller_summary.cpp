#include "reports/caller_summary.h"

#include "data/log_conversions.h"
#include "data/record_selection.h"
#include "support/fast_cat.h"
#include "support/runtime_error.h"
#include "support/text.h"
#include "support/whole_numbers.h"

namespace cw {

namespace {

// Layout of a sort line. Fields are padded with blanks to their width: a
// name is at most as long as its column, and a blank sorts before every
// letter and digit, so "ANN" comes before "ANN BAKER".
constexpr std::size_t kNameWidth = column::kName.length;
constexpr std::size_t kNumberWidth = column::kNumber.length;
constexpr std::size_t kCountWidth = 11;  // a 32-bit number with its sign
constexpr std::size_t kKeyWidth = kNameWidth + kNumberWidth;
constexpr std::size_t kLineWidth = kKeyWidth + kNameWidth + kNumberWidth + 2 * kCountWidth;
constexpr std::string_view kLineEnd = "\r\n";

void AppendPadded(std::string& line, std::string_view text, std::size_t width) {
  line += text.substr(0, width);
  if (text.size() < width) line.append(width - text.size(), ' ');
}

void AppendCount(std::string& line, std::int32_t value) {
  const std::string digits = std::to_string(value);
  line.append(kCountWidth - digits.size(), ' ');
  line += digits;
}

std::string CallerKey(std::string_view name, std::string_view number) {
  std::string key;
  key.reserve(kKeyWidth);
  AppendPadded(key, UpperCase(name), kNameWidth);
  AppendPadded(key, CleanNumber(number), kNumberWidth);
  return key;
}

}  // namespace

void CallerSummary::Add(const CallRecord& record) {
  const std::int32_t seconds = DurationToSeconds(record.Duration());
  auto [where, added] = index_.try_emplace(CallerKey(record.Name(), record.Number()), callers_.size());
  if (added) callers_.push_back({std::string(record.Name()), std::string(record.Number()), 0, 0});
  CallerTotals& caller = callers_[where->second];
  caller.calls = AddInt32(caller.calls, 1);
  caller.seconds = AddInt32(caller.seconds, seconds);
}

void CallerSummary::AppendSortLines(cFastCat& builder) const {
  std::string line;
  line.reserve(kLineWidth + kLineEnd.size());
  for (const auto& [key, position] : index_) {
    const CallerTotals& caller = callers_[position];
    line = key;
    AppendPadded(line, caller.name, kNameWidth);
    AppendPadded(line, caller.number, kNumberWidth);
    AppendCount(line, caller.calls);
    AppendCount(line, caller.seconds);
    line += kLineEnd;
    builder.Append(line);
  }
}

std::size_t CallerSummary::SortTextLength() const {
  return callers_.size() * (kLineWidth + kLineEnd.size());
}

CallerTotals CallerSummary::FromSortLine(std::string_view line) {
  if (line.size() != kLineWidth) {
    throw RuntimeError(err::kTypeMismatch, "Not a caller line of the condensed summary: " + std::string(line));
  }
  std::size_t at = kKeyWidth;
  const auto take = [&](std::size_t width) {
    const std::string_view field = Trim(line.substr(at, width));
    at += width;
    return field;
  };
  CallerTotals caller;
  caller.name = take(kNameWidth);
  caller.number = take(kNumberWidth);
  caller.calls = TextToInt32(take(kCountWidth));
  caller.seconds = TextToInt32(take(kCountWidth));
  return caller;
}

}  // namespace cw
