#pragma once
// What the benchmarks share: their command lines, clocks, medians, memory
// figures, the programs they start and the large inputs they keep, and a
// report host without a screen.

#include <errno.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <concepts>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "reports/report_host.h"
#include "settings/settings_store.h"
#include "support/civil_date.h"

namespace cw::bench {

using Clock = std::chrono::steady_clock;

// Ends the bench with status 1: a figure measured after a failure means nothing.
[[noreturn]] inline void Fail(const std::string& message) {
  std::fprintf(stderr, "%s: %s\n", program_invocation_short_name, message.c_str());
  std::exit(1);
}

// One "--name VALUE" option, stored straight into the bench's own options so
// that each bench only lists its options and their ranges.
class Option {
 public:
  // A whole number from least to most; the placeholder names it in the usage line.
  template <std::integral Whole>
  Option(std::string_view name, Whole& value, long least,
         long most = static_cast<long>(std::numeric_limits<Whole>::max()), std::string_view placeholder = "N")
      : name_(name),
        placeholder_(placeholder),
        rule_(most == static_cast<long>(std::numeric_limits<Whole>::max())
                  ? "a whole number of at least " + std::to_string(least)
                  : "a whole number from " + std::to_string(least) + " to " + std::to_string(most)),
        store_([&value, least, most](std::string_view text) {
          long number = 0;
          const char* const end = text.data() + text.size();
          const auto [stop, error] = std::from_chars(text.data(), end, number);
          if (error != std::errc() || stop != end || number < least || number > most) return false;
          value = static_cast<Whole>(number);
          return true;
        }) {}
  // A word made of some of the given letters (which passes to run, say).
  Option(std::string_view name, std::string& value, std::string_view letters)
      : name_(name),
        placeholder_(letters),
        rule_("letters of " + std::string(letters)),
        store_([&value, letters](std::string_view text) {
          if (text.empty() || text.find_first_not_of(letters) != std::string_view::npos) return false;
          value = text;
          return true;
        }) {}

  std::string_view Name() const { return name_; }
  std::string Usage() const { return "[" + std::string(name_) + " " + std::string(placeholder_) + "]"; }
  std::string Rule() const { return std::string(name_) + " takes " + rule_; }
  bool Store(std::string_view text) const { return store_(text); }

 private:
  std::string_view name_;
  std::string_view placeholder_;
  std::string rule_;
  std::function<bool(std::string_view)> store_;
};

// Reads the command line into the options. Figures for a misread command
// line would be figures of something else, so an unknown option, a missing
// value or a value out of range ends the bench with the usage line, status 2.
inline void ReadOptions(int argc, char** argv, std::initializer_list<Option> options) {
  auto refuse = [&options](const std::string& problem) {
    std::string usage = std::string("usage: ") + program_invocation_short_name;
    for (const Option& option : options) usage += " " + option.Usage();
    std::fprintf(stderr, "%s: %s\n%s\n", program_invocation_short_name, problem.c_str(), usage.c_str());
    std::exit(2);
  };
  for (int i = 1; i < argc; ++i) {
    const std::string_view name = argv[i];
    const auto option = std::find_if(options.begin(), options.end(), [name](const Option& o) { return o.Name() == name; });
    if (option == options.end()) refuse("unknown option " + std::string(name));
    if (i + 1 >= argc) refuse("missing value after " + std::string(name));
    if (!option->Store(argv[++i])) refuse(option->Rule() + ", not \"" + argv[i] + "\"");
  }
}

// Seconds as the benches print them, from the steady clock's ticks.
inline double Seconds(Clock::duration duration) { return std::chrono::duration<double>(duration).count(); }

// Processor time used by this process (user and system, every thread): the
// figure other programs on a shared machine disturb least.
inline double ProcessCpuSeconds() {
  timespec now{};
  ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

// One interval on both clocks, so that every figure can be given both ways.
struct Elapsed {
  double wallSeconds = 0;
  double cpuSeconds = 0;
};

// Wall-clock and processor time together: the machine may be shared, and
// processor time is what another program's load disturbs least.
class Stopwatch {
 public:
  Stopwatch() : wall_(Clock::now()), cpu_(ProcessCpuSeconds()) {}
  Elapsed Read() const { return {Seconds(Clock::now() - wall_), ProcessCpuSeconds() - cpu_}; }
  // The time since the start or the last lap; the next lap starts at once.
  Elapsed Lap() {
    const Clock::time_point wall = Clock::now();
    const double cpu = ProcessCpuSeconds();
    const Elapsed elapsed{Seconds(wall - wall_), cpu - cpu_};
    wall_ = wall;
    cpu_ = cpu;
    return elapsed;
  }

 private:
  Clock::time_point wall_;
  double cpu_;
};

// The median of the runs: one run slowed by other work does not move it.
inline double Median(std::vector<double> values) {
  if (values.empty()) return 0;
  std::sort(values.begin(), values.end());
  const std::size_t n = values.size();
  return n % 2 == 1 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
}

// Resident memory now, in bytes: what a pass holds once it is done.
inline double ResidentBytes() {
  std::ifstream statm("/proc/self/statm");
  long pages = 0;
  long resident = 0;
  statm >> pages >> resident;
  return static_cast<double>(resident) * static_cast<double>(::sysconf(_SC_PAGESIZE));
}

// Resident memory at this process's peak so far, in bytes: what a pass needed
// at its worst, which the memory targets are about.
inline double PeakResidentBytes() {
  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) * 1024;
}

// Runs a program (the log generator, mawk) and returns its standard output,
// and in cpuSeconds (when given) the user and system time it used, measured
// apart from this process's own; fails the bench when it cannot be started or
// does not end with status 0.
inline std::string RunProgram(const std::vector<std::string>& args, double* cpuSeconds = nullptr) {
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
  const int spawned = ::posix_spawnp(&pid, argv[0], &actions, nullptr, argv.data(), environ);
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

// Where large inputs are kept between runs, since they take a while to make:
// $CW_BENCH_DATA, else bench/data of the source tree (not committed).
inline std::filesystem::path BenchDataFolder() {
  const char* fromEnvironment = std::getenv("CW_BENCH_DATA");
  if (fromEnvironment != nullptr && *fromEnvironment != '\0') return fromEnvironment;
  return std::filesystem::path(CW_SOURCE_DIR) / "bench" / "data";
}

// The log at `log`, made by the demo generator (cw_make_demo of the build
// tree, or $CW_MAKE_DEMO) with the given options only when it is not there
// yet, since a large one takes a while.
inline std::filesystem::path DemoLog(const std::filesystem::path& log, const std::vector<std::string>& options) {
  namespace fs = std::filesystem;
  if (fs::exists(log)) return log;
  const char* fromEnvironment = std::getenv("CW_MAKE_DEMO");
  const fs::path generator = fromEnvironment != nullptr && *fromEnvironment != '\0'
                                 ? fs::path(fromEnvironment)
                                 : fs::path(CW_BINARY_DIR) / "examples" / "demo" / "cw_make_demo";
  if (!fs::exists(generator)) {
    Fail("the log generator " + generator.string() + " is missing: build the target cw_make_demo");
  }
  fs::create_directories(log.parent_path());
  std::printf("generating %s with %s ...\n", log.c_str(), generator.c_str());
  std::fflush(stdout);
  const Stopwatch watch;
  std::vector<std::string> command = {generator.string()};
  command.insert(command.end(), options.begin(), options.end());
  command.insert(command.end(), {"--log", log.string()});
  RunProgram(command);
  std::printf("generated in %.1f s\n", watch.Read().wallSeconds);
  return log;
}

// The log of about `megabytes` MiB, one file for analysis_bench and
// read_select_bench so that their figures are over the same calls.
inline std::filesystem::path DemoLogOfSize(long megabytes) {
  return DemoLog(BenchDataFolder() / ("CallLog-" + std::to_string(megabytes) + "MiB.txt"),
                 {"--size-mb", std::to_string(megabytes)});
}

// A date as the awk scripts take it (yyyymmdd), so that they compare dates as
// numbers.
inline std::string Yyyymmdd(CivilDate date) {
  char text[16];
  std::snprintf(text, sizeof text, "%04d%02d%02d", date.Year(), date.Month(), date.Day());
  return text;
}

// Settings are neither read nor written by the reports the benches run.
class NoSettings : public SettingsStore {
 public:
  std::string Get(std::string_view, std::string_view, std::string_view, std::string_view defaultValue) override {
    return std::string(defaultValue);
  }
  void Save(std::string_view, std::string_view, std::string_view, std::string_view) override {}
};

// A host without a screen and with a fixed clock. Message boxes go to stderr
// and are kept (a request that asked something measured something else);
// events are counted; the finished document is dropped unless a bench's own
// host does something with it.
class ScreenlessHost : public ReportHost {
 public:
  MessageAnswer MessageBox(std::string_view title, std::string_view text, MessageIcon, MessageButtons) override {
    messages.push_back(std::string(title) + ": " + std::string(text));
    std::fprintf(stderr, "%s\n", messages.back().c_str());
    return MessageAnswer::kOk;
  }
  void SetBusy(bool) override {}
  void DoEvents() override { ++events; }
  void Progress(std::int64_t, std::int64_t) override {}
  void ShowPreview(OrlPrinter&, const ReportData&) override {}
  void DrawBarChart(const BarChartSpec&, const std::string&) override { Fail("no chart was asked for"); }
  ScreenTwips Screen() override { return {19200, 10800}; }
  CivilDate Today() override { return today; }
  TimeOfDay Now() override { return 9 * 3600; }
  std::string AppTitle() override { return "Callwarden Reports"; }

  CivilDate today = CivilDate::FromYmd(2026, 11, 22);
  std::vector<std::string> messages;
  std::int64_t events = 0;
};

}  // namespace cw::bench
