#pragma once
// cwreport import: turns a PBX's CDR file into call-log records, once or
// (with --follow) for as long as it runs.

#include <iosfwd>
#include <string>
#include <vector>

namespace cw::cli {

// The text of "cwreport help import".
std::string ImportHelp();

// args: the arguments after "import". Exit status 0 done, 1 when no row
// could be imported or the log could not be written, 2 refused (options,
// settings, a missing file, an unlisted trunk).
int RunImport(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace cw::cli
