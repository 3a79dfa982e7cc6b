#include "cli/report_command.h"

#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <limits>
#include <memory>
#include <optional>
#include <utility>

#include "cli/cli_report_host.h"
#include "cli/local_clock.h"
#include "cli/output_checks.h"
#include "cli/report_options.h"
#include "cli/settings_file_check.h"
#include "cli/report_settings.h"
#include "cli/system_printer.h"
#include "data/oldest_log_date.h"
#include "platform/headless_application.h"
#include "platform/qt_text_metrics.h"
#include "reports/form_error_box.h"
#include "reports/get_history.h"
#include "reports/report_form.h"
#include "settings/ini_settings_store.h"
#include "settings/settings_keys.h"
#include "settings/logging_ini.h"
#include "settings/settings_values.h"
#include "settings/startup.h"
#include "support/date_format.h"
#include "support/runtime_error.h"
#include "support/text.h"

namespace cw::cli {

namespace {

// Fonts and page devices need a Qt application; the bar chart draws with
// widgets and needs the widgets' one. Only a request that can draw a chart
// pays for that.
bool MayDrawChart(const ReportOptions& options) {
  if (!options.chart || !options.kind) return false;
  return *options.kind == kind::kDailyCallStatistics || *options.kind == kind::kLineUsageStatistics ||
         *options.kind == kind::kAllLinesBusy || *options.kind == kind::kCallBacks;
}

std::string TemporaryFolder() {
  const char* folder = std::getenv("TMPDIR");
  return folder != nullptr && *folder != '\0' ? folder : "/tmp";
}

std::int16_t ActiveLines(const DataLocations& data) {
  if (data.activeLines < 0 || data.activeLines > 32767) {
    throw RuntimeError(err::kOverflow, "ActiveLines " + std::to_string(data.activeLines) + " in " + data.iniPath +
                                           " is not a number of lines");
  }
  return static_cast<std::int16_t>(data.activeLines);
}

// The mm/dd/yyyy caption of a stored date, checked: a garbled value would
// end the request in a conversion error that names neither the file nor the
// key. A blank is passed on (the form refuses a blank From; a blank To is
// today).
std::string StoredDate(const std::string& value, const SettingKey& key, std::string_view option,
                       const IniSettingsStore& store, std::string_view edition) {
  if (Trim(value).empty() || StrictCaptionDate(value)) return value;
  const std::string file = store.FileFor(edition);
  throw UsageError{"the setting \"" + std::string(key.name) + "\" in " + file + " is \"" + value +
                   "\", not a date mm/dd/yyyy: give " + std::string(option) + " or correct the setting"};
}

std::string Caption(CivilDate date) { return FormatDate(date, "mm/dd/yyyy"); }

// The request as the form would hold it: the options given, and for the rest
// what the form restores from the settings (period, direction, touch-tone
// digits). A stored value is read only when no option overrides it, so a
// broken setting does not stand in the way of a request that does not need
// it. Throws RuntimeError; `procedure` names the form procedure whose work
// failed. Throws UsageError for dates that cannot make a period and for
// lines beyond the active line count.
void FillRequest(ReportRequest& request, const ReportOptions& options, const ReportEnvironment& environment,
                 IniSettingsStore& store, const ErrorBoxOutput& errors, CivilDate today, std::string& procedure) {
  const auto stored = [&](const SettingKey& key) {
    return GetOptions(store, environment.edition, kReportsSection, key.name, key.defaultValue, errors);
  };
  procedure = "Form_Load";
  request.kind = *options.kind;
  request.dtmf = options.dtmf || SettingIsTrue(stored(setting::kDtmf));
  request.columns = DetailColumnPositions(request.dtmf);
  request.direction = options.direction ? *options.direction : stored(setting::kCallType);

  const std::optional<std::pair<CivilDate, CivilDate>> closed =
      options.period ? ClosedPeriod(*options.period, today) : std::nullopt;
  const bool periodSetsBoth = options.period && *options.period != PeriodChoice::kWeek;
  if (closed) {
    request.fromDate = Caption(closed->first);
    request.toDate = Caption(closed->second);
  } else {
    // The current week sets From and keeps To; the other periods set both.
    if (options.from) {
      request.fromDate = *options.from;
    } else if (!options.period) {
      request.fromDate = StoredDate(stored(setting::kFromDate), setting::kFromDate, "--from", store,
                                    environment.edition);
    }
    if (options.to) {
      request.toDate = *options.to;
    } else if (!periodSetsBoth) {
      request.toDate = StoredDate(stored(setting::kToDate), setting::kToDate, "--to", store, environment.edition);
      if (request.toDate.empty()) request.toDate = Caption(today);
    }
  }

  if (options.period && !closed) {
    procedure = "oTimePeriod_Click";
    static constexpr TimePeriod kFormPeriod[] = {TimePeriod::kToday, TimePeriod::kCurrentWeek,
                                                 TimePeriod::kCurrentMonth, TimePeriod::kAllLogEntries};
    const TimePeriod period = kFormPeriod[static_cast<int>(*options.period)];
    std::optional<std::string> oldest;
    if (period == TimePeriod::kAllLogEntries) oldest = OldestLogDate(environment.logPath, today);
    const PeriodCaptions captions =
        ApplyTimePeriod(period, today, oldest, PeriodCaptions{request.fromDate, request.toDate});
    request.fromDate = captions.fromDate;
    request.toDate = captions.toDate;
  }
  // A From after the To gives an empty report on the form; typed here it is
  // a slip, named by the option that made it.
  if (options.from || options.to || options.period) {
    const std::optional<CivilDate> from = StrictCaptionDate(request.fromDate);
    const std::optional<CivilDate> to = StrictCaptionDate(request.toDate);
    if (from && to && *from > *to) {
      const std::string fromText = options.from ? "--from " + request.fromDate
                                   : options.period ? "the first day of --period, " + request.fromDate
                                                    : "the setting \"FromDate\" " + request.fromDate;
      const std::string toText = options.to ? "--to " + request.toDate : "the To date " + request.toDate;
      throw UsageError{fromText + " comes after " + toText};
    }
  }

  request.variant = options.variant.value_or("Detailed");
  request.searchText = options.search.value_or("");
  request.partial = options.partial;
  request.chart = options.chart;
  request.abandoned.notLasting = options.notLastingSeconds.has_value();
  request.abandoned.seconds = options.notLastingSeconds.value_or("");
  request.abandoned.ringCount = options.rings.has_value();
  request.abandoned.rings = options.rings.value_or("");
  request.abandoned.unanswered = options.unanswered;
  request.lines = options.lines.value_or(LineChoice{});
  if (options.windowDays) request.callBackWindowDays = *options.windowDays;
  // The form offers the lines 1 to the active count only.
  for (const std::int16_t line : request.lines.lines) {
    if (line > environment.activeLines) {
      throw UsageError{"--lines names line " + std::to_string(line) + ", but the logging program has " +
                       std::to_string(environment.activeLines) + " active lines (ActiveLines in " +
                       (environment.pathFolder.empty() ? std::string("its INI file; no --path or setting \"Path\"")
                                                       : LoggingIniPath(environment.pathFolder, environment.edition)) +
                       "): choose lines 1 to " + std::to_string(environment.activeLines)};
    }
  }
}

// Where the call log was looked for, and what named it, for the advice
// that follows a "Cannot Find the Call Logs File" box.
AdviceContext LogAdvice(const ReportOptions& options, const DataLocations& data, const IniSettingsStore& store) {
  const std::string file = store.FileFor(options.edition);
  if (!data.logs.empty()) {
    return AdviceContext{data.logs, options.log ? "--log" : "the setting \"Logs\" in " + file};
  }
  if (options.log) return AdviceContext{{}, "--log is empty"};
  if (file.empty()) {
    return AdviceContext{{}, "no --log, and no settings file: CW_SETTINGS, XDG_CONFIG_HOME and HOME are unset"};
  }
  return AdviceContext{{}, "no --log, and the setting \"Logs\" in " + file + " is empty"};
}

int ExitStatus(RequestOutcome outcome) {
  switch (outcome) {
    case RequestOutcome::kProduced: return 0;
    case RequestOutcome::kProducedWithErrors: return 3;
    case RequestOutcome::kRefused: return 2;
    case RequestOutcome::kFailed: return 1;
  }
  return 1;
}

int Run(const ReportOptions& options, std::ostream& out, std::ostream& err) {
  const CivilDate today = options.today.value_or(TodayFromClock());
  // Destroyed last: the metrics and page devices below use it.
  const auto application =
      MakeHeadlessApplication(MayDrawChart(options) ? HeadlessKind::kWidgets : HeadlessKind::kGui);

  // The printer is looked up before any work: a wrong name fails at once.
  // The report is laid out on its paper unless --paper says otherwise.
  ReportOutputs outputs = options.outputs;
  PageSetup paper = options.paper.value_or(PageSetup{});
  if (outputs.print) {
    const ChosenPrinter printer = ChoosePrinter(outputs.printer);
    outputs.printer = printer.name;
    if (!options.paper) paper = printer.paper;
  }

  const bool terminal = &err == &std::cerr && ::isatty(STDERR_FILENO) == 1;
  CliReportHost host(std::move(outputs), paper, today, out, err, terminal);
  IniSettingsStore store(options.settingsFile ? SettingsLocation{*options.settingsFile, {}}
                                              : ResolveSettingsLocation(SettingsEnvironmentOfProcess()));
  bool storeFailed = false;
  const ErrorBoxOutput errors = HostErrorBoxOutput(host, [&storeFailed] { storeFailed = true; });

  const auto settingsProblem = SettingsFileProblem(store.FileFor(options.edition));
  if (settingsProblem) err << *settingsProblem << '\n';

  DataLocations data = ReadDataLocations(store, options.edition, errors);
  if (options.log || options.path) {
    data = LocateData(options.edition, options.path.value_or(data.path), options.log.value_or(data.logs));
  }
  host.SetAdviceContext(LogAdvice(options, data, store));
  CheckReportOutputs(options, data, store, TemporaryFolder());
  ReportEnvironment environment;
  environment.edition = options.edition;
  environment.logPath = data.logs;
  environment.pathFolder = data.path;
  environment.activeLines = ActiveLines(data);
  environment.hardwareType = static_cast<std::int16_t>(data.hardwareType);
  environment.tempFolder = TemporaryFolder();
  environment.measurePrinter = [paper] { return paper; };
  environment.keepData = options.outputs.csv.has_value();

  QtTextMetrics metrics;
  ReportSettings settings(store, err, settingsProblem.has_value());
  ReportForm form(environment, host, metrics, settings);
  RequestOutcome outcome = RequestOutcome::kFailed;
  if (options.history) {
    outcome = GetHistory(form, host, settings, *options.history);
  } else {
    std::string procedure;
    bool filled = false;
    try {
      FillRequest(form.Request(), options, environment, store, errors, today, procedure);
      filled = true;
    } catch (const RuntimeError& error) {
      form.ShowError(error, procedure, ErrorBoxForm::kModern);
    }
    if (filled) outcome = form.cmdPrintQuery_Click();
  }
  const bool produced = outcome == RequestOutcome::kProduced || outcome == RequestOutcome::kProducedWithErrors;
  // A printer that failed has not done the work asked for; settings that
  // could not be read or saved have been told, and the document stands.
  if (produced && host.PrinterFailed()) outcome = RequestOutcome::kFailed;
  if (storeFailed && outcome == RequestOutcome::kProduced) outcome = RequestOutcome::kProducedWithErrors;
  host.ClearProgress();
  if (form.RepeatedErrors() > 0) {
    err << "cwreport: " << form.RepeatedErrors() << " more errors like those above were not shown\n";
  }
  const OrlPrinter* document = form.Document();
  if (outcome == RequestOutcome::kFailed && document != nullptr && document->Failed() &&
      document->Page() == std::numeric_limits<std::int16_t>::max()) {
    err << "cwreport: the report needs more than " << document->Page()
        << " pages; narrow the period with --from/--to\n";
  }
  // A document produced with records in error is the desktop's preview: it
  // is kept, and the exit status tells of the errors.
  if (outcome == RequestOutcome::kProduced || outcome == RequestOutcome::kProducedWithErrors) {
    host.CommitOutputs();
  } else {
    host.DiscardOutputs();
  }
  return ExitStatus(outcome);
}

}  // namespace

int RunReport(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  ReportOptions options;
  try {
    options = ParseReportOptions(args);
  } catch (const UsageError& usage) {
    err << "cwreport: " << usage.text << "\nRun \"cwreport --help\" for the options.\n";
    return 2;
  }
  if (options.help) {
    out << ReportHelp();
    return 0;
  }
  try {
    return Run(options, out, err);
  } catch (const UsageError& usage) {
    // The request's own checks, made before any output was written.
    err << "cwreport: " << usage.text << '\n';
    return 2;
  } catch (const OutputRefusal& refusal) {
    err << "cwreport: " << refusal.text << '\n';
    return 2;
  } catch (const RuntimeError& error) {
    err << "cwreport: error " << error.Number() << ": " << error.Description() << '\n';
  } catch (const std::exception& error) {
    err << "cwreport: " << error.what() << '\n';
  }
  return 1;
}

}  // namespace cw::cli
