// Import speed: rows of Asterisk's default cdr_csv layout (21 columns, as a
// current Asterisk writes them: ring groups through Local/ channels, calls in
// and out, calls between extensions) read, merged into calls and written as
// log records, in memory. The target is 500,000 rows a second on one core.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

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
BENCHMARK(BM_ImportAsteriskRows)->Unit(benchmark::kMillisecond)->UseRealTime();

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
BENCHMARK(BM_ReadCsvRows)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
