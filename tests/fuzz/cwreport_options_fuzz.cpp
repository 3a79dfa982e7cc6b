// Any arguments through cwreport's report request parser, one argument per
// line of the input. Each command line is either taken, giving a request the
// reports can run, or refused as a usage mistake with a message; nothing
// else may happen (no runtime error escaping, no crash).

#include <cstdint>
#include <string>
#include <vector>

#include "cli/option_table.h"
#include "cli/report_options.h"
#include "fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace cw;
  cw::fuzz::InputBytes input(data, size);
  std::vector<std::string> args;
  while (!input.Rest().empty()) args.emplace_back(input.Line());
  try {
    const cli::ReportOptions options = cli::ParseReportOptions(args);
    if (!options.help && !options.kind && !options.history) {
      fuzz::Violated("a request without a report was taken");
    }
  } catch (const cli::UsageError& error) {
    if (error.text.empty()) fuzz::Violated("a usage mistake was refused without a message");
  }
  return 0;
}
