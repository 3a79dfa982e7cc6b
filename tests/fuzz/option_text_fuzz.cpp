// Any text through the parsers of what a user types or passes on a command
// line: the line filter, dates, times, whole numbers, durations, the number
// search list and the desktop program's command line. Each either takes the
// text or refuses it with the runtime's error; nothing else may happen.

#include <cstdint>
#include <string>

#include "data/line_filter.h"
#include "data/log_conversions.h"
#include "data/record_selection.h"
#include "fuzz_support.h"
#include "settings/command_line.h"
#include "support/date_format.h"
#include "support/time_text.h"
#include "support/whole_numbers.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace cw;
  using namespace cw::fuzz;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  Refusable([&] {
    if (ExpandLineFilter(text).find('-') != std::string::npos) Violated("a written-out line filter still holds a range");
  });
  Refusable([&] { ParseCaptionDate(text); });
  Refusable([&] { ParseLogDate(text); });
  Refusable([&] { ParseTimeText(text); });
  Refusable([&] { DurationToSeconds(text); });
  Refusable([&] { TextToInt16(text); });
  Refusable([&] { TextToInt32(text); });
  Refusable([&] { TextToDouble(text); });
  Refusable([&] { IsNumericText(text); });
  Refusable([&] { NumberSearchList(text); });
  Refusable([&] { CleanNumber(text); });
  Refusable([&] { ResolveCommandLine(text); });
  return 0;
}
