#pragma once
// The options of a cwreport report request, as parsed from its arguments,
// and the help text that lists them (both from one option table).

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/option_table.h"
#include "printer/page_device.h"
#include "reports/report_request.h"
#include "support/civil_date.h"

namespace cw::cli {

// The whole of "cwreport --help": the report request's options and outputs,
// the subcommands, the exit statuses.
std::string ReportHelp();

// The periods of --period: the form's four, and the closed periods before
// today that scheduled jobs ask for.
enum class PeriodChoice { kToday, kWeek, kMonth, kAll, kYesterday, kLastWeek, kLastMonth, kLastYear };

// The From and To dates of a closed period (yesterday, last-week, last-month,
// last-year) seen from today; nullopt for the form's own periods. A week runs
// Sunday to Saturday, as the form's current week starts on Sunday.
std::optional<std::pair<CivilDate, CivilDate>> ClosedPeriod(PeriodChoice period, CivilDate today);

// Where the finished document goes. Files are named as given; "-" for the
// text means standard output.
struct ReportOutputs {
  std::optional<std::string> text;
  std::optional<std::string> pdf;
  std::optional<std::string> png;    // a folder: page-0001.png, ...
  std::optional<std::string> spool;  // the 422-byte records, kept
  std::optional<std::string> csv;    // the report's data; "-" is standard output
  char csvSeparator = ',';
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
  // "mm/dd/yyyy" captions, whatever form of date was typed; a blank value is
  // passed on as it is, for the form to refuse.
  std::optional<std::string> from;
  std::optional<std::string> to;
  std::optional<PeriodChoice> period;
  std::optional<std::string> direction;  // "In", "Out" or "InOut"
  std::optional<std::string> variant;    // "Detailed" or "Summary"
  std::optional<std::string> search;  // Windows-1252, as the log holds names
  bool partial = false;
  bool chart = false;
  std::optional<std::string> notLastingSeconds;  // as typed: the request checks it
  std::optional<std::string> rings;
  bool unanswered = false;
  std::optional<LineChoice> lines;
  std::optional<std::int32_t> windowDays;  // report 9
  bool dtmf = false;
  std::optional<std::string> history;  // the history of this number (Windows-1252)
  std::optional<CivilDate> today;
  // --paper; without it the page of the printer of --print, else US Letter.
  std::optional<PageSetup> paper;

  ReportOutputs outputs;
};

// Throws UsageError. With no output named the text goes to standard output.
ReportOptions ParseReportOptions(const std::vector<std::string>& args);

// The report kind of --report: 1 to 9 or its name; nullopt for anything else.
std::optional<std::int16_t> ReportKindOf(std::string_view text);

// The date of a "mm/dd/yyyy" caption when it is a real calendar day; nullopt
// for anything else (a stored setting that is garbled, a blank).
std::optional<CivilDate> StrictCaptionDate(std::string_view text);

}  // namespace cw::cli
