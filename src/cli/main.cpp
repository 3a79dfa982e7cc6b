// cwreport: the headless front end. Each subcommand lives in its own file and
// is listed below; arguments that start with no subcommand name are a report
// request.
#include <clocale>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "cli/dump_command.h"
#include "cli/export_command.h"
#include "cli/log_summary_command.h"
#include "cli/report_command.h"
#include "cli/report_options.h"

namespace {

using Command = int (*)(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
using Help = std::string (*)();

struct Subcommand {
  std::string_view name;
  Command run;
  Help help;
};

constexpr Subcommand kSubcommands[] = {
    {"log-summary", cw::cli::RunLogSummary, cw::cli::LogSummaryHelp},
    {"dump", cw::cli::RunDump, cw::cli::DumpHelp},
    {"export", cw::cli::RunExport, cw::cli::ExportHelp},
};

// cwreport help [SUBCOMMAND]: the help of the report request or of one
// subcommand.
int RunHelp(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  if (args.empty() || args[0] == "report") {
    if (args.size() <= 1) {
      out << cw::cli::ReportHelp();
      return 0;
    }
  } else if (args.size() == 1) {
    for (const Subcommand& subcommand : kSubcommands) {
      if (args[0] == subcommand.name) {
        out << subcommand.help();
        return 0;
      }
    }
  }
  err << "cwreport help: no help for \"" << args[0] << (args.size() > 1 ? " ..." : "")
      << "\"; the subcommands are log-summary, dump and export\n";
  return 2;
}

// Help and the listings go to standard output: a write that failed there
// (a full disk, a closed pipe) must not end in success.
int Finish(int status) {
  std::cout.flush();
  if (!std::cout && status == 0) {
    std::cerr << "cwreport: cannot write to standard output\n";
    return 1;
  }
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  // The locale's character set decides how typed names are read.
  std::setlocale(LC_CTYPE, "");
  if (argc >= 2) {
    const std::vector<std::string> args(argv + 2, argv + argc);
    if (std::string_view(argv[1]) == "help") return Finish(RunHelp(args, std::cout, std::cerr));
    for (const Subcommand& subcommand : kSubcommands) {
      if (argv[1] == subcommand.name) return Finish(subcommand.run(args, std::cout, std::cerr));
    }
  }
  const std::vector<std::string> args(argv + 1, argv + argc);
  return Finish(cw::cli::RunReport(args, std::cout, std::cerr));
}
