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

#include <spawn.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <utility>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "data/call_record.h"
#include "data/log_buffer.h"
#include "data/log_conversions.h"
#include "data/record_selection.h"
#include "printer/fixed_pitch_metrics.h"
#include "printer/orl_printer.h"
#include "reports/report_form.h"
#include "settings/settings_store.h"
#include "support/date_format.h"
#include "support/file_helpers.h"
#include "support/runtime_error.h"

extern char** environ;

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

struct Options {
  long sizeMb = 1024;
  int runs = 5;
  int awkRuns = 3;
  int lines = 4;
};

[[noreturn]] void Fail(const std::string& message) {
  std::fprintf(stderr, "analysis_bench: %s\n", message.c_str());
  std::exit(1);
}

Options ParseOptions(int argc, char** argv) {
  Options options;
  for (int i = 1; i < argc; ++i) {
    const std::string_view option = argv[i];
    if (i + 1 >= argc) Fail("missing value after " + std::string(option));
    const long value = std::strtol(argv[++i], nullptr, 10);
    // --awk-runs 0 leaves mawk out (for profiling the reports).
    if (value < (option == "--awk-runs" ? 0 : 1)) Fail(std::string(option) + " needs a larger whole number");
    if (option == "--size-mb") {
      options.sizeMb = value;
    } else if (option == "--runs") {
      options.runs = static_cast<int>(value);
    } else if (option == "--awk-runs") {
      options.awkRuns = static_cast<int>(value);
    } else if (option == "--lines") {
      if (value > 999) Fail("--lines takes at most 999");
      options.lines = static_cast<int>(value);
    } else {
      Fail("unknown option " + std::string(option) +
           " (options: --size-mb N --runs N --awk-runs N --lines N)");
    }
  }
  return options;
}

double Seconds(Clock::duration d) { return std::chrono::duration<double>(d).count(); }

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t n = values.size();
  return n % 2 == 1 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
}

// Runs a program and returns its standard output, and in cpuSeconds (when
// given) the user and system time it used; fails the bench when it cannot be
// started or does not end with status 0.
std::string RunProgram(const std::vector<std::string>& args, double* cpuSeconds = nullptr) {
  int out[2];
  if (::pipe(out) != 0) Fail("pipe failed");
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
  posix_spawn_file_actions_addclose(&actions, out[0]);
  std::vector<char*> argv;
  for (const std::string& arg : args) argv.push_back(const_cast<char*>(arg.c_str()));
  argv.push_back(nullptr);
  pid_t pid = 0;
  const int spawned = posix_spawnp(&pid, argv[0], &actions, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  ::close(out[1]);
  if (spawned != 0) {
    ::close(out[0]);
    Fail("cannot start " + args[0] + ": " + std::strerror(spawned));
  }
  std::string output;
  char chunk[4096];
  ssize_t n;
  while ((n = ::read(out[0], chunk, sizeof chunk)) > 0) output.append(chunk, static_cast<std::size_t>(n));
  ::close(out[0]);
  int status = 0;
  rusage usage{};
  ::wait4(pid, &status, 0, &usage);
  if (cpuSeconds != nullptr) {
    *cpuSeconds = static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
                  static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
  }
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) Fail(args[0] + " failed");
  return output;
}

fs::path SourceDir() { return CW_SOURCE_DIR; }

fs::path MakeLog(const Options& options) {
  const char* dataDir = std::getenv("CW_BENCH_DATA");
  const fs::path dir = dataDir != nullptr && *dataDir != '\0' ? fs::path(dataDir) : SourceDir() / "bench" / "data";
  const fs::path log = dir / ("CallLog-" + std::to_string(options.sizeMb) + "MiB.txt");
  if (fs::exists(log)) return log;

  const char* fromEnvironment = std::getenv("CW_MAKE_DEMO");
  const fs::path generator = fromEnvironment != nullptr && *fromEnvironment != '\0'
                                 ? fs::path(fromEnvironment)
                                 : fs::path(CW_BINARY_DIR) / "examples" / "demo" / "cw_make_demo";
  if (!fs::exists(generator)) {
    Fail("the log generator " + generator.string() + " is missing: build the target cw_make_demo");
  }
  fs::create_directories(dir);
  std::printf("generating %s with %s ...\n", log.c_str(), generator.c_str());
  std::fflush(stdout);
  const auto start = Clock::now();
  RunProgram({generator.string(), "--size-mb", std::to_string(options.sizeMb), "--log", log.string()});
  std::printf("generated in %.1f s\n", Seconds(Clock::now() - start));
  return log;
}

long PeakRssKb() {
  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

std::string Yyyymmdd(cw::CivilDate date) {
  char text[16];
  std::snprintf(text, sizeof text, "%04d%02d%02d", date.Year(), date.Month(), date.Day());
  return text;
}

// Settings are neither read nor written by these two reports.
class NoSettings : public cw::SettingsStore {
 public:
  std::string Get(std::string_view, std::string_view, std::string_view, std::string_view defaultValue) override {
    return std::string(defaultValue);
  }
  void Save(std::string_view, std::string_view, std::string_view, std::string_view) override {}
};

// A host without a screen: message boxes are written down, the previewed
// document is kept as its text export (a few hundred records) and nothing else.
class BenchHost : public cw::ReportHost {
 public:
  cw::MessageAnswer MessageBox(std::string_view title, std::string_view text, cw::MessageIcon,
                               cw::MessageButtons) override {
    messages.push_back(std::string(title) + ": " + std::string(text));
    return cw::MessageAnswer::kOk;
  }
  void SetBusy(bool) override {}
  void DoEvents() override { ++events; }
  void Progress(std::int64_t, std::int64_t) override {}
  void ShowPreview(cw::OrlPrinter& document) override {
    const std::string textFile = cw::GetTempFile("VPT");
    document.SetPrintTextFile(textFile);
    document.PrintToFile();
    text = cw::ReadWholeFile(textFile);
    std::remove(textFile.c_str());
  }
  void DrawBarChart(const cw::BarChartSpec&, const std::string&) override {
    Fail("no chart was asked for");
  }
  cw::ScreenTwips Screen() override { return {19200, 10800}; }
  cw::CivilDate Today() override { return cw::CivilDate::FromYmd(2026, 11, 22); }
  cw::TimeOfDay Now() override { return 9 * 3600; }
  std::string AppTitle() override { return "analysis_bench"; }

  std::vector<std::string> messages;
  std::string text;
  std::int64_t events = 0;
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

// This process's CPU time (one thread): the machine may be shared, and CPU
// time is what another program's load disturbs least.
double CpuSeconds() {
  timespec now{};
  ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

// Wall-clock and CPU seconds of the runs of one pass.
struct Times {
  std::vector<double> wall;
  std::vector<double> cpu;
  double Wall() const { return wall.empty() ? 0 : Median(wall); }
  double Cpu() const { return cpu.empty() ? 0 : Median(cpu); }
};

class Stopwatch {
 public:
  Stopwatch() : wall_(Clock::now()), cpu_(CpuSeconds()) {}
  // Adds the time since the start (or the last lap) to times and starts again.
  void Lap(Times& times) {
    const auto wall = Clock::now();
    const double cpu = CpuSeconds();
    times.wall.push_back(Seconds(wall - wall_));
    times.cpu.push_back(cpu - cpu_);
    wall_ = wall;
    cpu_ = cpu;
  }

 private:
  Clock::time_point wall_;
  double cpu_;
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
    const fs::path logPath = MakeLog(options);
    const long rssBeforeKb = PeakRssKb();

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
        lap.Lap(loadTimes);
        cw::SelectionCriteria criteria;
        criteria.from = first;
        criteria.to = last;
        criteria.direction = "InOut";
        cw::RecordSelection selection(log.Text(), criteria);
        std::int64_t count = 0;
        while (selection.Next()) ++count;
        lap.Lap(selectTimes);
        selected = count;
      }
      lap.Lap(releaseTimes);
      whole.Lap(readSelectTimes);
    };

    // (b), (c) The report routines through the report request.
    auto report = [&](std::int16_t reportKind, Measured& measured) {
      BenchHost host;
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
      watch.Lap(measured.times);
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
                                            "-f", (SourceDir() / "bench" / "analysis.awk").string(),
                                            logPath.string()};
      Measured measured;
      for (int run = 0; run < options.awkRuns; ++run) {
        const auto start = Clock::now();
        double cpu = 0;
        measured.text = RunProgram(awk, &cpu);
        measured.times.wall.push_back(Seconds(Clock::now() - start));
        measured.times.cpu.push_back(cpu);
      }
      return measured;
    };
    const Measured awkDaily = runAwk("daily");
    const Measured awkLines = runAwk("lines");
    const bool withAwk = options.awkRuns > 0;

    const long peakKb = PeakRssKb();
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
                static_cast<double>(peakKb) * 1024 / 1e6, mb, static_cast<double>(peakKb) * 1024 / 1e6 / mb,
                static_cast<double>(rssBeforeKb) * 1024 / 1e6);

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
