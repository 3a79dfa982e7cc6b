#pragma once
// What cwreport import tells the user, shared by the one-shot import and
// follow mode.

#include <iosfwd>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "cli/import_config.h"
#include "import/call_log_batch.h"
#include "import/cdr_import.h"

namespace cw::cli {

// "cwreport import: Master.csv line 12: 19 columns; ... (skipped)", one line
// per row, at most kShownBadRows of them in a run; the rest are counted.
class BadRowReport {
 public:
  static constexpr std::int64_t kShownBadRows = 100;
  void Show(const std::string& cdr, const std::vector<BadRow>& rows, std::ostream& err);

 private:
  std::int64_t shown_ = 0;
};

// The refusal for trunks met that are not listed, or empty when there are none.
std::string UnlistedTrunkText(const std::string& cdr, const std::map<std::string, std::int64_t>& unlisted);

// The refusal when the layout cannot tell trunks apart by channel and the
// trunks are on more than one line; empty when the layout is usable.
std::string ChannelLayoutProblem(const CdrLayout& layout, const ImportRules& rules);

// The busy log of the logging program's folder, found in any case of its
// name, or where a new one goes.
std::string BusyLogPath(const std::string& folder);

// Appends the all-lines-busy stretches of calls to the busy log of
// config.busyFolder; returns how many.
std::int64_t AppendBusy(const ImportConfig& config, std::span<const LogCall> calls);

// "Format: asterisk (detected from the first rows)".
std::string FormatLine(const CdrImporter& importer);

}  // namespace cw::cli
