// The call detail listing end to end, as cwreport --text runs it: the request
// (log loaded whole, calls selected, every row spooled by OrlPrinter), then
// the text export of the spool. Prints OrlPrinter TextOut calls per second
// over that whole time (target: at least 500,000/s for 100,000 calls), with
// the fixed-pitch metrics of the tests and with the real Qt metrics, and the
// peak resident memory against the size of the log.
//
//   detail_listing_bench [--calls N] [--runs N]
//
// The log comes from the demo generator (cw_make_demo --calls N) and is kept
// in $CW_BENCH_DATA (default bench/data of the source tree) for later runs.
// Spool and text export go to the temporary folder and are deleted.

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "bench_support.h"
#include "platform/headless_application.h"
#include "platform/qt_text_metrics.h"
#include "printer/fixed_pitch_metrics.h"
#include "printer/orl_printer.h"
#include "printer/spool_reader.h"
#include "reports/report_form.h"
#include "support/file_helpers.h"

namespace {

using namespace cw::bench;

struct Options {
  long calls = 100'000;
  int runs = 5;
};

Options ParseOptions(int argc, char** argv) {
  Options options;
  ReadOptions(argc, argv, {{"--calls", options.calls, 1}, {"--runs", options.runs, 1}});
  return options;
}

double Megabytes(double bytes) { return bytes / 1e6; }

// The demo office's log of `calls` calls, made once and kept.
std::string BenchLog(long calls) {
  const std::string count = std::to_string(calls);
  // Three years and more, so that a hundred thousand calls still find free lines.
  const std::string days = std::to_string(std::max(91L, calls / 100));
  return DemoLog(BenchDataFolder() / ("detail-" + count) / "CallLog.txt", {"--calls", count, "--days", days}).string();
}

std::string FirstDate(const std::string& log) {
  std::ifstream in(log, std::ios::binary);
  std::string line;
  std::getline(in, line);
  return line.substr(0, 10);
}

// What cwreport --text does with the finished document: the text export.
// The clock stops when the export is written; the count of TextOut records
// read back from the spool afterwards is not timed.
class BenchHost : public ScreenlessHost {
 public:
  BenchHost() { today = cw::CivilDate::FromYmd(2030, 1, 1); }
  void ShowPreview(cw::OrlPrinter& document, const cw::ReportData&) override {
    document.SetPrintTextFile(textFile);
    document.PrintToFile();
    exported = watch.Read();
    textOuts = 0;
    cw::SpoolReader reader(document.PrintFile());
    spoolBytes = static_cast<double>(reader.RecordCount()) * cw::kSpoolRecordSize;
    cw::SpoolCommand command;
    while (reader.Next(command)) textOuts += command.keyword == cw::SpoolKeyword::kTextOut;
    textBytes = static_cast<double>(std::filesystem::file_size(textFile));
    std::filesystem::remove(textFile);
  }

  std::string textFile;
  Stopwatch watch;    // started by the run when it presses the button
  Elapsed exported;   // the time from there to the text export written
  long textOuts = 0;
  double spoolBytes = 0;
  double textBytes = 0;
};

void Run(const char* label, cw::TextMetrics& metrics, const std::string& log, double logBytes,
         const Options& options) {
  const double residentBefore = ResidentBytes();
  std::vector<double> rates, cpuRates, seconds;
  BenchHost host;
  for (int run = 0; run < options.runs; ++run) {
    host.textFile = cw::GetTempFile("VPT");
    NoSettings settings;
    cw::ReportEnvironment environment;
    environment.logPath = log;
    environment.activeLines = 4;
    cw::ReportForm form(environment, host, metrics, settings);
    cw::ReportRequest& request = form.Request();
    request.kind = cw::kind::kCallHistory;
    request.direction = "InOut";
    request.fromDate = FirstDate(log);
    request.toDate = "12/31/2099";

    host.watch = Stopwatch();
    const cw::RequestOutcome outcome = form.cmdPrintQuery_Click();
    if (outcome != cw::RequestOutcome::kProduced || !host.messages.empty()) Fail("the report was not produced");
    seconds.push_back(host.exported.wallSeconds);
    rates.push_back(static_cast<double>(host.textOuts) / host.exported.wallSeconds);
    cpuRates.push_back(static_cast<double>(host.textOuts) / host.exported.cpuSeconds);
  }
  std::printf("%s\n", label);
  std::printf("  TextOut calls per run:      %ld (spool %.1f MB, text export %.1f MB)\n", host.textOuts,
              Megabytes(host.spoolBytes), Megabytes(host.textBytes));
  std::printf("  request to text export:     %.3f s (median of %d)\n", Median(seconds), options.runs);
  std::printf("  TextOut calls/s end to end: %.0f wall clock, %.0f processor time (target >= 500000)\n",
              Median(rates), Median(cpuRates));
  const double peak = PeakResidentBytes();
  std::printf("  resident memory:            %.1f MB before the runs, %.1f MB at the process's peak so far\n"
              "                              (%+.1f MB; the log is %.1f MB)\n",
              Megabytes(residentBefore), Megabytes(peak), Megabytes(peak - residentBefore), Megabytes(logBytes));
}

}  // namespace

int main(int argc, char** argv) {
  const Options options = ParseOptions(argc, argv);
  const std::string log = BenchLog(options.calls);
  const double logBytes = static_cast<double>(std::filesystem::file_size(log));
  std::printf("Detail listing of %ld calls: %s (%.1f MB)\n", options.calls, log.c_str(), Megabytes(logBytes));

  cw::FixedPitchMetrics fixedPitch;
  Run("Fixed-pitch metrics", fixedPitch, log, logBytes, options);

  const auto application = cw::MakeHeadlessApplication();
  cw::QtTextMetrics qt;
  Run("Qt metrics (Liberation fonts)", qt, log, logBytes, options);
  return 0;
}
