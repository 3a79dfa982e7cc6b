#pragma once
// The command line of the desktop program, as the logging program starts it:
// empty; a telephone number (show that number's history); or "h=" and the
// logging program's window handle, optionally followed by "," and a number.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace cw {

struct CommandLineChoice {
  std::string edition;
  bool historyMode = false;
  std::string historyNumber;
  // The window to embed the report form in; only "h=HANDLE" without an
  // edition word gives one.
  std::optional<std::int32_t> windowHandle;
};

// Blanks around the whole command line are ignored; the parts between commas
// are taken as they stand. Error 13 when the handle after "h=" is not a
// number, 6 when it does not fit 32 bits.
CommandLineChoice ResolveCommandLine(std::string_view commandLine);

}  // namespace cw
