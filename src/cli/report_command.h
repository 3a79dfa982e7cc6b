#pragma once
// cwreport [options]: one report request from the command line, run as the
// report form's preview button runs it, with the document written to the
// requested outputs instead of a preview window.

#include <iosfwd>
#include <string>
#include <vector>

namespace cw::cli {

// args: every argument after the program name. "--text -" goes to out;
// messages, problems and usage errors to err (with a progress bar when err is
// the process's standard error on a terminal). Returns 0 when a document was
// produced, 2 when the request was refused or the arguments are wrong, 1 on
// an error.
int RunReport(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace cw::cli
