#include "import/call_log_batch.h"

#include <algorithm>

#include "data/log_conversions.h"
#include "import/busy_stretches.h"
#include "import/log_record_writer.h"
#include "support/runtime_error.h"

namespace cw {

std::optional<CivilDate> LastDayOf(const LogAppender& appender) {
  const std::optional<LocalSeconds> moment = RecordMoment(appender.LastRecord());
  if (!moment) return std::nullopt;
  return DateOf(*moment);
}

BatchResult AppendCalls(LogAppender& appender, std::vector<KeyedCall> calls, std::optional<CivilDate>& lastDay,
                        std::vector<LogCall>* written) {
  std::stable_sort(calls.begin(), calls.end(),
                   [](const KeyedCall& a, const KeyedCall& b) { return a.call.start < b.call.start; });
  BatchResult result;
  std::string records;
  std::vector<ImportState::Entry> entries;
  std::optional<CivilDate> day = lastDay;
  for (const KeyedCall& keyed : calls) {
    if (appender.State().Knows(keyed.key, keyed.call.start)) {
      ++result.known;
      continue;
    }
    const CivilDate date = DateOf(keyed.call.start);
    if (day && date < *day) {
      ++result.tooOld;
      continue;
    }
    day = day ? std::max(*day, date) : date;
    AppendLogRecord(records, keyed.call);
    entries.push_back(ImportState::EntryOf(keyed.key, keyed.call.start));
    ++result.written;
    if (written != nullptr) written->push_back(keyed.call);
  }
  appender.Append(records, std::move(entries));
  lastDay = day;
  return result;
}

std::int64_t AppendBusyStretches(LogAppender& busyLog, std::span<const LogCall> calls,
                                 std::span<const std::int32_t> lines) {
  std::optional<CivilDate> lastDay;
  const std::string last = busyLog.LastRecord();
  try {
    const std::string_view date = std::string_view(last).substr(0, 10);
    const CivilDate parsed = ParseLogDate(date);
    if (IsCalendarDate(SplitLogDate(date), parsed)) lastDay = parsed;
  } catch (const RuntimeError&) {
    // An empty busy log, or a last line that names no day: nothing to keep after.
  }
  const std::string linesText = LinesText(lines);
  std::string text;
  std::int64_t count = 0;
  for (const BusyStretch& stretch : AllLinesBusy(calls, lines)) {
    if (lastDay && DateOf(stretch.start) < *lastDay) continue;
    text += FormatBusyLine(stretch, linesText);
    ++count;
  }
  busyLog.Append(text, {});
  return count;
}

}  // namespace cw
