#pragma once
// The writer of call-log records: the inverse of the reader's columns in
// data/call_record.h, from which it takes every position.

#include <optional>
#include <string>
#include <string_view>

#include "import/call_builder.h"

namespace cw {

// One record with its CR LF: date "mm/dd/yyyy", time "hh:mmAM", number,
// name, line, "In"/"Out", duration "h:mm:ss" (at most 9:59:59, the hour
// column being one digit wide), "Yes"/"No", rings; blank-padded, numbers
// right-aligned, nothing after the rings column.
std::string FormatLogRecord(const LogCall& call);
void AppendLogRecord(std::string& out, const LogCall& call);

// The same call read back from a record by the reports' own reader, to
// order what is appended after what the log already holds: the record's
// date and minute as local seconds; nullopt when the line holds no date and
// time.
std::optional<LocalSeconds> RecordMoment(std::string_view line);

}  // namespace cw
