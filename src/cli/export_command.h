#pragma once
// cwreport export SPOOL [--text F|-] [--pdf F] [--png DIR] [--dpi N] [--paper letter|a4]:
// a kept spool replayed into the text export, a PDF and page images.

#include <iosfwd>
#include <string>
#include <vector>

namespace cw::cli {

// The text of "cwreport help export".
std::string ExportHelp();

// args: the arguments after "export". The text export with "-" goes to out;
// problems and errors to err. Returns 0 done, 1 an error or problems in the
// spool (what could be used is still exported), 2 bad usage.
int RunExport(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace cw::cli
