// The daily call analysis and the line usage summary over a large call log,
// measured in one run against two yardsticks:
//   (a) the data layer's own read-and-select: LogBuffer::Load and
//       RecordSelection over the whole log (also shown without the load);
//   (b) Process_DailySummary and (c) Process_LineUsage, the report routines
//       themselves run through the report request (each loads the log, walks
//       it and writes its two tables), with fixed-pitch metrics and a host
//       that keeps only the text export;
//   (d) mawk running bench/analysis.awk, computing the same tables of each
//       report over the same file.
// The request is the heaviest one: every call of the log, in and out. The
// tables of (b) and (c) are checked word for word against those of (d).
// Prints the medians of wall-clock and CPU time, the ratios (of CPU time: the
// machine may be shared) and the peak resident memory.
//
//   analysis_bench [--size-mb N] [--runs N] [--awk-runs N] [--lines N]
//
// The log (CallLog-<N>MiB.txt under $CW_BENCH_DATA, default bench/data) is made
// by cw_make_demo when it is not there yet; read_select_bench uses the same file.

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bench_support.h"
#include "data/log_buffer.h"
#include "data/log_conversions.h"
#include "data/record_selection.h"
#include "printer/fixed_pitch_metrics.h"
#include "printer/orl_printer.h"
#include "reports/progress_interval.h"
#include "reports/report_form.h"
#include "support/date_format.h"
#include "support/file_helpers.h"
#include "support/runtime_error.h"

namespace {

namespace fs = std::filesystem;
using namespace cw::bench;

struct Options {
  long sizeMb = 1024;
  int runs = 5;
  int awkRuns = 3;
  int lines = 4;
};

Options ParseOptions(int argc, char** argv) {
  Options options;
  // --awk-runs 0 leaves mawk out (for profiling the reports).
  ReadOptions(argc, argv,
              {{"--size-mb", options.sizeMb, 1},
               {"--runs", options.runs, 1},
               {"--awk-runs", options.awkRuns, 0},
               {"--lines", options.lines, 1, 999}});
  return options;
}

// The previewed document is kept as its text export (a few hundred records).
class TextHost : public ScreenlessHost {
 public:
  void ShowPreview(cw::OrlPrinter& document, const cw::ReportData&) override {
    const std::string textFile = cw::GetTempFile("VPT");
    document.SetPrintTextFile(textFile);
    document.PrintToFile();
    text = cw::ReadWholeFile(textFile);
    std::remove(textFile.c_str());
  }

  std::string text;
};

// The words of a text export after its heading block (everything up to the
// "Report Period:" line of each page), so that it compares with awk's lines.
std::vector<std::string> TableWords(const std::string& text) {
  std::vector<std::string> words;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (line.find("Date: ") != std::string::npos && line.find("Page: ") != std::string::npos) continue;
    if (line.find("Report Period: ") != std::string::npos) continue;
    std::istringstream in(line);
    for (std::string word; in >> word;) words.push_back(word);
  }
  return words;
}

std::vector<std::string> AllWords(const std::string& text) {
  std::vector<std::string> words;
  std::istringstream in(text);
  for (std::string word; in >> word;) words.push_back(word);
  return words;
}

// Wall-clock and CPU seconds of the runs of one pass.
struct Times {
  std::vector<double> wall;
  std::vector<double> cpu;
  double Wall() const { return Median(wall); }
  double Cpu() const { return Median(cpu); }
  // Adds the time since the watch started (or its last lap); it runs on.
  void Lap(Stopwatch& watch) {
    const Elapsed elapsed = watch.Lap();
    wall.push_back(elapsed.wallSeconds);
    cpu.push_back(elapsed.cpuSeconds);
  }
};

struct Measured {
  Times times;
  std::string text;  // what the last run produced
  std::int64_t count = 0;
};

}  // namespace

int main(int argc, char** argv) {
  const Options options = ParseOptions(argc, argv);
  try {
    const fs::path logPath = DemoLogOfSize(options.sizeMb);
    const double peakBeforeBytes = PeakResidentBytes();

    // The period of the whole log: its first and last dates.
    cw::CivilDate first;
    cw::CivilDate last;
    std::size_t logBytes = 0;
    {
      const cw::LogBuffer log = cw::LogBuffer::Load(logPath.string());
      const std::string_view buffer = log.Text();
      if (buffer.size() < 1000) Fail("the log " + logPath.string() + " is nearly empty");
      logBytes = buffer.size();
      first = cw::ParseLogDate(buffer.substr(0, 10));
      const std::size_t lastLine = buffer.rfind('\n', buffer.size() - 2) + 1;
      last = cw::ParseLogDate(buffer.substr(lastLine, 10));
    }
    const std::string fromCaption = cw::FormatDate(first, "mm/dd/yyyy");
    const std::string toCaption = cw::FormatDate(last, "mm/dd/yyyy");
    std::printf("log: %s, %.1f MB, %s to %s, %d active lines\n", logPath.c_str(),
                static_cast<double>(logBytes) / 1e6, fromCaption.c_str(), toCaption.c_str(), options.lines);
    std::printf("request: the whole log, direction InOut, no chart\n\n");

    // (a) The data layer: load, then select every record of the period.
    // The buffer is let go inside the timing, as a report lets its own go.
    Times loadTimes;
    Times selectTimes;
    Times releaseTimes;
    Times readSelectTimes;
    std::int64_t selected = 0;
    auto readAndSelect = [&] {
      Stopwatch whole;
      Stopwatch lap;
      {
        const cw::LogBuffer log = cw::LogBuffer::Load(logPath.string());
        loadTimes.Lap(lap);
        cw::SelectionCriteria criteria;
        criteria.from = first;
        criteria.to = last;
        criteria.direction = "InOut";
        cw::RecordSelection selection(log.Text(), criteria);
        // The reports' own way through a selection, with the same progress
        // interval and nothing done per record but counting it.
        std::int64_t count = 0;
        selection.ForEach([&count](const cw::CallRecord&, cw::CivilDate) { ++count; }, cw::kProgressEvery, [] {});
        selectTimes.Lap(lap);
        selected = count;
      }
      releaseTimes.Lap(lap);
      readSelectTimes.Lap(whole);
    };

    // (b), (c) The report routines through the report request.
    auto report = [&](std::int16_t reportKind, Measured& measured) {
      TextHost host;
      cw::FixedPitchMetrics metrics;
      NoSettings settings;
      cw::ReportEnvironment environment;
      environment.logPath = logPath.string();
      environment.activeLines = static_cast<std::int16_t>(options.lines);
      cw::ReportForm form(environment, host, metrics, settings);
      cw::ReportRequest& request = form.Request();
      request.kind = reportKind;
      request.direction = "InOut";
      request.fromDate = fromCaption;
      request.toDate = toCaption;
      request.chart = false;
      Stopwatch watch;
      const cw::RequestOutcome outcome = form.cmdPrintQuery_Click();
      measured.times.Lap(watch);
      if (outcome != cw::RequestOutcome::kProduced || !host.messages.empty()) {
        Fail("the report did not come out: " + (host.messages.empty() ? std::string("no document")
                                                                       : host.messages.front()));
      }
      measured.text = host.text;
      measured.count = host.events;
    };

    // The three passes take turns, so that a change in the machine's load
    // or in the state of its page cache during the bench falls on all of
    // them alike; each round gives its own pair of ratios.
    Measured daily;
    Measured lineUsage;
    std::vector<double> dailyRatios;
    std::vector<double> lineRatios;
    for (int run = 0; run < options.runs; ++run) {
      readAndSelect();
      report(cw::kind::kDailyCallStatistics, daily);
      report(cw::kind::kLineUsageStatistics, lineUsage);
      const double readSelect = readSelectTimes.cpu.back();
      dailyRatios.push_back(daily.times.cpu.back() / readSelect);
      lineRatios.push_back(lineUsage.times.cpu.back() / readSelect);
    }

    // (d) mawk, each report's tables on their own, as the reports compute them.
    auto runAwk = [&](std::string_view tables) {
      const std::vector<std::string> awk = {"mawk",
                                            "-v", "from=" + Yyyymmdd(first),
                                            "-v", "to=" + Yyyymmdd(last),
                                            "-v", "dir=InOut",
                                            "-v", "lines=" + std::to_string(options.lines),
                                            "-v", "tables=" + std::string(tables),
                                            "-f", (fs::path(CW_SOURCE_DIR) / "bench" / "analysis.awk").string(),
                                            logPath.string()};
      Measured measured;
      for (int run = 0; run < options.awkRuns; ++run) {
        const Stopwatch watch;
        double cpu = 0;
        measured.text = RunProgram(awk, &cpu);
        measured.times.wall.push_back(watch.Read().wallSeconds);
        measured.times.cpu.push_back(cpu);
      }
      return measured;
    };
    const Measured awkDaily = runAwk("daily");
    const Measured awkLines = runAwk("lines");
    const bool withAwk = options.awkRuns > 0;

    const double peakBytes = PeakResidentBytes();
    const double mb = static_cast<double>(logBytes) / 1e6;

    std::printf("%-56s %8s %8s %8s\n", "pass (median of the runs)", "wall s", "CPU s", "MB/s CPU");
    auto row = [&](const char* name, const Times& times) {
      std::printf("%-56s %8.3f %8.3f %8.0f\n", name, times.Wall(), times.Cpu(), mb / times.Cpu());
    };
    row("(a) LogBuffer::Load", loadTimes);
    row("(a) RecordSelection over the loaded buffer", selectTimes);
    row("(a) letting the buffer go", releaseTimes);
    row("(a) read-and-select: load + selection + release", readSelectTimes);
    row("(b) daily call analysis (the whole request)", daily.times);
    row("(c) line usage summary (the whole request)", lineUsage.times);
    if (withAwk) {
      row("(d) mawk -f bench/analysis.awk, daily tables", awkDaily.times);
      row("(d) mawk -f bench/analysis.awk, line usage tables", awkLines.times);
    }
    std::printf("(a) selected %lld calls; ratios below are of CPU time (wall time in brackets)\n\n",
                static_cast<long long>(selected));
    auto ratio = [](const Times& a, const Times& b) { return std::pair{a.Cpu() / b.Cpu(), a.Wall() / b.Wall()}; };
    const auto [dailyRead, dailyReadWall] = ratio(daily.times, readSelectTimes);
    const auto [linesRead, linesReadWall] = ratio(lineUsage.times, readSelectTimes);
    std::printf("(b) / (a) read-and-select:   %.2fx, median of the rounds' ratios (target: at most 1.5x);\n"
                "                             %.2fx (%.2fx wall) as the ratio of the medians\n",
                Median(dailyRatios), dailyRead, dailyReadWall);
    std::printf("(c) / (a) read-and-select:   %.2fx, median of the rounds' ratios (target: at most 1.5x);\n"
                "                             %.2fx (%.2fx wall) as the ratio of the medians\n",
                Median(lineRatios), linesRead, linesReadWall);
    // The walk and the tables alone: the report less the load and release.
    const double loadAndRelease = loadTimes.Cpu() + releaseTimes.Cpu();
    std::printf("(b) walk / (a) selection:    %.2fx, the report less its load and release\n",
                (daily.times.Cpu() - loadAndRelease) / selectTimes.Cpu());
    std::printf("(c) walk / (a) selection:    %.2fx\n", (lineUsage.times.Cpu() - loadAndRelease) / selectTimes.Cpu());
    if (withAwk) {
      const auto [dailyAwk, dailyAwkWall] = ratio(awkDaily.times, daily.times);
      const auto [linesAwk, linesAwkWall] = ratio(awkLines.times, lineUsage.times);
      std::printf("(d) / (b), daily tables:     %.1fx (%.1fx) faster than mawk (target: at least 10x)\n", dailyAwk,
                  dailyAwkWall);
      std::printf("(d) / (c), line usage:       %.1fx (%.1fx) faster than mawk (target: at least 10x)\n", linesAwk,
                  linesAwkWall);
    }
    std::printf("progress/events per report:  %lld (daily), %lld (line usage)\n",
                static_cast<long long>(daily.count), static_cast<long long>(lineUsage.count));
    std::printf("peak RSS: %.1f MB for a %.1f MB log = %.3f x the file (before loading: %.1f MB)\n",
                peakBytes / 1e6, mb, peakBytes / 1e6 / mb, peakBeforeBytes / 1e6);

    if (!withAwk) return 0;
    // The same tables, character for character apart from the spacing (with
    // fixed-pitch metrics a wide duration runs into its neighbour in the
    // text export, which then shows the two as one word).
    bool agree = true;
    auto joined = [](const std::vector<std::string>& words) {
      std::string text;
      for (const std::string& word : words) text += word;
      return text;
    };
    auto compare = [&](const char* name, const Measured& report, const Measured& awk) {
      const std::string actual = joined(TableWords(report.text));
      const std::string expected = joined(AllWords(awk.text));
      if (actual == expected) {
        std::printf("%s: the report and mawk agree (%zu characters)\n", name, expected.size());
        return;
      }
      agree = false;
      std::size_t at = 0;
      while (at < actual.size() && at < expected.size() && actual[at] == expected[at]) ++at;
      std::printf("MISMATCH in the %s at character %zu: report \"%s\", mawk \"%s\"\n", name, at,
                  actual.substr(at, 20).c_str(), expected.substr(at, 20).c_str());
      std::printf("--- report ---\n%s--- mawk ---\n%s", report.text.c_str(), awk.text.c_str());
    };
    compare("daily tables", daily, awkDaily);
    compare("line usage tables", lineUsage, awkLines);
    if (!agree) return 1;
  } catch (const cw::RuntimeError& error) {
    Fail("error " + std::to_string(error.Number()) + ": " + error.Description());
  }
  return 0;
}
