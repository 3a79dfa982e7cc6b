#pragma once
// The date of the oldest call in the log, which starts the period "All Log
// Entries" and the history of a telephone number.

#include <optional>
#include <string>

#include "support/civil_date.h"

namespace cw {

// The log is in time order, so its first line holds the oldest call. Its first
// ten characters are the start date, "mm/dd/yyyy" as the caption shows it,
// unless neither character 3 nor character 6 is "/": such a line (or an empty
// log) is undated and the start is today. nullopt when logPath is empty or
// names no file, so the caller keeps the date it had. Only the first line is
// read. Error 75 when the file exists but cannot be read.
std::optional<std::string> OldestLogDate(const std::string& logPath, CivilDate today);

}  // namespace cw
