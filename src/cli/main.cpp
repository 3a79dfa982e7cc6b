// cwreport: the headless front end. Each subcommand lives in its own file and
// is listed below; arguments that start with no subcommand name are a report
// request.
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "cli/dump_command.h"
#include "cli/export_command.h"
#include "cli/log_summary_command.h"
#include "cli/report_command.h"

namespace {

using Command = int (*)(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

struct Subcommand {
  std::string_view name;
  Command run;
};

constexpr Subcommand kSubcommands[] = {
    {"log-summary", cw::cli::RunLogSummary},
    {"dump", cw::cli::RunDump},
    {"export", cw::cli::RunExport},
};

}  // namespace

int main(int argc, char** argv) {
  if (argc >= 2) {
    for (const Subcommand& subcommand : kSubcommands) {
      if (argv[1] == subcommand.name) {
        const std::vector<std::string> args(argv + 2, argv + argc);
        return subcommand.run(args, std::cout, std::cerr);
      }
    }
  }
  const std::vector<std::string> args(argv + 1, argv + argc);
  return cw::cli::RunReport(args, std::cout, std::cerr);
}
