#include "cli/report_options.h"

#include <charconv>
#include <utility>

#include "data/line_filter.h"
#include "platform/png_page_device.h"
#include "support/date_format.h"
#include "support/runtime_error.h"
#include "support/text.h"
#include "support/whole_numbers.h"

namespace cw::cli {

const std::string_view kReportHelp =
    "usage: cwreport [REQUEST OPTIONS] [OUTPUTS]     run one report request\n"
    "       cwreport log-summary [--help]            the call log's oldest date and calls per line\n"
    "       cwreport dump SPOOL                      print a spool file's records, one per line\n"
    "       cwreport export SPOOL [--text F] [--pdf F] [--png DIR]   replay a kept spool\n"
    "\n"
    "Request options:\n"
    "  --edition NAME        \"Vorn Ringtally\" (default) or \"Callwarden MultiLine\": the\n"
    "                        application name of the settings and the logging INI file\n"
    "  --settings FILE       the per-user settings file (default: $CW_SETTINGS, else\n"
    "                        $XDG_CONFIG_HOME/callwarden-reports/<edition>.ini)\n"
    "  --log FILE            the call log (overrides the setting \"Logs\")\n"
    "  --path DIR            the logging program's folder: its INI file, BusyLines.log\n"
    "                        and the chart bitmap (overrides the setting \"Path\")\n"
    "  --report KIND         1 daily, 2 line-usage, 3 busy, 4 abandoned, 5 name,\n"
    "                        6 number, 7 history, 8 line\n"
    "  --from mm/dd/yyyy     first day of the period (default: the setting \"FromDate\")\n"
    "  --to mm/dd/yyyy       last day (default: the setting \"ToDate\", else today)\n"
    "  --period P            today, week (Sunday to --to), month or all (the whole log)\n"
    "  --direction D         In, Out or InOut (default: the setting \"CallType\", else In)\n"
    "  --variant V           Detailed (default) or Summary: the all-lines-busy report\n"
    "  --search TEXT         the name (report 5) or number (report 6) to look for; exact\n"
    "                        numbers may be listed separated by \",\"\n"
    "  --partial             match a part of the name or number\n"
    "  --chart               add the bar chart (reports 1, 2, 3 Summary); on report 7\n"
    "                        the condensed summary, one row per caller\n"
    "  --not-lasting SECONDS abandoned calls: shorter than SECONDS\n"
    "  --rings N             abandoned calls: that rang at most N times (In only)\n"
    "  --unanswered          abandoned calls: unanswered ones only (In only)\n"
    "  --lines LIST          report 8: the lines to list, e.g. 2 or 1,3-5, or all\n"
    "  --dtmf                show the touch-tone digits (also when the setting \"DTMF\" is on)\n"
    "  --history NUMBER      the in-and-out history of one number over the whole log, as\n"
    "                        the logging program asks for it (takes no other request option)\n"
    "  --today mm/dd/yyyy    the date to take for today (default: the system clock)\n"
    "  --paper P             letter or a4: the page the report is laid out on (default:\n"
    "                        the paper of the --print printer, else letter)\n"
    "\n"
    "Outputs (any number; with none, --text -):\n"
    "  --text FILE|-         the text export (Windows-1252, CR LF); - is standard output\n"
    "  --pdf FILE            a PDF with the report's fonts embedded\n"
    "  --png DIR             one image per page, DIR/page-0001.png, ... (--dpi N, 10 to\n"
    "                        600, default 150)\n"
    "  --spool FILE          keep the report's spool file (422-byte records); see\n"
    "                        cwreport dump and cwreport export\n"
    "  --print [PRINTER]     print on PRINTER (default: the system's default printer),\n"
    "                        no dialog; a printer that is not there or fails is an\n"
    "                        error (exit status 1)\n"
    "  --copies N            with --print: N copies, each the whole page range in turn\n"
    "  --from-page N         with --print: the first page to print (default 1)\n"
    "  --to-page N           with --print: the last page (default the last); pages the\n"
    "                        document does not have are not printed\n"
    "\n"
    "Every output appears under its name only when it is complete; a request that\n"
    "ends in an error leaves none. A report that yields several documents writes\n"
    "the second as NAME-2.EXT (DIR-2 for images), and so on.\n"
    "\n"
    "The report's messages go to standard error as \"TITLE: TEXT\"; a progress bar\n"
    "is shown there during long work when it is a terminal.\n"
    "\n"
    "Exit status: 0 a document was produced, 2 the request was refused (missing\n"
    "log, date, filter, search text or line; bad usage), 1 an error.\n"
    "3 the document was produced, but records raised errors on the way (each\n"
    "error is shown once; a record dated with no calendar date is one).\n";

namespace {

// Option words are ASCII; the values echoed in a usage error are the
// terminal's text, whose other bytes must stay as they are.
std::string LowerAscii(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

std::int16_t PositiveInt16(std::string_view name, const std::string& text) {
  std::int32_t value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size() || value < 1 || value > 32767) {
    throw UsageError{std::string(name) + " needs a whole number from 1 to 32767, not \"" + text + "\""};
  }
  return static_cast<std::int16_t>(value);
}

LineChoice ParseLines(const std::string& list) {
  if (LowerAscii(Trim(list)) == "all") return LineChoice{true, {}};
  const auto bad = [&](std::string why) {
    return UsageError{"--lines needs line numbers such as 2, 1,3-5 or all, not \"" + list + "\"" + why};
  };
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

}  // namespace

std::optional<std::int16_t> ReportKindOf(std::string_view text) {
  static constexpr std::pair<std::string_view, std::int16_t> kNames[] = {
      {"daily", kind::kDailyCallStatistics}, {"line-usage", kind::kLineUsageStatistics},
      {"busy", kind::kAllLinesBusy},         {"abandoned", kind::kAbandonedCalls},
      {"name", kind::kByName},               {"number", kind::kByTelNumber},
      {"history", kind::kCallHistory},       {"line", kind::kByLineNumber},
  };
  if (text.size() == 1 && text[0] >= '1' && text[0] <= '8') return static_cast<std::int16_t>(text[0] - '0');
  const std::string lower = LowerAscii(text);
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

ReportOptions ParseReportOptions(const std::vector<std::string>& arguments) {
  ReportOptions options;
  bool requestShaped = false;  // an option that --history does not combine with
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view argument = arguments[i];
    if (argument == "--help" || argument == "-h") {
      options.help = true;
      return options;
    }
    if (!argument.starts_with("--")) throw UsageError{"unexpected argument \"" + std::string(argument) + "\""};
    // --name VALUE or --name=VALUE.
    std::string_view name = argument;
    std::optional<std::string> value;
    if (const std::size_t equals = argument.find('='); equals != std::string_view::npos) {
      name = argument.substr(0, equals);
      value = std::string(argument.substr(equals + 1));
    }
    const auto takeValue = [&]() -> std::string {
      if (value) return *value;
      if (i + 1 >= arguments.size()) throw UsageError{std::string(name) + " needs a value"};
      return arguments[++i];
    };
    const auto once = [&](auto& slot, auto parsed) {
      if (slot) throw UsageError{std::string(name) + " given twice"};
      slot = std::move(parsed);
    };
    const auto flag = [&](bool& slot) {
      if (value) throw UsageError{std::string(name) + " takes no value"};
      slot = true;
    };
    const auto date = [&](std::optional<std::string>& slot) {
      // Passed on as the form's caption; the request converts it.
      once(slot, takeValue());
      requestShaped = true;
    };

    if (name == "--edition") {
      const std::string edition = takeValue();
      if (edition != kEditionRingtally && edition != kEditionCallwarden) {
        throw UsageError{"--edition must be \"" + std::string(kEditionRingtally) + "\" or \"" +
                         std::string(kEditionCallwarden) + "\", not \"" + edition + "\""};
      }
      options.edition = edition;
    } else if (name == "--settings") {
      once(options.settingsFile, takeValue());
    } else if (name == "--log") {
      once(options.log, takeValue());
    } else if (name == "--path") {
      once(options.path, takeValue());
    } else if (name == "--report") {
      const std::string text = takeValue();
      const std::optional<std::int16_t> kind = ReportKindOf(text);
      if (!kind) {
        throw UsageError{"--report must be 1 to 8 or daily, line-usage, busy, abandoned, name, number, history, "
                         "line; not \"" + text + "\""};
      }
      once(options.kind, *kind);
      requestShaped = true;
    } else if (name == "--from") {
      date(options.from);
    } else if (name == "--to") {
      date(options.to);
    } else if (name == "--period") {
      const std::string text = LowerAscii(takeValue());
      TimePeriod period;
      if (text == "today") {
        period = TimePeriod::kToday;
      } else if (text == "week") {
        period = TimePeriod::kCurrentWeek;
      } else if (text == "month") {
        period = TimePeriod::kCurrentMonth;
      } else if (text == "all") {
        period = TimePeriod::kAllLogEntries;
      } else {
        throw UsageError{"--period must be today, week, month or all, not \"" + text + "\""};
      }
      once(options.period, period);
      requestShaped = true;
    } else if (name == "--direction") {
      const std::string text = LowerAscii(takeValue());
      std::string direction;
      if (text == "in") {
        direction = "In";
      } else if (text == "out") {
        direction = "Out";
      } else if (text == "inout") {
        direction = "InOut";
      } else {
        throw UsageError{"--direction must be In, Out or InOut, not \"" + text + "\""};
      }
      once(options.direction, direction);
      requestShaped = true;
    } else if (name == "--variant") {
      const std::string text = LowerAscii(takeValue());
      if (text != "detailed" && text != "summary") {
        throw UsageError{"--variant must be Detailed or Summary, not \"" + text + "\""};
      }
      once(options.variant, std::string(text == "detailed" ? "Detailed" : "Summary"));
      requestShaped = true;
    } else if (name == "--search") {
      once(options.search, takeValue());
      requestShaped = true;
    } else if (name == "--partial") {
      flag(options.partial);
      requestShaped = true;
    } else if (name == "--chart") {
      flag(options.chart);
      requestShaped = true;
    } else if (name == "--not-lasting") {
      once(options.notLastingSeconds, takeValue());
      requestShaped = true;
    } else if (name == "--rings") {
      once(options.rings, takeValue());
      requestShaped = true;
    } else if (name == "--unanswered") {
      flag(options.unanswered);
      requestShaped = true;
    } else if (name == "--lines") {
      once(options.lines, ParseLines(takeValue()));
      requestShaped = true;
    } else if (name == "--dtmf") {
      flag(options.dtmf);
      requestShaped = true;  // the history takes the stored setting
    } else if (name == "--history") {
      const std::string number = takeValue();
      if (Trim(number).empty()) throw UsageError{"--history needs a telephone number"};
      once(options.history, number);
    } else if (name == "--today") {
      const std::string text = takeValue();
      const std::optional<CivilDate> today = StrictCaptionDate(text);
      if (!today) throw UsageError{"--today needs a date mm/dd/yyyy, not \"" + text + "\""};
      once(options.today, *today);
    } else if (name == "--paper") {
      const std::string paper = LowerAscii(takeValue());
      if (paper == "letter") {
        once(options.paper, PageSetup{12240, 15840, 1});
      } else if (paper == "a4") {
        once(options.paper, PageSetup{11906, 16838, 1});  // 210 x 297 mm
      } else {
        throw UsageError{"--paper must be letter or a4, not \"" + paper + "\""};
      }
    } else if (name == "--text") {
      once(options.outputs.text, takeValue());
    } else if (name == "--pdf") {
      once(options.outputs.pdf, takeValue());
    } else if (name == "--png") {
      once(options.outputs.png, takeValue());
    } else if (name == "--spool") {
      once(options.outputs.spool, takeValue());
    } else if (name == "--dpi") {
      const std::string text = takeValue();
      const std::int16_t dpi = PositiveInt16(name, text);
      if (dpi < PngPageDevice::kMinDpi || dpi > PngPageDevice::kMaxDpi) {
        throw UsageError{"--dpi must be from " + std::to_string(PngPageDevice::kMinDpi) + " to " +
                         std::to_string(PngPageDevice::kMaxDpi) + ", not \"" + text + "\""};
      }
      once(options.outputs.dpi, static_cast<int>(dpi));
    } else if (name == "--print") {
      if (options.outputs.print) throw UsageError{"--print given twice"};
      options.outputs.print = true;
      // The printer is optional: the next argument names it unless it is an option.
      if (value) {
        options.outputs.printer = *value;
      } else if (i + 1 < arguments.size() && !arguments[i + 1].starts_with("--")) {
        options.outputs.printer = arguments[++i];
      }
    } else if (name == "--copies") {
      once(options.outputs.copies, PositiveInt16(name, takeValue()));
    } else if (name == "--from-page") {
      once(options.outputs.fromPage, PositiveInt16(name, takeValue()));
    } else if (name == "--to-page") {
      once(options.outputs.toPage, PositiveInt16(name, takeValue()));
    } else {
      throw UsageError{"unknown option " + std::string(argument)};
    }
  }

  ReportOutputs& outputs = options.outputs;
  if (options.history && requestShaped) {
    throw UsageError{
        "--history makes its own request: it takes no --report, period, direction, search, filter or --dtmf"};
  }
  if (!options.history && !options.kind) throw UsageError{"choose a report: --report KIND or --history NUMBER"};
  if (options.period && (options.from || (options.to && *options.period != TimePeriod::kCurrentWeek))) {
    throw UsageError{"--period sets the dates: give it alone, or --to with --period week"};
  }
  for (const auto* path : {&outputs.text, &outputs.pdf, &outputs.png, &outputs.spool}) {
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
  if (!outputs.text && !outputs.pdf && !outputs.png && !outputs.spool && !outputs.print) outputs.text = "-";
  return options;
}

}  // namespace cw::cli
