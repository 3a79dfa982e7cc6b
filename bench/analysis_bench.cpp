// The daily call analysis and the line usage summary over a large call log,
// measured in one run against two yardsticks:
//   (a) the data layer's own read-and-select: LogBuffer::Load and
//       RecordSelection over the whole log (also shown without the load);
//   (b) Process_DailySummary and (c) Process_LineUsage, the report routines
//       themselves run through the report request (each loads the log, walks
//       it and writes its two tables), with fixed-pitch metrics and a host
//       that keeps only the text export;
//   (d) mawk running bench/analysis.awk, computing the same tables in one
//       pass over the same file.
// The request is the heaviest one: every call of the log, in and out. The
// tables of (b) and (c) are checked word for word against those of (d).
// Prints the medians, the ratios and the peak resident memory.
//
//   analysis_bench [--size-mb N] [--runs N] [--awk-runs N] [--lines N]
//
// The log (CallLog-<N>MiB.txt under $CW_BENCH_DATA, default bench/data) is made
// by cw_make_demo when it is not there yet; read_select_bench uses the same file.

#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
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

// Runs a program and returns its standard output; fails the bench when it
// cannot be started or does not end with status 0.
std::string RunProgram(const std::vector<std::string>& args) {
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
  ::waitpid(pid, &status, 0);
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

struct Measured {
  double seconds = 0;  // median
  std::string text;    // what the last run produced
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
    std::vector<double> loadTimes;
    std::vector<double> selectTimes;
    std::vector<double> readSelectTimes;
    std::int64_t selected = 0;
    for (int run = 0; run < options.runs; ++run) {
      const auto start = Clock::now();
      const cw::LogBuffer log = cw::LogBuffer::Load(logPath.string());
      const auto loaded = Clock::now();
      cw::SelectionCriteria criteria;
      criteria.from = first;
      criteria.to = last;
      criteria.direction = "InOut";
      cw::RecordSelection selection(log.Text(), criteria);
      std::int64_t count = 0;
      while (selection.Next()) ++count;
      const auto done = Clock::now();
      loadTimes.push_back(Seconds(loaded - start));
      selectTimes.push_back(Seconds(done - loaded));
      readSelectTimes.push_back(Seconds(done - start));
      selected = count;
    }

    // (b), (c) The report routines through the report request.
    auto report = [&](std::int16_t reportKind) {
      Measured measured;
      std::vector<double> times;
      for (int run = 0; run < options.runs; ++run) {
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
        const auto start = Clock::now();
        const cw::RequestOutcome outcome = form.cmdPrintQuery_Click();
        times.push_back(Seconds(Clock::now() - start));
        if (outcome != cw::RequestOutcome::kProduced || !host.messages.empty()) {
          Fail("the report did not come out: " + (host.messages.empty() ? std::string("no document")
                                                                         : host.messages.front()));
        }
        measured.text = host.text;
        measured.count = host.events;
      }
      measured.seconds = Median(times);
      return measured;
    };
    const Measured daily = report(cw::kind::kDailyCallStatistics);
    const Measured lineUsage = report(cw::kind::kLineUsageStatistics);

    // (d) mawk, both tables in one pass.
    const std::vector<std::string> awk = {"mawk",
                                          "-v", "from=" + Yyyymmdd(first),
                                          "-v", "to=" + Yyyymmdd(last),
                                          "-v", "dir=InOut",
                                          "-v", "lines=" + std::to_string(options.lines),
                                          "-f", (SourceDir() / "bench" / "analysis.awk").string(),
                                          logPath.string()};
    std::vector<double> awkTimes;
    std::string awkText;
    for (int run = 0; run < options.awkRuns; ++run) {
      const auto start = Clock::now();
      awkText = RunProgram(awk);
      awkTimes.push_back(Seconds(Clock::now() - start));
    }
    const double awkSeconds = awkTimes.empty() ? 0 : Median(awkTimes);

    const long peakKb = PeakRssKb();
    const double mb = static_cast<double>(logBytes) / 1e6;
    const double load = Median(loadTimes);
    const double select = Median(selectTimes);
    const double readSelect = Median(readSelectTimes);
    const double both = daily.seconds + lineUsage.seconds;

    std::printf("%-58s %9s %9s\n", "pass (median)", "seconds", "MB/s");
    std::printf("%-58s %9.3f %9.0f\n", "(a) LogBuffer::Load", load, mb / load);
    std::printf("%-58s %9.3f %9.0f   %lld calls\n", "(a) RecordSelection over the loaded buffer", select,
                mb / select, static_cast<long long>(selected));
    std::printf("%-58s %9.3f %9.0f\n", "(a) read-and-select: load + selection", readSelect, mb / readSelect);
    std::printf("%-58s %9.3f %9.0f\n", "(b) daily call analysis (Process_DailySummary, whole request)",
                daily.seconds, mb / daily.seconds);
    std::printf("%-58s %9.3f %9.0f\n", "(c) line usage summary (Process_LineUsage, whole request)",
                lineUsage.seconds, mb / lineUsage.seconds);
    if (!awkTimes.empty()) {
      std::printf("%-58s %9.3f %9.0f\n", "(d) mawk -f bench/analysis.awk, both tables in one pass", awkSeconds,
                  mb / awkSeconds);
    }
    std::printf("\n");
    std::printf("(b) / (a) read-and-select:   %.2fx (target: at most 1.5x)\n", daily.seconds / readSelect);
    std::printf("(c) / (a) read-and-select:   %.2fx (target: at most 1.5x)\n", lineUsage.seconds / readSelect);
    std::printf("(b) - load / (a) selection:  %.2fx, the walk and the tables without the load\n",
                (daily.seconds - load) / select);
    std::printf("(c) - load / (a) selection:  %.2fx\n", (lineUsage.seconds - load) / select);
    if (!awkTimes.empty()) {
      std::printf("(d) / ((b) + (c)):           %.1fx faster than mawk (target: at least 10x)\n", awkSeconds / both);
    }
    std::printf("progress/events per report:  %lld (daily), %lld (line usage)\n",
                static_cast<long long>(daily.count), static_cast<long long>(lineUsage.count));
    std::printf("peak RSS: %.1f MB for a %.1f MB log = %.3f x the file (before loading: %.1f MB)\n",
                static_cast<double>(peakKb) * 1024 / 1e6, mb, static_cast<double>(peakKb) * 1024 / 1e6 / mb,
                static_cast<double>(rssBeforeKb) * 1024 / 1e6);

    if (awkTimes.empty()) return 0;
    // The same tables, word for word.
    std::vector<std::string> reports = TableWords(daily.text);
    const std::vector<std::string> lineWords = TableWords(lineUsage.text);
    reports.insert(reports.end(), lineWords.begin(), lineWords.end());
    const std::vector<std::string> expected = AllWords(awkText);
    if (reports != expected) {
      std::size_t at = 0;
      while (at < reports.size() && at < expected.size() && reports[at] == expected[at]) ++at;
      std::printf("MISMATCH at word %zu: reports \"%s\", mawk \"%s\"\n", at,
                  at < reports.size() ? reports[at].c_str() : "(end)",
                  at < expected.size() ? expected[at].c_str() : "(end)");
      std::printf("--- reports ---\n%s%s--- mawk ---\n%s", daily.text.c_str(), lineUsage.text.c_str(),
                  awkText.c_str());
      return 1;
    }
    std::printf("tables: the reports and mawk agree (%zu words)\n", expected.size());
  } catch (const cw::RuntimeError& error) {
    Fail("error " + std::to_string(error.Number()) + ": " + error.Description());
  }
  return 0;
}
