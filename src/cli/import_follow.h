#pragma once
// cwreport import --follow: the CDR file watched with inotify (no polling:
// the program sleeps until the file or its folder changes), each call
// appended once its legs have been quiet for a second, rotations (the file
// renamed and made again, or cut back to nothing) followed, and SIGINT or
// SIGTERM taken between batches, so a stop never leaves half a record.

#include <iosfwd>

#include "cli/import_config.h"
#include "import/log_appender.h"

namespace cw::cli {

// Runs until a signal asks it to stop; returns the exit status.
int FollowCdr(const ImportConfig& config, LogAppender& appender, std::ostream& out, std::ostream& err);

}  // namespace cw::cli
