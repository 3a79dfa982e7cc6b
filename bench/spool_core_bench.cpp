// The print engine's core without fonts: OrlPrinter::TextOut calls per second
// and MB/s of spool written with the fixed-pitch metrics, on a listing of ten
// texts a row with automatic headings and page breaks; then the text export
// and the replay onto a device that draws nothing, in MB of spool read per
// second, over a spool of at least 200 MB. Prints the median of several runs
// (1 MB = 10^6 bytes).
//
//   spool_core_bench [--calls N] [--runs N] [--spool-mb N]
//
// The large spool is generated once into $CW_BENCH_DATA (default bench/data
// of the source tree) and kept for later runs; the text export goes beside it
// and is deleted. Spools of the TextOut runs go to the temporary folder.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "printer/fixed_pitch_metrics.h"
#include "printer/orl_printer.h"
#include "printer/spool_replay.h"
#include "printer/text_export.h"
#include "support/runtime_error.h"

namespace {

using Clock = std::chrono::steady_clock;
using cw::OrlPrinter;

struct Options {
  long calls = 2'000'000;
  int runs = 5;
  long spoolMegabytes = 250;
};

Options ParseOptions(int argc, char** argv) {
  Options options;
  for (int i = 1; i < argc; ++i) {
    const bool hasValue = i + 1 < argc;
    if (std::strcmp(argv[i], "--calls") == 0 && hasValue) {
      options.calls = std::atol(argv[++i]);
    } else if (std::strcmp(argv[i], "--runs") == 0 && hasValue) {
      options.runs = std::atoi(argv[++i]);
    } else if (std::strcmp(argv[i], "--spool-mb") == 0 && hasValue) {
      options.spoolMegabytes = std::atol(argv[++i]);
    } else {
      std::fprintf(stderr, "usage: spool_core_bench [--calls N] [--runs N] [--spool-mb N]\n");
      std::exit(2);
    }
  }
  if (options.calls < 10 || options.runs < 1 || options.spoolMegabytes < 1) {
    std::fprintf(stderr, "spool_core_bench: --calls at least 10, --runs and --spool-mb at least 1\n");
    std::exit(2);
  }
  return options;
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

double Seconds(Clock::time_point start) { return std::chrono::duration<double>(Clock::now() - start).count(); }

// Ten columns of a call-detail row: date, time, line, direction, number,
// name, duration, rings, status, cost; varied so that the texts differ.
constexpr int kColumns = 10;
constexpr double kColumnX[kColumns] = {0.3, 1.1, 1.8, 2.2, 2.6, 3.8, 5.3, 6.0, 6.5, 7.0};

std::vector<std::vector<std::string>> MakeRows() {
  const char* names[] = {"SMITH JOHN", "GARCIA MARIA", "O'BRIEN PATRICK", "NGUYEN THI", "MUELLER KLAUS",
                         "WIRELESS CALLER", "UNAVAILABLE", "CAF\xC9 DU PARC", "ABC PLUMBING & HEATING"};
  const char* status[] = {"Answered", "Abandoned", "Busy", "Voice Mail"};
  std::vector<std::vector<std::string>> rows;
  char text[64];
  for (int i = 0; i < 1009; ++i) {
    std::vector<std::string> row;
    std::snprintf(text, sizeof text, "%02d/%02d/2026", 1 + i % 12, 1 + i % 28);
    row.emplace_back(text);
    std::snprintf(text, sizeof text, "%d:%02d%s", 1 + i % 12, (i * 7) % 60, i % 2 ? "AM" : "PM");
    row.emplace_back(text);
    row.push_back(std::to_string(1 + i % 8));
    row.emplace_back(i % 3 ? "In" : "Out");
    std::snprintf(text, sizeof text, "%03d-%03d-%04d", 200 + i % 700, (i * 37) % 1000, (i * 7919) % 10000);
    row.emplace_back(text);
    row.emplace_back(names[i % std::size(names)]);
    std::snprintf(text, sizeof text, "%d:%02d:%02d", i % 3, (i * 13) % 60, (i * 29) % 60);
    row.emplace_back(text);
    row.push_back(std::to_string(i % 7));
    row.emplace_back(status[i % std::size(status)]);
    std::snprintf(text, sizeof text, "$%d.%02d", i % 20, (i * 11) % 100);
    row.emplace_back(text);
    rows.push_back(std::move(row));
  }
  return rows;
}

struct SpoolRun {
  double seconds = 0;
  long calls = 0;
  double bytes = 0;
  std::string path;
};

// Spools whole rows until `calls` TextOut calls (the report's own; heading
// texts come on top), timed from BeginDoc to EndDoc.
SpoolRun SpoolListing(cw::TextMetrics& metrics, const std::vector<std::vector<std::string>>& rows, long calls) {
  cw::OrlPrinterEnvironment environment;
  environment.metrics = &metrics;
  environment.today = [] { return cw::CivilDate::FromYmd(2026, 11, 22); };
  environment.showError = [](const std::string& text) {
    std::fprintf(stderr, "spool_core_bench: %s\n", text.c_str());
    std::exit(1);
  };
  OrlPrinter printer(environment);
  printer.OnNewPage = [&printer](std::int16_t) {
    printer.SetFont("Arial", 9, 1);
    for (double x : kColumnX) printer.TextOut(x, "Heading");
    printer.NewLine();
    printer.SetFont("Times New Roman", 9, 0);
  };

  SpoolRun run;
  const auto start = Clock::now();
  printer.BeginDoc();
  printer.SetScaleMode(5);
  printer.SetSpacing(1.0);
  printer.SetBottomMargin(0.5);
  printer.SetAutoHeadings(true);
  printer.SetAutoNewPage(true);
  printer.SetAutoHeadingsFontName("Arial");
  printer.SetAutoHeadingsFontSize(10);
  printer.SetAutoHeadingsFontAttr(1);
  printer.SetTitle("Call Detail");
  printer.SetSubTitle("Report Period: 01/01/2026 - 12/31/2026");
  printer.SetFont("Times New Roman", 9, 0);
  std::size_t row = 0;
  while (run.calls + kColumns <= calls) {
    const std::vector<std::string>& texts = rows[row];
    for (int column = 0; column < kColumns; ++column) printer.TextOut(kColumnX[column], texts[column]);
    printer.NewLine();
    run.calls += kColumns;
    if (++row == rows.size()) row = 0;
  }
  printer.EndDoc();
  run.seconds = Seconds(start);
  run.path = printer.PrintFile();
  run.bytes = static_cast<double>(std::filesystem::file_size(run.path));
  return run;
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

std::string BenchDataFolder() {
  const char* fromEnvironment = std::getenv("CW_BENCH_DATA");
  if (fromEnvironment != nullptr && *fromEnvironment != '\0') return fromEnvironment;
  return std::string(CW_SOURCE_DIR) + "/bench/data";
}

// The large spool, made once: a listing of about `megabytes` MB.
std::string LargeSpool(cw::TextMetrics& metrics, const std::vector<std::vector<std::string>>& rows,
                       long megabytes) {
  const std::string folder = BenchDataFolder();
  std::filesystem::create_directories(folder);
  const std::string path = folder + "/listing-" + std::to_string(megabytes) + "MB.spl";
  if (std::filesystem::exists(path) && std::filesystem::file_size(path) >= static_cast<std::uintmax_t>(megabytes) * 1'000'000) {
    return path;
  }
  // About 1.09 records per report call once headings are counted.
  const long calls = megabytes * 1'000'000 / 422 + 10;
  std::printf("generating %s ...\n", path.c_str());
  std::fflush(stdout);
  SpoolRun run = SpoolListing(metrics, rows, calls);
  std::error_code otherDevice;
  std::filesystem::rename(run.path, path, otherDevice);
  if (otherDevice) {
    std::filesystem::copy_file(run.path, path, std::filesystem::copy_options::overwrite_existing);
    std::filesystem::remove(run.path);
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
      SpoolRun spooled = SpoolListing(metrics, rows, options.calls);
      std::filesystem::remove(spooled.path);
      callsPerSecond.push_back(static_cast<double>(spooled.calls) / spooled.seconds);
      spoolMegabytesPerSecond.push_back(spooled.bytes / 1e6 / spooled.seconds);
    }
    std::printf("spooling (fixed-pitch metrics): %ld TextOut calls, median %.2f million calls/s, %.0f MB/s of spool\n",
                options.calls, Median(callsPerSecond) / 1e6, Median(spoolMegabytesPerSecond));

    const std::string spool = LargeSpool(metrics, rows, options.spoolMegabytes);
    const double spoolMegabytes = static_cast<double>(std::filesystem::file_size(spool)) / 1e6;
    const std::string text = spool + ".txt";
    std::vector<double> exportRates;
    double textMegabytes = 0;
    for (int run = 0; run < options.runs; ++run) {
      const auto start = Clock::now();
      const cw::SpoolProblems problems = cw::ExportSpoolToTextFile(spool, text);
      exportRates.push_back(spoolMegabytes / Seconds(start));
      if (!problems.Empty()) std::fprintf(stderr, "spool_core_bench: the export found problems\n");
      textMegabytes = static_cast<double>(std::filesystem::file_size(text)) / 1e6;
      std::filesystem::remove(text);
    }
    std::printf("text export: %.0f MB spool -> %.1f MB text, median %.0f MB/s of spool (written to disk and synced)\n",
                spoolMegabytes, textMegabytes, Median(exportRates));

    std::vector<double> replayRates;
    for (int run = 0; run < options.runs; ++run) {
      NullDevice device;
      const auto start = Clock::now();
      const cw::ReplayResult result = cw::ReplaySpool(spool, device, {});
      replayRates.push_back(spoolMegabytes / Seconds(start));
      if (result.recordsRead == 0 || device.items == 0) std::fprintf(stderr, "spool_core_bench: nothing replayed\n");
    }
    std::printf("replay onto a null device: median %.0f MB/s of spool\n", Median(replayRates));
  } catch (const cw::RuntimeError& error) {
    std::fprintf(stderr, "spool_core_bench: error %d: %s\n", error.Number(), error.what());
    return 1;
  }
  return 0;
}
