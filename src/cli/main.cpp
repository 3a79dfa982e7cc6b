// cwreport: the headless front end. Each subcommand lives in its own file and
// is listed below; arguments that start with no subcommand name are a report
// request.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <cstring>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "cli/dump_command.h"
#include "cli/export_command.h"
#include "cli/import_command.h"
#include "cli/log_summary_command.h"
#include "cli/report_command.h"
#include "cli/report_options.h"
#include "cw_build_version.h"
#include "support/temporary_files.h"

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
    {"import", cw::cli::RunImport, cw::cli::ImportHelp},
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
      << "\"; the subcommands are log-summary, dump, export and import\n";
  return 2;
}

// A standard stream the caller closed (">&-") would be taken by the next file
// opened, and output meant for the terminal would land in it. /dev/null
// opened for reading holds the place: a write to it fails, and is reported.
void HoldClosedStandardStreams() {
  for (int fd = 0; fd <= 2; ++fd) {
    if (::fcntl(fd, F_GETFD) != -1 || errno != EBADF) continue;
    const int held = ::open("/dev/null", O_RDONLY);
    if (held >= 0 && held != fd) ::close(held);
  }
}

int RunCommand(int argc, char** argv) {
  if (argc == 2 && std::string_view(argv[1]) == "--version") {
    std::cout << "cwreport " CW_BUILD_VERSION "\n";
    return 0;
  }
  if (argc >= 2) {
    const std::vector<std::string> args(argv + 2, argv + argc);
    if (std::string_view(argv[1]) == "help") return RunHelp(args, std::cout, std::cerr);
    for (const Subcommand& subcommand : kSubcommands) {
      if (argv[1] == subcommand.name) return subcommand.run(args, std::cout, std::cerr);
    }
  }
  const std::vector<std::string> args(argv + 1, argv + argc);
  return cw::cli::RunReport(args, std::cout, std::cerr);
}

}  // namespace

int main(int argc, char** argv) {
  HoldClosedStandardStreams();
  cw::InstallTemporaryFileCleanup();
  // The locale's character set decides how typed names are read.
  std::setlocale(LC_CTYPE, "");
  const int status = RunCommand(argc, argv);
  // Output that never arrived (a full disk, a closed pipe) must not pass for
  // a command that did its work. (A status of 1 has said what went wrong.)
  errno = 0;
  if (std::cout.flush() || status == 1) return status;
  const int error = errno;
  std::cerr << "cwreport: cannot write to standard output" << (error != 0 ? ": " : "")
            << (error != 0 ? std::strerror(error) : "") << '\n';
  return status == 0 ? 1 : status;
}
