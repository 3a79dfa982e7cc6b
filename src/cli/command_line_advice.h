#pragma once
// The report's message boxes are written for the desktop: some give advice
// that makes no sense on a command line (press Ctrl-C, check "All Lines") or
// name no option. cwreport keeps every box's text as it is and follows such a
// box with one line saying what to do here.

#include <string>
#include <string_view>

namespace cw::cli {

// What the advice needs to know of the request: where the call log was
// looked for and what named that place.
struct AdviceContext {
  std::string logPath;
  // What named the log: "--log", or "the setting \"Logs\" in FILE"; with no
  // path, why there is none ("no --log, and the setting ... is empty").
  std::string logSource;
};

// The command-line line that follows a box of this title and text; empty when
// the box needs none.
std::string CommandLineAdvice(std::string_view title, std::string_view text, const AdviceContext& context);

// A box's text as it can go to a terminal: UTF-8, CR LF as LF, and control
// bytes (a raw record may hold ESC and the like) written as \xNN.
std::string TerminalSafe(std::string_view win1252);

}  // namespace cw::cli
