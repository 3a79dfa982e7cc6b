#include "reports/callback_rules.h"

#include "data/call_record.h"
#include "support/time_text.h"

namespace cw {

namespace {

constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::int64_t kHour = 3600;

// The number as the number search compares it, into buffer (as wide as the
// field): blanks, "(", ")" and "-" dropped. Empty when no digit is left, as
// such a call ("PRIVATE", blank) cannot be called back.
std::string_view MatchKey(std::string_view number, char* buffer) {
  std::size_t size = 0;
  bool digit = false;
  for (char c : number) {
    if (c == ' ' || c == '(' || c == ')' || c == '-') continue;
    digit = digit || (c >= '0' && c <= '9');
    buffer[size++] = c;
  }
  return digit ? std::string_view(buffer, size) : std::string_view();
}

std::int64_t Moment(CivilDate date, TimeOfDay time) { return std::int64_t{date.Serial()} * kSecondsPerDay + time; }

}  // namespace

std::string_view CallBackWaitText(CallBackWait wait) {
  switch (wait) {
    case CallBackWait::kWithinHour: return "Returned within 1 hour";
    case CallBackWait::kSameDay: return "Returned the same day";
    case CallBackWait::kLater: return "Returned later";
    case CallBackWait::kNever: return "Not returned";
  }
  return {};
}

std::string_view CallBackWaitLabel(CallBackWait wait) {
  switch (wait) {
    case CallBackWait::kWithinHour: return "1 Hour";
    case CallBackWait::kSameDay: return "Same Day";
    case CallBackWait::kLater: return "Later";
    case CallBackWait::kNever: return "Never";
  }
  return {};
}

CallBackWait MissedCall::Wait() const {
  if (!Returned()) return CallBackWait::kNever;
  if (waitSeconds <= kHour) return CallBackWait::kWithinHour;
  return returnDate == date ? CallBackWait::kSameDay : CallBackWait::kLater;
}

CallBackMatcher::CallBackMatcher(std::int32_t windowDays, const AbandonedFilter& filter)
    : windowSeconds_(std::int64_t{windowDays} * kSecondsPerDay) {
  // The filter reads as on the abandoned tab with inbound calls chosen: a
  // missed call is an inbound one.
  if (filter.notLasting || filter.ringCount || filter.unanswered) abandoned_.emplace(filter, "In");
}

bool CallBackMatcher::IsMissed(const CallRecord& record) const {
  if (record.Direction() != "In") return false;
  return record.Answered() != "Yes" || (abandoned_ && abandoned_->IsAbandoned(record));
}

void CallBackMatcher::Add(const CallRecord& record, CivilDate date, bool inPeriod) {
  char buffer[column::kNumber.length];
  const std::string_view key = MatchKey(record.Number(), buffer);
  if (key.empty()) {
    if (inPeriod && IsMissed(record)) {
      missed_.push_back(MissedCall{record, date, ParseTimeText(record.Time()), {}, {}, 0, 0});
    }
    return;
  }
  const bool missed = IsMissed(record);
  if (!missed) {
    const std::string_view direction = record.Direction();
    if (direction != "Out" && direction != "In") return;
    const auto waiting = waiting_.find(key);
    if (waiting == waiting_.end()) return;
    const TimeOfDay time = ParseTimeText(record.Time());
    const std::int64_t now = Moment(date, time);
    std::vector<std::size_t> still;
    for (const std::size_t index : waiting->second) {
      MissedCall& call = missed_[index];
      const std::int64_t wait = now - Moment(call.date, call.time);
      // A call logged later but timed earlier cannot have returned it; the
      // missed call goes on waiting.
      if (wait < 0) {
        still.push_back(index);
        continue;
      }
      // The first later call decides: past the window, the call was not
      // returned in time, and no later call can change that.
      if (wait <= windowSeconds_) {
        call.returnedBy = record;
        call.returnDate = date;
        call.returnTime = time;
        call.waitSeconds = wait;
      }
    }
    if (still.empty()) {
      waiting_.erase(waiting);
    } else {
      waiting->second = std::move(still);
    }
    return;
  }
  if (!inPeriod) return;
  missed_.push_back(MissedCall{record, date, ParseTimeText(record.Time()), {}, {}, 0, 0});
  auto [entry, added] = waiting_.try_emplace(std::string(key));
  entry->second.push_back(missed_.size() - 1);
}

std::array<std::int32_t, kCallBackWaits> CallBackMatcher::Counts() const {
  std::array<std::int32_t, kCallBackWaits> counts{};
  for (const MissedCall& call : missed_) ++counts[static_cast<std::size_t>(call.Wait())];
  return counts;
}

}  // namespace cw
