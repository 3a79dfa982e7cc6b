#include "cli/command_line_advice.h"

#include <cstdio>

#include "support/ansi_text.h"

namespace cw::cli {

namespace {

struct Advice {
  std::string_view title;  // the box's title, exactly; empty: any
  std::string_view text;   // a part of the box's text; empty: any
  std::string_view line;
};

// Looked up in order; the first that fits is the advice.
constexpr Advice kAdvice[] = {
    {"Missing Filter", "", "cwreport: choose the calls with --unanswered, --rings N and/or --not-lasting SECONDS"},
    {"Missing Filter (Time In Seconds)", "", "cwreport: --not-lasting needs a whole number of seconds"},
    {"Missing Filter (Rings)", "", "cwreport: --rings needs a whole number of rings"},
    {"Missing Search Criteria", "", "cwreport: give the name or number to look for with --search TEXT"},
    {"", "Missing Start Date", "cwreport: give the first day with --from DATE, or a --period"},
    {"", "check the \"All Lines\" option", "cwreport: choose lines with --lines LIST, or every line with --lines all"},
    {"", "Press Ctrl-C to copy",
     "cwreport: there is no clipboard here: the error text above is the whole of it, to copy from this output"},
};

bool IsControl(unsigned char byte) {
  // The five bytes Windows-1252 leaves undefined stand for C1 controls.
  return byte < 0x20 || byte == 0x7F || byte == 0x81 || byte == 0x8D || byte == 0x8F || byte == 0x90 ||
         byte == 0x9D;
}

}  // namespace

std::string CommandLineAdvice(std::string_view title, std::string_view text, const AdviceContext& context) {
  if (title == "Cannot Find the Call Logs File") {
    if (context.logPath.empty()) {
      return "cwreport: no call log is named (" + context.logSource +
             "): give it with --log FILE, and the logging program's folder with --path DIR";
    }
    return "cwreport: there is no call log at \"" + context.logPath + "\" (from " + context.logSource +
           "): give it with --log FILE, and the logging program's folder with --path DIR";
  }
  for (const Advice& advice : kAdvice) {
    if (!advice.title.empty() && advice.title != title) continue;
    if (!advice.text.empty() && text.find(advice.text) == std::string_view::npos) continue;
    return std::string(advice.line);
  }
  return {};
}

std::string TerminalSafe(std::string_view win1252) {
  std::string safe;
  std::size_t plain = 0;
  const auto flush = [&](std::size_t end) {
    if (end > plain) safe += Win1252ToUtf8(win1252.substr(plain, end - plain));
    plain = end + 1;
  };
  for (std::size_t i = 0; i < win1252.size(); ++i) {
    const auto byte = static_cast<unsigned char>(win1252[i]);
    if (byte == '\n' || !IsControl(byte)) continue;
    flush(i);
    // The boxes break their lines with CR LF; a terminal wants LF alone.
    if (byte == '\r' && i + 1 < win1252.size() && win1252[i + 1] == '\n') continue;
    char escaped[8];
    std::snprintf(escaped, sizeof escaped, "\\x%02x", byte);
    safe += escaped;
  }
  flush(win1252.size());
  return safe;
}

}  // namespace cw::cli
