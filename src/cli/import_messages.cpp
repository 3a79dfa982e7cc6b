#include "cli/import_messages.h"

#include <ostream>

#include "import/log_appender.h"
#include "reports/busy_log.h"
#include "support/file_helpers.h"

namespace cw::cli {

void BadRowReport::Show(const std::string& cdr, const std::vector<BadRow>& rows, std::ostream& err) {
  for (const BadRow& row : rows) {
    if (shown_++ < kShownBadRows) {
      err << "cwreport import: " << cdr << " line " << row.line << ": " << row.reason << " (row skipped)\n";
    } else if (shown_ == kShownBadRows + 1) {
      err << "cwreport import: more rows cannot be read; only their count is given at the end\n";
    }
  }
}

std::string UnlistedTrunkText(const std::string& cdr, const std::map<std::string, std::int64_t>& unlisted) {
  std::string text;
  for (const auto& [channel, line] : unlisted) {
    text += "cwreport import: " + cdr + " line " + std::to_string(line) + ": the trunk channel " + channel +
            " is not listed; add it with --trunk " + channel + "=LINE or to Trunks in [Import]\n";
  }
  return text;
}

std::string ChannelLayoutProblem(const CdrLayout& layout, const ImportRules& rules) {
  if (layout.HasChannels() || rules.Lines().size() <= 1) return {};
  return "the " + std::string(FormatName(layout.Format())) +
         " layout has no channel names, so calls cannot be told apart by trunk: name one line only "
         "(--trunk PREFIX=LINE), or write the CDR with a channel column";
}

std::string BusyLogPath(const std::string& folder) {
  return FindFileNoCase(folder, kBusyLogName).value_or(JoinPath(folder, kBusyLogName));
}

std::int64_t AppendBusy(const ImportConfig& config, std::span<const LogCall> calls) {
  LogAppender busyLog(BusyLogPath(config.busyFolder));
  const std::vector<std::int32_t> lines = config.rules.Lines();
  return AppendBusyStretches(busyLog, calls, lines);
}

std::string FormatLine(const CdrImporter& importer) {
  if (!importer.Layout()) return "Format: not known yet (no rows)";
  return "Format: " + std::string(FormatName(importer.Layout()->Format())) +
         (importer.Detected() ? " (detected from the first rows)" : " (as given)");
}

}  // namespace cw::cli
