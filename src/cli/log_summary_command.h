#pragma once
// cwreport log-summary: the oldest date of a call log and its calls per line.

#include <iosfwd>
#include <string>
#include <vector>

namespace cw::cli {

// The text of "cwreport help log-summary".
std::string LogSummaryHelp();

// args: the arguments after "log-summary". Writes the summary to out and
// complaints to err; returns the exit status (0 done, 2 refused, 1 error).
int RunLogSummary(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace cw::cli
