#pragma once
// cwreport dump SPOOL: every record of a spool file as one readable line.

#include <iosfwd>
#include <string>
#include <vector>

namespace cw::cli {

// The text of "cwreport help dump".
std::string DumpHelp();

// args: the arguments after "dump". The records go to out, the problems of a
// damaged spool and errors to err. Returns 0 for a sound spool, 1 when it has
// problems (every whole record is still printed) or cannot be read, 2 for bad
// usage.
int RunDump(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace cw::cli
