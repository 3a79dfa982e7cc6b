// Spooling a report with the real Qt text metrics: OrlPrinter::TextOut calls
// per second and MB/s of spool written, on the call-detail listing of
// report_listing.h, timed from BeginDoc to EndDoc by the wall clock and by
// processor time. Also the measuring alone: QtTextMetrics::TextWidth calls
// per second on the same texts. Prints the median of several runs (1 MB =
// 10^6 bytes).
//
//   qt_spool_bench [--calls N] [--runs N]
//
// The spool goes to the temporary folder ($TMPDIR or /tmp) and is deleted.

#include <cstdio>
#include <string>
#include <vector>

#include "platform/headless_application.h"
#include "platform/qt_text_metrics.h"
#include "report_listing.h"

namespace {

using namespace cw::bench;

struct Options {
  long calls = 1'000'000;
  int runs = 5;
};

Options ParseOptions(int argc, char** argv) {
  Options options;
  ReadOptions(argc, argv, {{"--calls", options.calls, kColumns}, {"--runs", options.runs, 1}});
  return options;
}

}  // namespace

int main(int argc, char** argv) {
  const Options options = ParseOptions(argc, argv);
  const auto application = cw::MakeHeadlessApplication();
  const std::vector<std::vector<std::string>> rows = MakeRows();
  cw::QtTextMetrics metrics;

  // Measuring alone, over the same texts in the body font.
  cw::FontSpec body{"Times New Roman", 9, false, false, false};
  std::vector<double> widthRates;
  double sink = 0;
  for (int run = 0; run < options.runs; ++run) {
    const Stopwatch watch;
    long measured = 0;
    for (std::size_t row = 0; measured < options.calls; row = (row + 1) % rows.size()) {
      for (const std::string& text : rows[row]) sink += metrics.TextWidth(body, text);
      measured += kColumns;
    }
    widthRates.push_back(static_cast<double>(measured) / watch.Read().wallSeconds);
  }

  std::vector<double> callRates, cpuCallRates, megabytesPerSecond;
  SpoolRun last;
  for (int run = 0; run < options.runs; ++run) {
    last = SpoolListing(metrics, rows, options.calls);
    callRates.push_back(last.calls / last.seconds);
    cpuCallRates.push_back(last.calls / last.cpuSeconds);
    megabytesPerSecond.push_back(last.spoolBytes / 1e6 / last.seconds);
    std::printf("run %d: %ld TextOut calls, %d pages, %.1f MB of spool in %.3f s (%.3f s of processor time)\n",
                run + 1, last.calls, last.pages, last.spoolBytes / 1e6, last.seconds, last.cpuSeconds);
  }
  std::printf("TextWidth alone (QtTextMetrics):   %.2f M calls/s (median of %d; checksum %.0f)\n",
              Median(widthRates) / 1e6, options.runs, sink);
  std::printf("TextOut with spooling (OrlPrinter): %.2f M calls/s, %.0f MB/s of spool (median of %d)\n",
              Median(callRates) / 1e6, Median(megabytesPerSecond), options.runs);
  std::printf("  per second of processor time:    %.2f M calls/s\n", Median(cpuCallRates) / 1e6);
  std::printf("target: at least 1 M TextOut calls/s\n");
  return 0;
}
