#pragma once
// The stretches of time during which every line carried a call, as the
// logging program records them in BusyLines.log, derived from imported calls.

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "import/call_builder.h"

namespace cw {

struct BusyStretch {
  LocalSeconds start = 0;
  LocalSeconds end = 0;
};

// The stretches, in time order, during which each of lines carried at least
// one of calls (a call holds its line from its start to its end). A call
// that ends as another begins on another line does not overlap it; a line
// handed from one call to the next at once stays busy. No lines: no
// stretches.
std::vector<BusyStretch> AllLinesBusy(std::span<const LogCall> calls, std::span<const std::int32_t> lines);

// "1-4", "1,3", "1-2,5": the lines as the busy log lists them.
std::string LinesText(std::span<const std::int32_t> lines);

// One line of BusyLines.log with its CR LF:
// "11/17/2026,09:30:00 AM,09:34:00 AM,240,1-2".
std::string FormatBusyLine(const BusyStretch& stretch, const std::string& linesText);

}  // namespace cw
