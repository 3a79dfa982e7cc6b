#pragma once
// The rules of the call-back report, on values alone: which calls were
// missed, and which later call returned each of them.
//
// A missed call is an inbound call that was not answered, or that the
// abandoned-call filter (when one of its boxes is checked) takes as
// abandoned. It is returned by the first later call with the same number
// that is outbound, or inbound and answered (and not itself missed), when
// that call comes within the window. Numbers compare by their digits, as the
// number search cleans them; a call without a digit in its number cannot be
// returned. One call back returns every missed call from its number still
// waiting: each counts as returned, with its own wait.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "data/call_record.h"
#include "reports/detail_rules.h"
#include "reports/report_request.h"
#include "support/civil_date.h"

namespace cw {

// How long a missed call waited, in the summary's four groups.
enum class CallBackWait { kWithinHour = 0, kSameDay = 1, kLater = 2, kNever = 3 };
inline constexpr std::size_t kCallBackWaits = 4;

// The summary's texts and the chart's labels of the four groups.
std::string_view CallBackWaitText(CallBackWait wait);
std::string_view CallBackWaitLabel(CallBackWait wait);

struct MissedCall {
  CallRecord call;  // a view into the log, which outlives the report
  CivilDate date;
  TimeOfDay time = 0;
  // The call that returned it; empty Text() when it was not returned.
  CallRecord returnedBy;
  CivilDate returnDate;
  TimeOfDay returnTime = 0;
  std::int64_t waitSeconds = 0;

  bool Returned() const { return !returnedBy.Text().empty(); }
  CallBackWait Wait() const;
};

class CallBackMatcher {
 public:
  // filter: the abandoned-call filter; it takes part only when one of its
  // boxes is checked (then errors 13/6 for thresholds that are no number).
  CallBackMatcher(std::int32_t windowDays, const AbandonedFilter& filter);

  // Each call of the walk, in log order, with its date. inPeriod: the call
  // lies in the report's period; calls after it (up to the window past its
  // end) can only return a missed call. The time is read only from the calls
  // that take part (error 13 when it is no time).
  void Add(const CallRecord& record, CivilDate date, bool inPeriod);

  // Whether the call counts as missed.
  bool IsMissed(const CallRecord& record) const;

  // The missed calls of the period in log order, with their call backs.
  const std::vector<MissedCall>& Missed() const { return missed_; }
  // How many missed calls fall in each group.
  std::array<std::int32_t, kCallBackWaits> Counts() const;

 private:
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
  };

  std::int64_t windowSeconds_;
  std::optional<AbandonedCallTest> abandoned_;
  std::vector<MissedCall> missed_;
  // The missed calls of a number still waiting for a call back, by index.
  std::unordered_map<std::string, std::vector<std::size_t>, Hash, std::equal_to<>> waiting_;
};

}  // namespace cw
