// Reading and selecting a large call log, measured three ways in one run:
//   (a) a plain memchr line scan of the loaded buffer, the floor for any reader;
//   (b) GetRecord + ParseLogDate + RecordSelection over the same buffer, with a
//       realistic request: half a year in the middle of the log, inbound calls,
//       an exact search for two numbers;
//   (c) mawk running bench/select.awk, the same selection, on the same file.
// Prints MB/s (1 MB = 10^6 bytes, over the bytes each pass went through), the
// medians of several runs, the ratios, and the peak resident memory against
// the size of the file.
//
//   read_select_bench [--size-mb N] [--runs N] [--awk-runs N] [--months N] [--passes abwc]
//
// The log (CallLog-<N>MiB.txt under $CW_BENCH_DATA, default bench/data) is made
// by cw_make_demo when it is not there yet.

#include <sys/resource.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bench_support.h"
#include "data/call_record.h"
#include "data/log_buffer.h"
#include "data/log_conversions.h"
#include "data/record_selection.h"
#include "support/date_format.h"
#include "support/runtime_error.h"

namespace {

namespace fs = std::filesystem;
using namespace cw::bench;

struct Options {
  long sizeMb = 1024;
  int runs = 5;
  int awkRuns = 3;
  int months = 6;
  std::string passes = "abwc";  // which passes to run: a, b, w (b'), c
};

Options ParseOptions(int argc, char** argv) {
  Options options;
  ReadOptions(argc, argv,
              {{"--size-mb", options.sizeMb, 1},
               {"--runs", options.runs, 1},
               {"--awk-runs", options.awkRuns, 1},
               {"--months", options.months, 1},
               {"--passes", options.passes, "abwc"}});
  return options;
}

// The record that starts at or after offset (its line, trimmed of its end).
cw::CallRecord RecordNear(std::string_view buffer, std::size_t offset) {
  std::size_t start = buffer.find('\n', offset);
  start = start == std::string_view::npos ? 0 : start + 1;
  const std::size_t end = buffer.find("\r\n", start);
  return cw::CallRecord(buffer.substr(start, end - start));
}

struct Measured {
  double seconds;       // median CPU time of the pass
  double wallSeconds;   // median wall-clock time, for reference
  std::size_t bytes;    // bytes the pass went through
  std::int64_t result;  // what it found, to compare and to keep the work alive
};

// CPU seconds used so far by this process, or by its finished children.
double CpuSeconds(bool children) {
  if (!children) return ProcessCpuSeconds();
  rusage usage{};
  ::getrusage(RUSAGE_CHILDREN, &usage);
  auto seconds = [](const timeval& t) { return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) / 1e6; };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

// Runs a pass several times. The machine may be shared with other work, so
// the figures are CPU time (the pass's own cost), with wall time beside them.
Measured Repeat(int runs, bool inChild, const std::function<std::pair<std::size_t, std::int64_t>()>& pass) {
  std::vector<double> cpu;
  std::vector<double> wall;
  std::pair<std::size_t, std::int64_t> outcome{};
  for (int k = 0; k < runs; ++k) {
    const double cpuStart = CpuSeconds(inChild);
    const Stopwatch watch;
    outcome = pass();
    wall.push_back(watch.Read().wallSeconds);
    cpu.push_back(CpuSeconds(inChild) - cpuStart);
  }
  return {Median(cpu), Median(wall), outcome.first, outcome.second};
}

double MBps(const Measured& m) { return static_cast<double>(m.bytes) / 1e6 / m.seconds; }

}  // namespace

int main(int argc, char** argv) {
  const Options options = ParseOptions(argc, argv);
  try {
    const fs::path logPath = DemoLogOfSize(options.sizeMb);
    const double peakBeforeBytes = PeakResidentBytes();

    const Stopwatch loadWatch;
    const cw::LogBuffer log = cw::LogBuffer::Load(logPath.string());
    const double loadSeconds = loadWatch.Read().wallSeconds;
    const std::string_view buffer = log.Text();
    if (buffer.size() < 1000) Fail("the log " + logPath.string() + " is nearly empty");

    // The request: half a year (or --months) from 40% into the log, inbound
    // calls, two numbers of which one is a caller in the middle of the period.
    const cw::CivilDate from = cw::ParseLogDate(RecordNear(buffer, buffer.size() / 10 * 4).Date());
    const cw::CivilDate to = from.AddDays(options.months * 365 / 12);
    const cw::CallRecord caller = RecordNear(buffer, buffer.size() / 100 * 42);
    const std::string numbers = cw::CleanNumber(caller.Number()) + ", 5550000000";
    const cw::CivilDate first =
        cw::ParseLogDate(cw::CallRecord(buffer.substr(0, buffer.find("\r\n"))).Date());
    const cw::CivilDate last = cw::ParseLogDate(RecordNear(buffer, buffer.size() - 200).Date());

    std::printf("log: %s, %.1f MB, %s to %s\n", logPath.c_str(), static_cast<double>(buffer.size()) / 1e6,
                cw::FormatDate(first, "mm/dd/yyyy").c_str(), cw::FormatDate(last, "mm/dd/yyyy").c_str());
    std::printf("request: %s to %s, direction In, exact numbers \"%s\"\n",
                cw::FormatDate(from, "mm/dd/yyyy").c_str(), cw::FormatDate(to, "mm/dd/yyyy").c_str(),
                numbers.c_str());
    std::printf("load: %.2f s (%.0f MB/s, LogBuffer::Load, a read-only mapping for a large log)\n\n", loadSeconds,
                static_cast<double>(buffer.size()) / 1e6 / loadSeconds);

    auto wanted = [&options](char pass) { return options.passes.find(pass) != std::string::npos; };
    using Pass = std::function<std::pair<std::size_t, std::int64_t>()>;
    auto measure = [&wanted](char pass, int runs, bool inChild, const Pass& run) {
      return wanted(pass) ? std::optional<Measured>(Repeat(runs, inChild, run)) : std::nullopt;
    };

    // (a) The floor: find every line feed.
    const Pass scanPass = [buffer] {
      std::int64_t lines = 0;
      const char* p = buffer.data();
      const char* const end = p + buffer.size();
      while ((p = static_cast<const char*>(std::memchr(p, '\n', static_cast<std::size_t>(end - p)))) != nullptr) {
        ++lines;
        ++p;
      }
      return std::pair{buffer.size(), lines};
    };
    const auto scan = measure('a', options.runs, false, scanPass);

    // (b) The reports' loop; it stops at the first call after the period, as
    // the reports do, so its rate is counted over the bytes it went through.
    auto selection = [buffer, &numbers](cw::CivilDate periodFrom, cw::CivilDate periodTo) {
      return [=] {
        cw::SelectionCriteria criteria;
        criteria.from = periodFrom;
        criteria.to = periodTo;
        criteria.direction = "In";
        criteria.search = cw::SearchBy::kNumber;
        criteria.searchText = numbers;
        cw::RecordSelection select(buffer, criteria);
        std::int64_t selected = 0;
        select.ForEach([&selected](const cw::CallRecord&, cw::CivilDate) { ++selected; }, 4096, [] {});
        return std::pair{select.BytesConsumed(), selected};
      };
    };
    const auto select = measure('b', options.runs, false, selection(from, to));
    // The same tests over every record of the log: the heaviest request.
    const auto selectAll = measure('w', options.runs, false, selection(first, last));

    // (c) mawk on the file. It stops after the period as (b) does; its
    // bytes are counted as (b)'s.
    const std::vector<std::string> awk = {"mawk",
                                          "-v", "from=" + Yyyymmdd(from),
                                          "-v", "to=" + Yyyymmdd(to),
                                          "-v", "dir=In",
                                          "-v", "numbers=" + numbers,
                                          "-f", (fs::path(CW_SOURCE_DIR) / "bench" / "select.awk").string(),
                                          logPath.string()};
    const std::size_t periodBytes = select ? select->bytes : buffer.size();
    const auto mawk = measure('c', options.awkRuns, true, [&awk, periodBytes] {
      return std::pair{periodBytes, std::strtoll(RunProgram(awk).c_str(), nullptr, 10)};
    });

    // The machine may be busy with other work that comes and goes; (a) and
    // (b) run in alternation as well, and the median of the ratios of each
    // pair is the steadiest figure for how they compare.
    std::optional<double> pairedRatio;
    if (scan && select) {
      std::vector<double> ratios;
      const auto selectPass = selection(from, to);
      for (int k = 0; k < options.runs; ++k) {
        const Measured a = Repeat(1, false, scanPass);
        const Measured b = Repeat(1, false, selectPass);
        ratios.push_back(MBps(a) / MBps(b));
      }
      pairedRatio = Median(ratios);
    }

    const double peakBytes = PeakResidentBytes();
    const double fileMb = static_cast<double>(buffer.size()) / 1e6;

    std::printf("%-46s %8s %8s %8s %10s\n", "pass (median)", "cpu s", "wall s", "MB/s", "found");
    auto row = [](const char* name, const std::optional<Measured>& m, const char* what) {
      if (!m) return;
      std::printf("%-46s %8.3f %8.3f %8.0f %10lld %s\n", name, m->seconds, m->wallSeconds, MBps(*m),
                  static_cast<long long>(m->result), what);
    };
    row("(a) memchr line scan, whole buffer", scan, "lines");
    row("(b) GetRecord+ParseLogDate+RecordSelection", select, "calls");
    row("(b') the same over the whole log's period", selectAll, "calls");
    row("(c) mawk -f bench/select.awk", mawk, "calls");
    if (select) {
      std::printf("(b) and (c) stop after the period: %.0f MB of the log read\n",
                  static_cast<double>(select->bytes) / 1e6);
    }
    std::printf("\n");
    if (scan && select) {
      std::printf("(b) / (a), time per byte:  %.2fx the memchr scan (target: at most 2x)\n",
                  MBps(*scan) / MBps(*select));
    }
    if (pairedRatio) {
      std::printf("(b) / (a), time per byte, median of %d interleaved pairs: %.2fx\n", options.runs, *pairedRatio);
    }
    if (scan && selectAll) {
      std::printf("(b') / (a), same bytes:    %.2fx the memchr scan\n", selectAll->seconds / scan->seconds);
    }
    if (select && mawk) {
      std::printf("(c) / (b), same selection: %.1fx faster than mawk (target: at least 10x)\n",
                  mawk->seconds / select->seconds);
    }
    std::printf("peak RSS: %.1f MB for a %.1f MB log = %.3f x the file (before loading: %.1f MB; "
                "target: at most 1.10)\n",
                peakBytes / 1e6, fileMb, peakBytes / 1e6 / fileMb, peakBeforeBytes / 1e6);
    if (select && mawk && mawk->result != select->result) {
      std::printf("MISMATCH: mawk selected %lld calls, the reader %lld\n", static_cast<long long>(mawk->result),
                  static_cast<long long>(select->result));
      return 1;
    }
  } catch (const cw::RuntimeError& error) {
    Fail("error " + std::to_string(error.Number()) + ": " + error.Description());
  }
  return 0;
}
