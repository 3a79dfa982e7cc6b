// Import speed: rows of Asterisk's default cdr_csv layout (21 columns, as a
// current Asterisk writes them: ring groups through Local/ channels, calls in
// and out, calls between extensions) read, merged into calls and written as
// log records, in memory. The target is 500,000 rows a second on one core.

#include <benchmark/benchmark.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>

#include "import/cdr_import.h"
#include "import/csv_reader.h"
#include "import/log_record_writer.h"

namespace {

// n rows of a busy office's day after day, about four rows a call.
std::string AsteriskRows(int rows) {
  std::string text;
  char row[1024];
  int call = 0;
  for (int written = 0; written < rows; ++call) {
    const int day = 1 + call / 2000 % 28;
    const int second = 8 * 3600 + call % 2000 * 17;
    auto stamp = [day](int at) {
      char buffer[32];
      std::snprintf(buffer, sizeof buffer, "2026-10-%02d %02d:%02d:%02d", day, at / 3600 % 24, at / 60 % 60, at % 60);
      return std::string(buffer);
    };
    const std::string start = stamp(second), answer = stamp(second + 9), end = stamp(second + 130);
    const std::string linked = "17900" + std::to_string(call) + ".1";
    auto put = [&](const char* src, const char* dst, const char* context, const char* channel, const char* dstChannel,
                   bool answered) {
      const int n = std::snprintf(
          row, sizeof row,
          "\"\",\"%s\",\"%s\",\"%s\",\"\"\"CALLER %d\"\" <%s>\",\"%s\",\"%s\",\"Dial\",\"%s,20,tT\",\"%s\",\"%s\",\"%s\","
          "130,%d,\"%s\",\"DOCUMENTATION\",\"%s\",\"\",\"\",\"%s\",%d\n",
          src, dst, context, call % 500, src, channel, dstChannel, dstChannel, start.c_str(),
          answered ? answer.c_str() : "", end.c_str(), answered ? 121 : 0, answered ? "ANSWERED" : "NO ANSWER",
          linked.c_str(), linked.c_str(), written % 50);
      text.append(row, static_cast<std::size_t>(n));
      ++written;
    };
    switch (call % 4) {
      case 0:  // a ring group: two Local/ legs and the trunk leg
        put("5551234567", "600", "ext-group", "Local/600@ext-group-0000a;2", "SIP/201-0000b", false);
        put("5551234567", "600", "ext-group", "Local/600@ext-group-0000c;2", "SIP/202-0000d", true);
        put("5551234567", "600", "from-pstn", "SIP/211553-0000e", "Local/600@ext-group-0000c;1", true);
        break;
      case 1:
        put("5559876543", "201", "from-pstn", "PJSIP/telco-0000f", "SIP/201-00010", call % 8 != 1);
        break;
      case 2:
        put("201", "5552013300", "from-internal", "SIP/201-00011", "PJSIP/telco-00012", true);
        break;
      default:
        put("201", "202", "from-internal", "SIP/201-00013", "SIP/202-00014", true);
        break;
    }
  }
  return text;
}

constexpr int kRows = 400000;

const std::string& Rows() {
  static const std::string rows = AsteriskRows(kRows);
  return rows;
}

cw::ImportRules Rules() {
  cw::ImportRules rules;
  rules.trunks = {{"SIP/211553", 1}, {"PJSIP/telco", 2}};
  rules.inboundContexts = {"from-pstn"};
  return rules;
}

// The whole import but the file: rows to records.
void BM_ImportAsteriskRows(benchmark::State& state) {
  const std::string& text = Rows();
  std::size_t records = 0;
  for (auto _ : state) {
    cw::CdrImporter importer(Rules(), std::nullopt, {});
    importer.Feed(text, 1, true, 0);
    std::string log;
    for (const cw::KeyedCall& call : importer.TakeAll()) cw::AppendLogRecord(log, call.call);
    records = log.size() / 104;
    benchmark::DoNotOptimize(log.data());
  }
  state.SetItemsProcessed(state.iterations() * kRows);
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
  state.counters["calls"] = static_cast<double>(records);
}
// Rates are per second of CPU time: the target is for one core, whatever else
// the machine runs.
BENCHMARK(BM_ImportAsteriskRows)->Unit(benchmark::kMillisecond);

// The CSV reader alone, for the share it takes.
void BM_ReadCsvRows(benchmark::State& state) {
  const std::string& text = Rows();
  for (auto _ : state) {
    cw::CsvReader reader(text);
    cw::CsvRow row;
    std::size_t fields = 0;
    while (reader.Next(row) == cw::CsvReader::Result::kRow) fields += row.fields.size();
    benchmark::DoNotOptimize(fields);
  }
  state.SetItemsProcessed(state.iterations() * kRows);
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(BM_ReadCsvRows)->Unit(benchmark::kMillisecond);

// The CPU time a process has used so far, in clock ticks.
long CpuTicks(pid_t pid) {
  std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
  std::string text((std::istreambuf_iterator<char>(stat)), std::istreambuf_iterator<char>());
  std::istringstream fields(text.substr(text.rfind(')') + 2));
  std::string field;
  long user = 0, system = 0;
  for (int i = 3; i <= 15 && fields >> field; ++i) {
    if (i == 14) user = std::stol(field);
    if (i == 15) system = std::stol(field);
  }
  return user + system;
}

// Follow mode while the PBX is quiet: cwreport import --follow on a file
// that does not change, its CPU time over a few seconds (near zero: it
// sleeps until the file changes).
void FollowModeIdle() {
  std::string pattern = (std::filesystem::temp_directory_path() / "cw-follow-XXXXXX").string();
  if (::mkdtemp(pattern.data()) == nullptr) return;
  const std::filesystem::path folder = pattern;
  const std::string cdr = (folder / "Master.csv").string();
  const std::string log = (folder / "CallLog.txt").string();
  std::ofstream(cdr) << AsteriskRows(8);
  const std::string settings = (folder / "settings.ini").string();
  std::ofstream(settings) << "[Import]\nTrunks=SIP/211553=1, PJSIP/telco=2\n";
  const std::string program = CW_BINARY_DIR "/src/cli/cwreport";
  const pid_t child = ::fork();
  if (child == 0) {
    if (!std::freopen("/dev/null", "w", stdout)) std::_Exit(99);
    ::execl(program.c_str(), program.c_str(), "import", "--follow", "--settings", settings.c_str(), "--cdr", cdr.c_str(),
            "--log", log.c_str(), static_cast<char*>(nullptr));
    std::_Exit(98);
  }
  // Past its start and the writing of the file's calls.
  std::this_thread::sleep_for(std::chrono::seconds(2));
  const long before = CpuTicks(child);
  constexpr int kSeconds = 5;
  std::this_thread::sleep_for(std::chrono::seconds(kSeconds));
  const long used = CpuTicks(child) - before;
  ::kill(child, SIGTERM);
  int status = 0;
  ::waitpid(child, &status, 0);
  std::filesystem::remove_all(folder);
  std::printf("follow mode idle: %.0f ms of CPU in %d s (%s)\n", 1000.0 * static_cast<double>(used) /
              static_cast<double>(::sysconf(_SC_CLK_TCK)), kSeconds,
              WIFEXITED(status) && WEXITSTATUS(status) == 0 ? "stopped cleanly on SIGTERM" : "did not stop cleanly");
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  FollowModeIdle();
  return 0;
}
