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

#include <sys/resource.h>
#include <time.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "platform/headless_application.h"
#include "platform/qt_text_metrics.h"
#include "printer/fixed_pitch_metrics.h"
#include "printer/orl_printer.h"
#include "printer/spool_reader.h"
#include "reports/report_form.h"
#include "settings/settings_store.h"
#include "support/file_helpers.h"

namespace {

using Clock = std::chrono::steady_clock;

struct Options {
  long calls = 100'000;
  int runs = 5;
};

Options ParseOptions(int argc, char** argv) {
  Options options;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--calls") == 0 && i + 1 < argc) {
      options.calls = std::atol(argv[++i]);
    } else if (std::strcmp(argv[i], "--runs") == 0 && i + 1 < argc) {
      options.runs = std::atoi(argv[++i]);
    } else {
      std::fprintf(stderr, "usage: detail_listing_bench [--calls N] [--runs N]\n");
      std::exit(2);
    }
  }
  if (options.calls < 1 || options.runs < 1) {
    std::fprintf(stderr, "detail_listing_bench: --calls and --runs must be at least 1\n");
    std::exit(2);
  }
  return options;
}

double ProcessCpuSeconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + now.tv_nsec / 1e9;
}

double Megabytes(double bytes) { return bytes / 1e6; }

// Resident memory now and at its peak, in bytes.
double ResidentBytes() {
  std::ifstream statm("/proc/self/statm");
  long pages = 0, resident = 0;
  statm >> pages >> resident;
  return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE));
}

double PeakResidentBytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) * 1024;
}

// The demo office's log of `calls` calls, made once and kept.
std::string BenchLog(long calls) {
  const char* data = std::getenv("CW_BENCH_DATA");
  const std::filesystem::path folder =
      std::filesystem::path(data && *data ? data : CW_SOURCE_DIR "/bench/data") / ("detail-" + std::to_string(calls));
  const std::filesystem::path log = folder / "CallLog.txt";
  if (std::filesystem::exists(log)) return log.string();
  std::filesystem::create_directories(folder);
  // Three years and more, so that a hundred thousand calls still find free lines.
  const std::string command = std::string(CW_BINARY_DIR "/examples/demo/cw_make_demo") + " --calls " +
                              std::to_string(calls) + " --days " + std::to_string(std::max(91L, calls / 100)) +
                              " --log '" + log.string() + "' > /dev/null";
  if (std::system(command.c_str()) != 0 || !std::filesystem::exists(log)) {
    std::fprintf(stderr, "detail_listing_bench: could not make the log: %s\n", command.c_str());
    std::exit(1);
  }
  return log.string();
}

std::string FirstDate(const std::string& log) {
  std::ifstream in(log, std::ios::binary);
  std::string line;
  std::getline(in, line);
  return line.substr(0, 10);
}

class NoSettings : public cw::SettingsStore {
 public:
  std::string Get(std::string_view, std::string_view, std::string_view, std::string_view value) override {
    return std::string(value);
  }
  void Save(std::string_view, std::string_view, std::string_view, std::string_view) override {}
};

// What cwreport --text does with the finished document: the text export.
// The clock stops when the export is written; the count of TextOut records
// read back from the spool afterwards is not timed.
class BenchHost : public cw::ReportHost {
 public:
  cw::MessageAnswer MessageBox(std::string_view title, std::string_view text, cw::MessageIcon,
                               cw::MessageButtons) override {
    std::fprintf(stderr, "%.*s: %.*s\n", static_cast<int>(title.size()), title.data(),
                 static_cast<int>(text.size()), text.data());
    failed = true;
    return cw::MessageAnswer::kOk;
  }
  void SetBusy(bool) override {}
  void DoEvents() override {}
  void Progress(std::int64_t, std::int64_t) override {}
  void ShowPreview(cw::OrlPrinter& document) override {
    document.SetPrintTextFile(textFile);
    document.PrintToFile();
    exported = Clock::now();
    exportedCpu = ProcessCpuSeconds();
    textOuts = 0;
    cw::SpoolReader reader(document.PrintFile());
    spoolBytes = static_cast<double>(reader.RecordCount()) * cw::kSpoolRecordSize;
    cw::SpoolCommand command;
    while (reader.Next(command)) textOuts += command.keyword == cw::SpoolKeyword::kTextOut;
    textBytes = static_cast<double>(std::filesystem::file_size(textFile));
    std::filesystem::remove(textFile);
  }
  void DrawBarChart(const cw::BarChartSpec&, const std::string&) override {}
  cw::ScreenTwips Screen() override { return {19200, 10800}; }
  cw::CivilDate Today() override { return cw::CivilDate::FromYmd(2030, 1, 1); }
  cw::TimeOfDay Now() override { return 9 * 3600; }
  std::string AppTitle() override { return "Callwarden Reports"; }

  std::string textFile;
  Clock::time_point exported;
  double exportedCpu = 0;
  long textOuts = 0;
  double spoolBytes = 0;
  double textBytes = 0;
  bool failed = false;
};

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

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

    const auto start = Clock::now();
    const double startCpu = ProcessCpuSeconds();
    const cw::RequestOutcome outcome = form.cmdPrintQuery_Click();
    if (outcome != cw::RequestOutcome::kProduced || host.failed) {
      std::fprintf(stderr, "detail_listing_bench: the report was not produced\n");
      std::exit(1);
    }
    const double wall = std::chrono::duration<double>(host.exported - start).count();
    seconds.push_back(wall);
    rates.push_back(static_cast<double>(host.textOuts) / wall);
    cpuRates.push_back(static_cast<double>(host.textOuts) / (host.exportedCpu - startCpu));
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
