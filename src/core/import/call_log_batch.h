#pragma once
// The last step of an import: the calls that are new, in time order, after
// what the log already holds.

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "import/cdr_import.h"
#include "import/log_appender.h"

namespace cw {

struct BatchResult {
  std::int64_t written = 0;
  std::int64_t known = 0;  // imported before
  // Earlier than the log's last day: the reports stop at the first record
  // past their period, so a record may never go before a later day.
  std::int64_t tooOld = 0;
};

// Appends the calls that the state does not know and that do not fall
// before lastDay (the date of the log's last record, if any, which it
// moves on), in order of their start, as one batch. Errors as
// LogAppender::Append. written, when given, receives the calls written.
BatchResult AppendCalls(LogAppender& appender, std::vector<KeyedCall> calls, std::optional<CivilDate>& lastDay,
                        std::vector<LogCall>* written = nullptr);

// Appends to the busy log the stretches during which every one of lines
// carried one of calls, leaving out those before the busy log's last day;
// returns how many were written. Errors as LogAppender::Append.
std::int64_t AppendBusyStretches(LogAppender& busyLog, std::span<const LogCall> calls,
                                 std::span<const std::int32_t> lines);

// The date of the log's last record, or nullopt for an empty log.
std::optional<CivilDate> LastDayOf(const LogAppender& appender);

}  // namespace cw
