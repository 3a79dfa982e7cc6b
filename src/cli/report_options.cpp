#include "cli/report_options.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "cli/argument_text.h"
#include "cli/common_options.h"
#include "data/line_filter.h"
#include "support/date_format.h"
#include "support/file_helpers.h"
#include "support/runtime_error.h"
#include "support/text.h"
#include "support/whole_numbers.h"

namespace cw::cli {

namespace {

// The abandoned-call thresholds are compared as 32-bit whole numbers.
constexpr std::int64_t kMaxThreshold = 2147483647;

constexpr OptionRule kReport{"--report", "KIND", ValueKind::kText,
                             "1 daily, 2 line-usage, 3 busy, 4 abandoned, 5 name,\n"
                             "6 number, 7 history, 8 line, 9 callbacks"};
constexpr OptionRule kFrom{"--from", "DATE", ValueKind::kText,
                           "first day of the period, m/d/yyyy or yyyy-mm-dd (default:\n"
                           "the setting \"FromDate\")"};
constexpr OptionRule kTo{"--to", "DATE", ValueKind::kText,
                         "last day (default: the setting \"ToDate\", else today)"};
constexpr OptionRule kPeriod{"--period", "P", ValueKind::kText,
                             "today, week (Sunday to --to), month (the 1st to today), all\n"
                             "(the whole log), or a closed period before today: yesterday,\n"
                             "last-week (Sunday to Saturday), last-month, last-year"};
constexpr OptionRule kDirection{"--direction", "D", ValueKind::kText,
                                "In, Out or InOut (default: the setting \"CallType\", else In)"};
constexpr OptionRule kVariant{"--variant", "V", ValueKind::kText,
                              "Detailed (default) or Summary: the all-lines-busy report"};
constexpr OptionRule kSearch{"--search", "TEXT", ValueKind::kText,
                             "the name (report 5) or number (report 6) to look for; exact\n"
                             "numbers may be listed separated by \",\"; blanks, \"(\", \")\"\n"
                             "and \"-\" in a number are ignored, as in the log"};
constexpr OptionRule kPartial{"--partial", "", ValueKind::kNone, "match a part of the name or number"};
constexpr OptionRule kChart{"--chart", "", ValueKind::kNone,
                            "add the bar chart (reports 1, 2, 3 Summary, 9); on report 7\n"
                            "the condensed summary, one row per caller"};
constexpr OptionRule kNotLasting{"--not-lasting", "SECONDS", ValueKind::kText,
                                 "abandoned calls: shorter than SECONDS (0 to 2147483647)"};
constexpr OptionRule kRings{"--rings", "N", ValueKind::kText,
                            "abandoned calls: that rang at most N times (In only;\n"
                            "0 to 2147483647)"};
constexpr OptionRule kUnanswered{"--unanswered", "", ValueKind::kNone,
                                 "abandoned calls: unanswered ones only (In only)"};
constexpr OptionRule kWindow{"--window", "DAYS", ValueKind::kWhole,
                             "report 9: a missed call counts as returned when called\n"
                             "back within DAYS days, {range} (default 7)",
                             1, 365};
constexpr OptionRule kLines{"--lines", "LIST", ValueKind::kText,
                            "report 8: the lines to list, e.g. 2 or 1,3-5, or all; each\n"
                            "from 1 to the logging program's active line count"};
constexpr OptionRule kDtmf{"--dtmf", "", ValueKind::kNone,
                           "show the touch-tone digits (also when the setting \"DTMF\" is on)"};
constexpr OptionRule kHistory{"--history", "NUMBER", ValueKind::kText,
                              "the in-and-out history of one number over the whole log, as\n"
                              "the logging program asks for it (takes no other request option)"};
constexpr OptionRule kSpool{"--spool", "FILE", ValueKind::kText,
                            "keep the report's spool file (422-byte records); see\n"
                            "cwreport dump and cwreport export"};
constexpr OptionRule kCsv{"--csv", "FILE|-", ValueKind::kText,
                          "the report's data as CSV (UTF-8, CR LF, quoted as RFC 4180):\n"
                          "a header row, then a row per call of a listing or per row of\n"
                          "an analysis's tables, their totals rows marked \"total\"; - is\n"
                          "standard output"};
constexpr OptionRule kCsvSeparator{"--csv-separator", "C", ValueKind::kText,
                                   "with --csv: the field separator, one character (default\n"
                                   "\",\"; \";\" where the comma is the decimal mark; \"tab\")"};
constexpr OptionRule kPrint{"--print", "PRINTER", ValueKind::kOptional,
                            "print on PRINTER (default: the system's default printer),\n"
                            "no dialog; a printer that is not there or fails is an\n"
                            "error (exit status 1)"};
constexpr OptionRule kCopies{"--copies", "N", ValueKind::kWhole,
                             "with --print: N copies ({range}), each the whole page\n"
                             "range in turn",
                             1, 32767};
constexpr OptionRule kFromPage{"--from-page", "N", ValueKind::kWhole,
                               "with --print: the first page to print, {range} (default 1)", 1, 32767};
constexpr OptionRule kToPage{"--to-page", "N", ValueKind::kWhole,
                             "with --print: the last page, {range} (default the last);\n"
                             "pages the document does not have are not printed",
                             1, 32767};
constexpr OptionRule kReportToday{"--today", "DATE", ValueKind::kText,
                                  "the date to take for today (default: the system clock)"};
constexpr OptionRule kReportPaper{"--paper", "P", ValueKind::kText,
                                  "letter or a4: the page the report is laid out on (default:\n"
                                  "the paper of the --print printer, else letter)"};

constexpr std::array<const OptionRule*, 22> kRequestOptions = {
    &option::kEdition, &option::kSettings, &option::kLog,   &option::kPath, &kReport,  &kFrom,
    &kTo,              &kPeriod,           &kDirection,     &kVariant,      &kSearch,  &kPartial,
    &kChart,           &kNotLasting,       &kRings,         &kUnanswered,   &kLines,   &kWindow,
    &kDtmf,            &kHistory,          &kReportToday,   &kReportPaper,
};

constexpr std::array<const OptionRule*, 12> kOutputOptions = {
    &option::kText, &option::kEncoding, &option::kPdf, &option::kPng,  &option::kDpi,  &kCsv,
    &kCsvSeparator, &kSpool,            &kPrint,       &kCopies,       &kFromPage,     &kToPage,
};

// Every option of a report request, for the parser.
std::vector<const OptionRule*> AllOptions() {
  std::vector<const OptionRule*> all(kRequestOptions.begin(), kRequestOptions.end());
  all.insert(all.end(), kOutputOptions.begin(), kOutputOptions.end());
  return all;
}

// The form checks that a threshold is digits; a number of digits too large
// for the comparison is refused here, before it overflows there.
std::string Threshold(const OptionRule& rule, const std::string& text) {
  const std::string_view digits = Trim(text);
  if (!digits.empty() && IsAllDigits(digits)) {
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (error != std::errc() || end != digits.data() + digits.size() || value > kMaxThreshold) {
      throw UsageError{std::string(rule.name) + " needs a whole number from 0 to " + std::to_string(kMaxThreshold) +
                       ", not \"" + text + "\""};
    }
  }
  return text;
}

LineChoice ParseLines(const std::string& list) {
  if (LowerCase(Trim(list)) == "all") return LineChoice{true, {}};
  const auto bad = [&](std::string why) {
    return UsageError{"--lines needs line numbers such as 2, 1,3-5 or all, not \"" + list + "\"" + why};
  };
  // The form's filter drops empty items; typed here, one is a slip.
  for (std::size_t start = 0;;) {
    const std::size_t comma = list.find(',', start);
    if (Trim(std::string_view(list).substr(start, comma == std::string::npos ? comma : comma - start)).empty()) {
      throw bad(": an empty item");
    }
    if (comma == std::string::npos) break;
    start = comma + 1;
  }
  std::string expanded;
  try {
    expanded = ExpandLineFilter(list);
  } catch (const RuntimeError& error) {
    throw bad(" (" + error.Description() + ")");
  }
  LineChoice choice;
  std::string_view rest = expanded;
  while (!rest.empty()) {
    const std::size_t comma = rest.find(',');
    const std::string_view item = Trim(rest.substr(0, comma));
    rest = comma == std::string_view::npos ? std::string_view{} : rest.substr(comma + 1);
    if (item.empty()) continue;
    try {
      const std::int16_t line = TextToInt16(item);
      if (line < 1) throw bad(": line numbers start at 1");
      choice.lines.push_back(line);
    } catch (const RuntimeError&) {
      throw bad("");
    }
  }
  if (choice.lines.empty()) throw bad(": it names no line");
  return choice;
}

// One character that can stand between CSV fields: not a quote or a line
// end, which the quoting rules give their own meaning.
char SeparatorOf(const std::string& typed) {
  if (LowerCase(typed) == "tab" || typed == "\\t") return '\t';
  if (typed.size() != 1 || typed[0] == '"' || typed[0] == '\r' || typed[0] == '\n') {
    throw UsageError{"--csv-separator needs one character other than a quote, such as ; or tab, not \"" + typed +
                     "\""};
  }
  return typed[0];
}

PeriodChoice PeriodOf(const std::string& typed) {
  static constexpr std::pair<std::string_view, PeriodChoice> kNames[] = {
      {"today", PeriodChoice::kToday},         {"week", PeriodChoice::kWeek},
      {"month", PeriodChoice::kMonth},         {"all", PeriodChoice::kAll},
      {"yesterday", PeriodChoice::kYesterday}, {"last-week", PeriodChoice::kLastWeek},
      {"last-month", PeriodChoice::kLastMonth}, {"last-year", PeriodChoice::kLastYear},
  };
  const std::string text = LowerCase(typed);
  for (const auto& [name, period] : kNames) {
    if (text == name) return period;
  }
  throw UsageError{"--period must be today, week, month, all, yesterday, last-week, last-month or last-year, not \"" +
                   typed + "\""};
}

std::string DirectionOf(const std::string& typed) {
  const std::string text = LowerCase(typed);
  if (text == "in") return "In";
  if (text == "out") return "Out";
  if (text == "inout") return "InOut";
  throw UsageError{"--direction must be In, Out or InOut, not \"" + typed + "\""};
}

// A date option as the form's caption; blanks go on as typed.
std::string CaptionOf(const OptionRule& rule, const std::string& text) {
  if (Trim(text).empty()) return text;
  return FormatDate(DateOf(rule.name, text), "mm/dd/yyyy");
}

}  // namespace

std::string ReportHelp() {
  return "usage: cwreport [REQUEST OPTIONS] [OUTPUTS]     run one report request\n"
         "       cwreport log-summary [OPTIONS]           the call log's oldest date and calls per line\n"
         "       cwreport dump SPOOL                      print a spool file's records, one per line\n"
         "       cwreport export SPOOL [OUTPUTS]          replay a kept spool\n"
         "       cwreport import [OPTIONS]                append a PBX's call records to the call log\n"
         "       cwreport help [SUBCOMMAND]               this text, or a subcommand's\n"
         "       cwreport --version                       the program's version\n"
         "\n"
         "Request options:\n" +
         OptionHelp(kRequestOptions) +
         "\n"
         "Every option takes its value as --name VALUE or --name=VALUE. Dates are\n"
         "m/d/yyyy or yyyy-mm-dd; a date that is no calendar day, or a From after the\n"
         "To, is refused. Names and numbers may hold any character of Windows-1252,\n"
         "the log's character set.\n"
         "\n"
         "Outputs (any number; with none, --text -):\n" +
         OptionHelp(kOutputOptions) +
         "\n"
         "Every output appears under its name only when it is complete; a request that\n"
         "ends in an error leaves none. A report that yields several documents writes\n"
         "the second as NAME-2.EXT (DIR-2 for images), and so on.\n"
         "\n"
         "The report's messages go to standard error as \"TITLE: TEXT\", followed where\n"
         "the desktop's advice does not fit by what to do on the command line; a\n"
         "progress bar is shown there during long work when it is a terminal.\n"
         "\n"
         "Exit status: 0 a document was produced, 2 the request was refused (missing\n"
         "log, date, filter, search text or line; bad usage), 1 an error (nothing is\n"
         "written), 3 the document was produced, but records raised errors on the way\n"
         "(each error is shown once; a record dated with no calendar date is one).\n";
}

std::optional<std::int16_t> ReportKindOf(std::string_view text) {
  static constexpr std::pair<std::string_view, std::int16_t> kNames[] = {
      {"daily", kind::kDailyCallStatistics}, {"line-usage", kind::kLineUsageStatistics},
      {"busy", kind::kAllLinesBusy},         {"abandoned", kind::kAbandonedCalls},
      {"name", kind::kByName},               {"number", kind::kByTelNumber},
      {"history", kind::kCallHistory},       {"line", kind::kByLineNumber},
      {"callbacks", kind::kCallBacks},
  };
  if (text.size() == 1 && text[0] >= '1' && text[0] <= '9') return static_cast<std::int16_t>(text[0] - '0');
  const std::string lower = LowerCase(text);
  for (const auto& [name, value] : kNames) {
    if (lower == name) return value;
  }
  return std::nullopt;
}

std::optional<CivilDate> StrictCaptionDate(std::string_view text) {
  if (text.size() != 10 || text[2] != '/' || text[5] != '/') return std::nullopt;
  for (std::size_t i : {0, 1, 3, 4, 6, 7, 8, 9}) {
    if (text[i] < '0' || text[i] > '9') return std::nullopt;
  }
  try {
    const CivilDate date = ParseCaptionDate(text);
    // Day and month must name a real day: DateSerial would roll 02/30 over.
    if (FormatDate(date, "mm/dd/yyyy") != text) return std::nullopt;
    return date;
  } catch (const RuntimeError&) {
    return std::nullopt;
  }
}

std::optional<std::pair<CivilDate, CivilDate>> ClosedPeriod(PeriodChoice period, CivilDate today) {
  switch (period) {
    case PeriodChoice::kYesterday:
      return std::pair{today.AddDays(-1), today.AddDays(-1)};
    case PeriodChoice::kLastWeek: {
      const CivilDate sunday = today.AddDays(-(today.Weekday() - 1) - 7);
      return std::pair{sunday, sunday.AddDays(6)};
    }
    case PeriodChoice::kLastMonth: {
      const CivilDate first = CivilDate::FromYmd(today.Year(), today.Month(), 1);
      const CivilDate last = first.AddDays(-1);
      return std::pair{CivilDate::FromYmd(last.Year(), last.Month(), 1), last};
    }
    case PeriodChoice::kLastYear:
      return std::pair{CivilDate::FromYmd(today.Year() - 1, 1, 1), CivilDate::FromYmd(today.Year() - 1, 12, 31)};
    default:
      return std::nullopt;
  }
}

ReportOptions ParseReportOptions(const std::vector<std::string>& arguments) {
  const std::vector<const OptionRule*> table = AllOptions();
  const ParsedArguments parsed = ParseArguments(table, arguments, 0);
  ReportOptions options;
  if (parsed.help) {
    options.help = true;
    return options;
  }
  ReportOutputs& outputs = options.outputs;
  bool requestShaped = false;  // an option that --history does not combine with
  for (const GivenOption& given : parsed.options) {
    const OptionRule* rule = given.rule;
    const std::string& value = given.value;
    const auto is = [rule](const OptionRule& other) { return rule == &other; };
    if (rule != &option::kEdition && rule != &option::kSettings && rule != &option::kLog &&
        rule != &option::kPath && rule != &kHistory && rule != &kReportToday && rule != &kReportPaper &&
        std::find(kOutputOptions.begin(), kOutputOptions.end(), rule) == kOutputOptions.end()) {
      requestShaped = true;
    }
    if (is(option::kEdition)) {
      options.edition = EditionOf(value);
    } else if (is(option::kSettings)) {
      options.settingsFile = value;
    } else if (is(option::kLog)) {
      options.log = value;
    } else if (is(option::kPath)) {
      options.path = value;
    } else if (is(kReport)) {
      const std::optional<std::int16_t> kind = ReportKindOf(value);
      if (!kind) {
        throw UsageError{"--report must be 1 to 9 or daily, line-usage, busy, abandoned, name, number, history, "
                         "line, callbacks; not \"" + value + "\""};
      }
      options.kind = *kind;
    } else if (is(kFrom)) {
      options.from = CaptionOf(kFrom, value);
    } else if (is(kTo)) {
      options.to = CaptionOf(kTo, value);
    } else if (is(kPeriod)) {
      options.period = PeriodOf(value);
    } else if (is(kDirection)) {
      options.direction = DirectionOf(value);
    } else if (is(kVariant)) {
      const std::string text = LowerCase(value);
      if (text != "detailed" && text != "summary") {
        throw UsageError{"--variant must be Detailed or Summary, not \"" + value + "\""};
      }
      options.variant = text == "detailed" ? "Detailed" : "Summary";
    } else if (is(kSearch)) {
      options.search = ArgumentToWin1252(kSearch.name, value);
    } else if (is(kPartial)) {
      options.partial = true;
    } else if (is(kChart)) {
      options.chart = true;
    } else if (is(kNotLasting)) {
      options.notLastingSeconds = Threshold(kNotLasting, value);
    } else if (is(kRings)) {
      options.rings = Threshold(kRings, value);
    } else if (is(kUnanswered)) {
      options.unanswered = true;
    } else if (is(kLines)) {
      options.lines = ParseLines(ArgumentToWin1252(kLines.name, value));
    } else if (is(kWindow)) {
      options.windowDays = static_cast<std::int32_t>(given.number);
    } else if (is(kDtmf)) {
      options.dtmf = true;  // the history takes the stored setting
    } else if (is(kHistory)) {
      if (Trim(value).empty()) throw UsageError{"--history needs a telephone number"};
      options.history = ArgumentToWin1252(kHistory.name, value);
    } else if (is(kReportToday)) {
      options.today = DateOf(kReportToday.name, value);
    } else if (is(kReportPaper)) {
      options.paper = PaperOf(value);
    } else if (is(option::kText)) {
      outputs.text = value;
    } else if (is(option::kEncoding)) {
      outputs.encoding = EncodingOf(value);
    } else if (is(option::kPdf)) {
      outputs.pdf = value;
    } else if (is(option::kPng)) {
      outputs.png = value;
    } else if (is(option::kDpi)) {
      outputs.dpi = static_cast<int>(given.number);
    } else if (is(kCsv)) {
      outputs.csv = value;
    } else if (is(kCsvSeparator)) {
      outputs.csvSeparator = SeparatorOf(value);
    } else if (is(kSpool)) {
      outputs.spool = value;
    } else if (is(kPrint)) {
      outputs.print = true;
      outputs.printer = value;
    } else if (is(kCopies)) {
      outputs.copies = static_cast<std::int16_t>(given.number);
    } else if (is(kFromPage)) {
      outputs.fromPage = static_cast<std::int16_t>(given.number);
    } else if (is(kToPage)) {
      outputs.toPage = static_cast<std::int16_t>(given.number);
    }
  }

  if (options.history && requestShaped) {
    throw UsageError{
        "--history makes its own request: it takes no --report, period, direction, search, filter or --dtmf"};
  }
  if (!options.history && !options.kind) throw UsageError{"choose a report: --report KIND or --history NUMBER"};
  if (options.period && (options.from || (options.to && *options.period != PeriodChoice::kWeek))) {
    throw UsageError{"--period sets the dates: give it alone, or --to with --period week"};
  }
  if (options.from && options.to) {
    const std::optional<CivilDate> from = StrictCaptionDate(*options.from);
    const std::optional<CivilDate> to = StrictCaptionDate(*options.to);
    if (from && to && *from > *to) {
      throw UsageError{"--from " + *options.from + " comes after --to " + *options.to};
    }
  }
  if (parsed.Find(kCsvSeparator) != nullptr && !outputs.csv) throw UsageError{"--csv-separator applies to --csv only"};
  for (const auto* path : {&outputs.text, &outputs.pdf, &outputs.png, &outputs.spool, &outputs.csv}) {
    if (*path && (*path)->empty()) throw UsageError{"an output needs a file name"};
  }
  if (outputs.dpi && !outputs.png) throw UsageError{"--dpi applies to --png only"};
  if ((outputs.copies || outputs.fromPage || outputs.toPage) && !outputs.print) {
    throw UsageError{"--copies, --from-page and --to-page apply to --print only"};
  }
  if (outputs.fromPage && outputs.toPage && *outputs.fromPage > *outputs.toPage) {
    throw UsageError{"--from-page " + std::to_string(*outputs.fromPage) + " comes after --to-page " +
                     std::to_string(*outputs.toPage)};
  }
  if (!outputs.text && !outputs.pdf && !outputs.png && !outputs.spool && !outputs.csv && !outputs.print) {
    outputs.text = "-";
  }
  return options;
}

}  // namespace cw::cli
