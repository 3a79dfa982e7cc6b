// Per-line helpers of the call-log reader and the string builder: each runs
// once or more for every line of a log that can hold millions of calls.

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "support/date_format.h"
#include "support/fast_cat.h"
#include "support/time_text.h"
#include "support/whole_numbers.h"

namespace {

void BM_FastCatAppendLogLine(benchmark::State& state) {
  // The pages are made once; Reset writes over them again, as a caller
  // reusing one builder does.
  const std::string line(100, 'x');
  cw::cFastCat builder;
  builder.SetPageSize(64 * 1024 * 1024);
  for (auto _ : state) {
    builder.Reset();
    for (int i = 0; i < 100000; ++i) builder.Append(line);
    benchmark::DoNotOptimize(builder.Length());
  }
  state.SetItemsProcessed(state.iterations() * 100000);
  state.SetBytesProcessed(state.iterations() * 100000 * 100);
}
BENCHMARK(BM_FastCatAppendLogLine)->Unit(benchmark::kMillisecond);

void BM_TextToInt16(benchmark::State& state) {
  const std::vector<std::string> fields = {" 5", "12", "2024", "  3", "07"};
  for (auto _ : state) {
    for (const std::string& field : fields) benchmark::DoNotOptimize(cw::TextToInt16(field));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(fields.size()));
}
BENCHMARK(BM_TextToInt16);

void BM_ParseTimeText(benchmark::State& state) {
  const std::vector<std::string> fields = {" 9:05AM", "12:30PM", "23:59:59", "1:15 p"};
  for (auto _ : state) {
    for (const std::string& field : fields) benchmark::DoNotOptimize(cw::ParseTimeText(field));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(fields.size()));
}
BENCHMARK(BM_ParseTimeText);

void BM_ParseCaptionDate(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(cw::ParseCaptionDate("01/05/2024"));
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_ParseCaptionDate);

}  // namespace

BENCHMARK_MAIN();
