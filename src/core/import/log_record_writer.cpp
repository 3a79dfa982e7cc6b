#include "import/log_record_writer.h"

#include <algorithm>
#include <cstring>

#include "data/call_record.h"
#include "data/log_conversions.h"
#include "support/runtime_error.h"
#include "support/time_text.h"

namespace cw {

namespace {

constexpr std::int32_t kLongestDuration = 9 * 3600 + 59 * 60 + 59;
// The record ends with the rings column: no DTMF digits are known.
constexpr std::size_t kRecordLength = column::kRings.start - 1 + column::kRings.length;

char* At(std::string& line, LogColumn where) { return line.data() + where.start - 1; }

void PutText(std::string& line, LogColumn where, std::string_view text) {
  std::memcpy(At(line, where), text.data(), std::min(text.size(), where.length));
}

void PutDigits(char* at, std::int32_t value, int width) {
  for (int i = width - 1; i >= 0; --i, value /= 10) at[i] = static_cast<char>('0' + value % 10);
}

void PutRight(std::string& line, LogColumn where, std::int32_t value) {
  char* at = At(line, where);
  for (int i = static_cast<int>(where.length) - 1; i >= 0; --i) {
    at[i] = (value > 0 || i == static_cast<int>(where.length) - 1) ? static_cast<char>('0' + value % 10) : ' ';
    value /= 10;
  }
}

}  // namespace

void AppendLogRecord(std::string& out, const LogCall& call) {
  std::string line(kRecordLength, ' ');
  const CivilDate date = DateOf(call.start);
  char* dateAt = At(line, column::kDate);
  PutDigits(dateAt, date.Month(), 2);
  dateAt[2] = '/';
  PutDigits(dateAt + 3, date.Day(), 2);
  dateAt[5] = '/';
  PutDigits(dateAt + 6, date.Year(), 4);

  const TimeOfDay time = TimeOfDayOf(call.start);
  const std::int32_t hour24 = time / 3600;
  char* timeAt = At(line, column::kTime);
  PutDigits(timeAt, hour24 % 12 == 0 ? 12 : hour24 % 12, 2);
  timeAt[2] = ':';
  PutDigits(timeAt + 3, time / 60 % 60, 2);
  timeAt[5] = hour24 < 12 ? 'A' : 'P';
  timeAt[6] = 'M';

  PutText(line, column::kNumber, call.number);
  PutText(line, column::kName, call.name);
  PutRight(line, column::kLine, call.line);
  PutText(line, column::kDirection, call.inbound ? "In" : "Out");

  const std::int32_t talk = std::clamp(call.talkSeconds, 0, kLongestDuration);
  char* durationAt = At(line, column::kDuration);
  durationAt[0] = static_cast<char>('0' + talk / 3600);
  durationAt[1] = ':';
  PutDigits(durationAt + 2, talk / 60 % 60, 2);
  durationAt[4] = ':';
  PutDigits(durationAt + 5, talk % 60, 2);

  PutText(line, column::kAnswered, call.answered ? "Yes" : "No");
  PutRight(line, column::kRings, std::clamp(call.rings, 0, 999));
  out += line;
  out += "\r\n";
}

std::string FormatLogRecord(const LogCall& call) {
  std::string out;
  AppendLogRecord(out, call);
  return out;
}

std::optional<LocalSeconds> RecordMoment(std::string_view line) {
  const CallRecord record(line);
  try {
    const LogDateParts parts = SplitLogDate(record.Date());
    const CivilDate date = ParseLogDate(record.Date());
    if (!IsCalendarDate(parts, date)) return std::nullopt;
    return LocalSecondsOf(date, ParseTimeText(record.Time()));
  } catch (const RuntimeError&) {
    return std::nullopt;
  }
}

}  // namespace cw
