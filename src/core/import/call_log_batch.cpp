#include "import/call_log_batch.h"

#include <algorithm>

#include "import/log_record_writer.h"

namespace cw {

std::optional<CivilDate> LastDayOf(const LogAppender& appender) {
  const std::optional<LocalSeconds> moment = RecordMoment(appender.LastRecord());
  if (!moment) return std::nullopt;
  return DateOf(*moment);
}

BatchResult AppendCalls(LogAppender& appender, std::vector<KeyedCall> calls, std::optional<CivilDate>& lastDay) {
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
  }
  appender.Append(records, std::move(entries));
  lastDay = day;
  return result;
}

}  // namespace cw
