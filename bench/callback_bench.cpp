// The call-back report beside the abandoned-calls report over the benchmark
// log: both walk the whole log, pick the unanswered inbound calls and list
// them; the call-back report also finds the call that returned each one. The
// two are run in turn through the report request (fixed-pitch metrics, a
// host that drops the finished document), and their times are printed side
// by side with the ratio (target: the call-back report within 2x).
//
//   callback_bench [--size-mb N] [--runs N] [--window DAYS]
//
// The log (CallLog-<N>MiB.txt under $CW_BENCH_DATA, default bench/data) is the
// one analysis_bench uses, made by cw_make_demo when it is not there yet.

#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

#include "bench_support.h"
#include "data/log_buffer.h"
#include "data/log_conversions.h"
#include "printer/fixed_pitch_metrics.h"
#include "reports/report_form.h"
#include "support/date_format.h"

namespace {

namespace fs = std::filesystem;
using namespace cw::bench;

struct Options {
  long sizeMb = 1024;
  int runs = 3;
  int window = 7;
};

// Counts the rows of the listing as the document is finished (the spool is
// not read back: that is the outputs' time, not the report's).
class CountingHost : public ScreenlessHost {
 public:
  void ShowPreview(cw::OrlPrinter& document, const cw::ReportData&) override { pages = document.TotalPages(); }
  int pages = 0;
};

struct Times {
  std::vector<double> wall;
  std::vector<double> cpu;
  int pages = 0;
};

}  // namespace

int main(int argc, char** argv) {
  Options options;
  ReadOptions(argc, argv,
              {{"--size-mb", options.sizeMb, 1}, {"--runs", options.runs, 1}, {"--window", options.window, 1, 365}});
  try {
    const fs::path logPath = DemoLogOfSize(options.sizeMb);
    cw::CivilDate first;
    cw::CivilDate last;
    double logBytes = 0;
    {
      const cw::LogBuffer log = cw::LogBuffer::Load(logPath.string());
      const std::string_view buffer = log.Text();
      if (buffer.size() < 1000) Fail("the log " + logPath.string() + " is nearly empty");
      logBytes = static_cast<double>(buffer.size());
      first = cw::ParseLogDate(buffer.substr(0, 10));
      const std::size_t lastLine = buffer.rfind('\n', buffer.size() - 2) + 1;
      last = cw::ParseLogDate(buffer.substr(lastLine, 10));
    }
    const std::string from = cw::FormatDate(first, "mm/dd/yyyy");
    const std::string to = cw::FormatDate(last, "mm/dd/yyyy");
    std::printf("log: %s, %.1f MB, %s to %s\n", logPath.c_str(), logBytes / 1e6, from.c_str(), to.c_str());
    std::printf("requests: the whole log; abandoned = inbound, unanswered only; call backs within %d days\n\n",
                options.window);

    auto run = [&](std::int16_t reportKind, Times& times) {
      CountingHost host;
      cw::FixedPitchMetrics metrics;
      NoSettings settings;
      cw::ReportEnvironment environment;
      environment.logPath = logPath.string();
      environment.activeLines = 4;
      cw::ReportForm form(environment, host, metrics, settings);
      cw::ReportRequest& request = form.Request();
      request.kind = reportKind;
      request.direction = "In";
      request.fromDate = from;
      request.toDate = to;
      request.callBackWindowDays = options.window;
      if (reportKind == cw::kind::kAbandonedCalls) request.abandoned.unanswered = true;
      Stopwatch watch;
      const cw::RequestOutcome outcome = form.cmdPrintQuery_Click();
      const Elapsed elapsed = watch.Read();
      if (outcome != cw::RequestOutcome::kProduced || !host.messages.empty()) Fail("the report did not come out");
      times.wall.push_back(elapsed.wallSeconds);
      times.cpu.push_back(elapsed.cpuSeconds);
      times.pages = host.pages;
    };

    Times abandoned;
    Times callBacks;
    // In turn, so that both see the machine alike.
    for (int k = 0; k < options.runs; ++k) {
      run(cw::kind::kAbandonedCalls, abandoned);
      run(cw::kind::kCallBacks, callBacks);
    }
    std::printf("%-26s %12s %12s %8s\n", "report (median of runs)", "wall s", "cpu s", "pages");
    std::printf("%-26s %12.3f %12.3f %8d\n", "abandoned calls (tab 4)", Median(abandoned.wall), Median(abandoned.cpu),
                abandoned.pages);
    std::printf("%-26s %12.3f %12.3f %8d\n", "call backs (tab 9)", Median(callBacks.wall), Median(callBacks.cpu),
                callBacks.pages);
    std::printf("call backs / abandoned: %.2fx wall, %.2fx cpu (target <= 2x)\n",
                Median(callBacks.wall) / Median(abandoned.wall), Median(callBacks.cpu) / Median(abandoned.cpu));
  } catch (const cw::RuntimeError& error) {
    Fail("error " + std::to_string(error.Number()) + ": " + error.Description());
  }
  return 0;
}
