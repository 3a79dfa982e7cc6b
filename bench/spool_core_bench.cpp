// The print engine's core without fonts: OrlPrinter::TextOut calls per second
// and MB/s of spool written with the fixed-pitch metrics, on the call-detail
// listing of report_listing.h (ten texts a row, automatic headings and page
// breaks); then the text export and the replay onto a device that draws
// nothing, in MB of spool read per second, over a spool of --spool-mb MB
// (250 unless told). Prints the median of several runs (1 MB = 10^6 bytes).
//
//   spool_core_bench [--calls N] [--runs N] [--spool-mb N]
//
// The large spool is generated once into $CW_BENCH_DATA (default bench/data
// of the source tree) and kept for later runs; the text export goes beside it
// and is deleted. Spools of the TextOut runs go to the temporary folder.

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "printer/fixed_pitch_metrics.h"
#include "printer/spool_replay.h"
#include "printer/text_export.h"
#include "report_listing.h"
#include "support/runtime_error.h"

namespace {

using namespace cw::bench;

struct Options {
  long calls = 2'000'000;
  int runs = 5;
  long spoolMegabytes = 250;
};

Options ParseOptions(int argc, char** argv) {
  Options options;
  ReadOptions(argc, argv,
              {{"--calls", options.calls, kColumns}, {"--runs", options.runs, 1}, {"--spool-mb", options.spoolMegabytes, 1}});
  return options;
}

// A device that draws nothing, so that the replay's own cost shows.
class NullDevice : public cw::PageDevice {
 public:
  long items = 0;
  void BeginDocument(const cw::PageSetup&) override {}
  void BeginPage() override {}
  void EndPage() override {}
  void EndDocument() override {}
  void SetFont(const cw::FontSpec&) override { ++items; }
  void Text(double, double, std::string_view) override { ++items; }
  void Line(double, double, double, double) override { ++items; }
  void Box(double, double, double, double) override { ++items; }
  bool Image(const std::string&, double, double, double, double) override { return true; }
};

// The large spool, made once: a listing of about `megabytes` MB.
std::string LargeSpool(cw::TextMetrics& metrics, const std::vector<std::vector<std::string>>& rows,
                       long megabytes) {
  const std::filesystem::path folder = BenchDataFolder();
  std::filesystem::create_directories(folder);
  const std::string path = (folder / ("listing-" + std::to_string(megabytes) + "MB.spl")).string();
  if (std::filesystem::exists(path) && std::filesystem::file_size(path) >= static_cast<std::uintmax_t>(megabytes) * 1'000'000) {
    return path;
  }
  // About 1.09 records per report call once headings are counted.
  const long calls = megabytes * 1'000'000 / 422 + 10;
  std::printf("generating %s ...\n", path.c_str());
  std::fflush(stdout);
  std::string spooled;
  SpoolListing(metrics, rows, calls, &spooled);
  std::error_code otherDevice;
  std::filesystem::rename(spooled, path, otherDevice);
  if (otherDevice) {
    std::filesystem::copy_file(spooled, path, std::filesystem::copy_options::overwrite_existing);
    std::filesystem::remove(spooled);
  }
  return path;
}

}  // namespace

int main(int argc, char** argv) {
  const Options options = ParseOptions(argc, argv);
  cw::FixedPitchMetrics metrics;
  const auto rows = MakeRows();
  try {
    std::vector<double> callsPerSecond;
    std::vector<double> spoolMegabytesPerSecond;
    for (int run = 0; run < options.runs; ++run) {
      const SpoolRun spooled = SpoolListing(metrics, rows, options.calls);
      callsPerSecond.push_back(static_cast<double>(spooled.calls) / spooled.seconds);
      spoolMegabytesPerSecond.push_back(spooled.spoolBytes / 1e6 / spooled.seconds);
    }
    std::printf("spooling (fixed-pitch metrics): %ld TextOut calls, median %.2f million calls/s, %.0f MB/s of spool\n",
                options.calls, Median(callsPerSecond) / 1e6, Median(spoolMegabytesPerSecond));

    const std::string spool = LargeSpool(metrics, rows, options.spoolMegabytes);
    const double spoolMegabytes = static_cast<double>(std::filesystem::file_size(spool)) / 1e6;
    const std::string text = spool + ".txt";
    std::vector<double> exportRates;
    double textMegabytes = 0;
    for (int run = 0; run < options.runs; ++run) {
      const Stopwatch watch;
      const cw::SpoolProblems problems = cw::ExportSpoolToTextFile(spool, text);
      exportRates.push_back(spoolMegabytes / watch.Read().wallSeconds);
      if (!problems.Empty()) std::fprintf(stderr, "spool_core_bench: the export found problems\n");
      textMegabytes = static_cast<double>(std::filesystem::file_size(text)) / 1e6;
      std::filesystem::remove(text);
    }
    std::printf("text export: %.0f MB spool -> %.1f MB text, median %.0f MB/s of spool (written to disk and synced)\n",
                spoolMegabytes, textMegabytes, Median(exportRates));

    std::vector<double> replayRates;
    for (int run = 0; run < options.runs; ++run) {
      NullDevice device;
      const Stopwatch watch;
      const cw::ReplayResult result = cw::ReplaySpool(spool, device, {});
      replayRates.push_back(spoolMegabytes / watch.Read().wallSeconds);
      if (result.recordsRead == 0 || device.items == 0) std::fprintf(stderr, "spool_core_bench: nothing replayed\n");
    }
    std::printf("replay onto a null device: median %.0f MB/s of spool\n", Median(replayRates));
  } catch (const cw::RuntimeError& error) {
    std::fprintf(stderr, "spool_core_bench: error %d: %s\n", error.Number(), error.what());
    return 1;
  }
  return 0;
}
