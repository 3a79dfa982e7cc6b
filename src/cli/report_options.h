#pragma once
// The options of a cwreport report request, as parsed from its arguments,
// and the help text that lists them.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "printer/page_device.h"
#include "reports/report_request.h"
#include "support/civil_date.h"

namespace cw::cli {

extern const std::string_view kReportHelp;

// Where the finished document goes. Files are named as given; "-" for the
// text means standard output.
struct ReportOutputs {
  std::optional<std::string> text;
  std::optional<std::string> pdf;
  std::optional<std::string> png;    // a folder: page-0001.png, ...
  std::optional<std::string> spool;  // the 422-byte records, kept
  std::optional<int> dpi;            // of the page images
  // Of the text: "utf-8" (LF) or "windows-1252" (CR LF). Unset: UTF-8 on a
  // terminal, else Windows-1252.
  std::optional<std::string> encoding;
  // --print [PRINTER] with its copies and page range; no printer named: the
  // system's default.
  bool print = false;
  std::string printer;
  std::optional<std::int16_t> copies;
  std::optional<std::int16_t> fromPage;
  std::optional<std::int16_t> toPage;
};

struct ReportOptions {
  bool help = false;

  std::string edition{kEditionRingtally};
  std::optional<std::string> settingsFile;
  std::optional<std::string> log;   // overrides the setting "Logs"
  std::optional<std::string> path;  // overrides the setting "Path"

  std::optional<std::int16_t> kind;
  std::optional<std::string> from;
  std::optional<std::string> to;
  std::optional<TimePeriod> period;
  std::optional<std::string> direction;  // "In", "Out" or "InOut"
  std::optional<std::string> variant;    // "Detailed" or "Summary"
  std::optional<std::string> search;
  bool partial = false;
  bool chart = false;
  std::optional<std::string> notLastingSeconds;  // as typed: the request checks it
  std::optional<std::string> rings;
  bool unanswered = false;
  std::optional<LineChoice> lines;
  bool dtmf = false;
  std::optional<std::string> history;  // the history of this number
  std::optional<CivilDate> today;
  // --paper; without it the page of the printer of --print, else US Letter.
  std::optional<PageSetup> paper;

  ReportOutputs outputs;
};

// A mistake in the arguments themselves (exit status 2).
struct UsageError {
  std::string text;
};

// Throws UsageError. With no output named the text goes to standard output.
ReportOptions ParseReportOptions(const std::vector<std::string>& args);

// The report kind of --report: 1 to 8 or its name; nullopt for anything else.
std::optional<std::int16_t> ReportKindOf(std::string_view text);

// The dates of --today, strictly "mm/dd/yyyy" and a real day; nullopt otherwise.
std::optional<CivilDate> StrictCaptionDate(std::string_view text);

}  // namespace cw::cli
