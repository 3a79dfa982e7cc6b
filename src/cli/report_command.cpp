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
#include "cli/report_options.h"
#include "cli/system_printer.h"
#include "data/oldest_log_date.h"
#include "platform/headless_application.h"
#include "platform/qt_text_metrics.h"
#include "reports/form_error_box.h"
#include "reports/get_history.h"
#include "reports/report_form.h"
#include "settings/ini_settings_store.h"
#include "settings/settings_keys.h"
#include "settings/settings_values.h"
#include "settings/startup.h"
#include "support/date_format.h"
#include "support/runtime_error.h"

namespace cw::cli {

namespace {

// Fonts and page devices need a Qt application; the bar chart draws with
// widgets and needs the widgets' one. Only a request that can draw a chart
// pays for that.
bool MayDrawChart(const ReportOptions& options) {
  if (!options.chart || !options.kind) return false;
  return *options.kind == kind::kDailyCallStatistics || *options.kind == kind::kLineUsageStatistics ||
         *options.kind == kind::kAllLinesBusy;
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

// The request as the form would hold it: the options given, and for the rest
// what the form restores from the settings (period, direction, touch-tone
// digits). Throws RuntimeError; `procedure` names the form procedure whose
// work failed.
void FillRequest(ReportRequest& request, const ReportOptions& options, const ReportEnvironment& environment,
                 SettingsStore& store, const ErrorBoxOutput& errors, CivilDate today, std::string& procedure) {
  const auto stored = [&](const SettingKey& key) {
    return GetOptions(store, environment.edition, kReportsSection, key.name, key.defaultValue, errors);
  };
  procedure = "Form_Load";
  request.kind = *options.kind;
  request.dtmf = options.dtmf || SettingIsTrue(stored(setting::kDtmf));
  request.columns = DetailColumnPositions(request.dtmf);

  request.direction = options.direction ? *options.direction : stored(setting::kCallType);
  request.fromDate = options.from ? *options.from : stored(setting::kFromDate);
  request.toDate = options.to ? *options.to : stored(setting::kToDate);
  if (!options.to && request.toDate.empty()) request.toDate = FormatDate(today, "mm/dd/yyyy");

  if (options.period) {
    procedure = "oTimePeriod_Click";
    std::optional<std::string> oldest;
    if (*options.period == TimePeriod::kAllLogEntries) oldest = OldestLogDate(environment.logPath, today);
    const PeriodCaptions captions =
        ApplyTimePeriod(*options.period, today, oldest, PeriodCaptions{request.fromDate, request.toDate});
    request.fromDate = captions.fromDate;
    request.toDate = captions.toDate;
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

  DataLocations data = ReadDataLocations(store, options.edition, errors);
  if (options.log || options.path) {
    data = LocateData(options.edition, options.path.value_or(data.path), options.log.value_or(data.logs));
  }
  ReportEnvironment environment;
  environment.edition = options.edition;
  environment.logPath = data.logs;
  environment.pathFolder = data.path;
  environment.activeLines = ActiveLines(data);
  environment.hardwareType = static_cast<std::int16_t>(data.hardwareType);
  environment.tempFolder = TemporaryFolder();
  environment.measurePrinter = [paper] { return paper; };

  QtTextMetrics metrics;
  ReportForm form(environment, host, metrics, store);
  RequestOutcome outcome = RequestOutcome::kFailed;
  if (options.history) {
    outcome = GetHistory(form, host, store, *options.history);
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
  if (outcome != RequestOutcome::kProduced && outcome != RequestOutcome::kProducedWithErrors) host.DiscardOutputs();
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
    out << kReportHelp;
    return 0;
  }
  try {
    return Run(options, out, err);
  } catch (const RuntimeError& error) {
    err << "cwreport: error " << error.Number() << ": " << error.Description() << '\n';
  } catch (const std::exception& error) {
    err << "cwreport: " << error.what() << '\n';
  }
  return 1;
}

}  // namespace cw::cli
