// PDF export speed: a call-detail listing (about 60 rows of 10 texts a page,
// headings and rules) spooled once by OrlPrinter with the Qt metrics, then
// replayed into a PDF file several times; prints pages per second and the
// median. With --png DPI the same replay into page images is timed too.
//
//   pdf_export_bench [--pages N] [--runs N] [--png DPI]
//
// Files go to the temporary folder ($TMPDIR or /tmp) and are deleted.

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/headless_application.h"
#include "platform/pdf_page_device.h"
#include "platform/png_page_device.h"
#include "platform/qt_text_metrics.h"
#include "printer/spool_replay.h"
#include "report_listing.h"

namespace {

namespace fs = std::filesystem;
using namespace cw::bench;

struct Options {
  int pages = 400;
  int runs = 5;
  int pngDpi = 0;
};

Options ParseOptions(int argc, char** argv) {
  Options options;
  // --png 0 (the default) leaves the page images out.
  ReadOptions(argc, argv, {{"--pages", options.pages, 1}, {"--runs", options.runs, 1}, {"--png", options.pngDpi, 0, 2400, "DPI"}});
  return options;
}

// Times one replay of the spool onto the device; exits on any problem, since
// a figure for a failed export means nothing.
template <class Device>
Elapsed TimeReplay(const std::string& spool, Device& device, int expectedPages) {
  const Stopwatch watch;
  const cw::ReplayResult result = cw::ReplaySpool(spool, device, cw::ReplayOptions{});
  const Elapsed elapsed = watch.Read();
  if (!result.problems.Empty() || result.pagesBegun != expectedPages) {
    Fail("the replay drew " + std::to_string(result.pagesBegun) + " of " + std::to_string(expectedPages) +
         " pages with " + std::to_string(result.problems.Count()) + " problems");
  }
  return elapsed;
}

}  // namespace

int main(int argc, char** argv) {
  const Options options = ParseOptions(argc, argv);
  const auto application = cw::MakeHeadlessApplication();
  cw::QtTextMetrics metrics;

  // Rows per page follow from the layout; spool enough of them for the pages.
  std::string spool;
  const std::vector<std::vector<std::string>> rows = MakeRows();
  const long perPage = 1000L / SpoolListing(metrics, rows, 1000L * kColumns).pages;
  const SpoolRun made = SpoolListing(metrics, rows, static_cast<long>(options.pages) * perPage * kColumns, &spool);
  std::printf("spool: %d pages, about %ld rows of %d texts a page, %.1f MB\n", made.pages, perPage, kColumns,
              made.spoolBytes / 1e6);

  const fs::path folder = fs::temp_directory_path() / ("cw-pdf-bench-" + std::to_string(::getpid()));
  fs::create_directories(folder);
  std::vector<double> pdfRates, pdfCpuRates;
  for (int run = 0; run < options.runs; ++run) {
    const fs::path pdf = folder / "listing.pdf";
    cw::PdfPageDevice device(pdf.string(), "Call Detail");
    const Elapsed timing = TimeReplay(spool, device, made.pages);
    pdfRates.push_back(made.pages / timing.wallSeconds);
    pdfCpuRates.push_back(made.pages / timing.cpuSeconds);
    std::printf("run %d: PDF of %d pages (%.1f MB) in %.3f s (%.3f s of processor time)\n", run + 1, made.pages,
                static_cast<double>(fs::file_size(pdf)) / 1e6, timing.wallSeconds, timing.cpuSeconds);
  }
  std::printf("PDF export: %.0f pages/s, %.0f pages per second of processor time (median of %d)\n",
              Median(pdfRates), Median(pdfCpuRates), options.runs);
  std::printf("target: at least 200 pages/s\n");

  if (options.pngDpi > 0) {
    std::vector<double> pngRates, pngCpuRates;
    for (int run = 0; run < options.runs; ++run) {
      cw::PngPageDevice device((folder / "pages").string(), options.pngDpi);
      const Elapsed timing = TimeReplay(spool, device, made.pages);
      pngRates.push_back(made.pages / timing.wallSeconds);
      pngCpuRates.push_back(made.pages / timing.cpuSeconds);
    }
    std::printf("PNG export at %d dpi: %.1f pages/s, %.1f pages per second of processor time (median of %d)\n",
                options.pngDpi, Median(pngRates), Median(pngCpuRates), options.runs);
  }
  fs::remove_all(folder);
  fs::remove(spool);
  return 0;
}
