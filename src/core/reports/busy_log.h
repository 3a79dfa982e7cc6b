#pragma once
// BusyLines.log: the logging program's record of every stretch of time during
// which all telephone lines were busy. One line per occurrence, in time order,
// five fields separated by ",":
//   date "mm/dd/yyyy", time all lines became busy, time a line became free,
//   length in whole seconds, the lines concerned
// for example "08/19/2026,09:41:10 AM,09:42:04 AM,54,1-4".

#include <cstdint>
#include <string>
#include <string_view>

#include "data/log_buffer.h"

namespace cw {

inline constexpr std::string_view kBusyLogName = "BusyLines.log";

// The fields of one busy-log line, each trimmed of blanks. They point into
// the line, which must outlive them.
struct BusyLine {
  std::string_view date;
  std::string_view start;
  std::string_view end;
  std::string_view seconds;
  std::string_view lines;
};

// Splits a line at ",". The lines field is the rest of the line after the
// fourth ",", so a list such as "1,2,3" is printed as the logger wrote it.
// Error 9 (Subscript out of range) when the line has fewer than five fields.
BusyLine SplitBusyLine(std::string_view line);

// The length field as whole seconds. Only a whole number will do: "12.5" is a
// fraction, not a length the logger writes, and is error 13 like any other
// text that is not a number; error 6 when it does not fit in 32 bits.
std::int32_t BusySeconds(std::string_view field);

// The busy log of the logging program's folder (setting "Path"), found in any
// case of its name, read whole. The logging program creates the file only
// when it first sees every line busy, so a folder without one (or no folder
// at all) means no occurrences: an empty log, never an error. A file that is
// there but cannot be read is error 75, as for the call log.
LogBuffer LoadBusyLog(std::string_view pathFolder);

}  // namespace cw
