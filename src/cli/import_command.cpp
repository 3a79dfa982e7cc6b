#include "cli/import_command.h"

#include <array>
#include <ostream>

#include "cli/common_options.h"
#include "cli/import_config.h"
#include "cli/import_follow.h"
#include "cli/import_messages.h"
#include "cli/option_table.h"
#include "import/call_log_batch.h"
#include "import/cdr_import.h"
#include "import/log_appender.h"
#include "support/file_helpers.h"
#include "support/runtime_error.h"

namespace cw::cli {

namespace {

constexpr std::array<const OptionRule*, 12> kOptions = {
    &option::kCdr,         &option::kFormat, &option::kColumns,  &option::kInboundContext,
    &option::kTrunk,       &option::kRingSeconds, &option::kLog, &option::kSettings,
    &option::kEdition,     &option::kPath,   &option::kFollow,   &option::kBusy,
};

int ImportOnce(const ImportConfig& config, LogAppender& appender, std::ostream& out, std::ostream& err) {
  CdrImporter importer(config.rules, config.format, config.columns);
  const std::string text = ReadWholeFile(config.cdr);
  try {
    importer.Feed(text, 1, true, 0);
  } catch (const RuntimeError& error) {
    if (error.Number() != err::kTypeMismatch && error.Number() != err::kInvalidCall) throw;
    err << "cwreport import: " << config.cdr << ": " << error.Description() << '\n';
    return 2;
  }
  out << FormatLine(importer) << '\n';
  if (importer.Layout()) {
    if (const std::string problem = ChannelLayoutProblem(*importer.Layout(), config.rules); !problem.empty()) {
      err << "cwreport import: " << problem << '\n';
      return 2;
    }
  }
  std::vector<KeyedCall> calls = importer.TakeAll();
  BadRowReport badRows;
  badRows.Show(config.cdr, importer.TakeBadRows(), err);
  const ImportCounts& counts = importer.Counts();
  if (!importer.UnlistedTrunks().empty()) {
    err << UnlistedTrunkText(config.cdr, importer.UnlistedTrunks())
        << "cwreport import: nothing was imported (no call is put on a line it may not be on)\n";
    return 2;
  }

  std::optional<CivilDate> lastDay = LastDayOf(appender);
  std::vector<LogCall> written;
  const BatchResult result = AppendCalls(appender, std::move(calls), lastDay, config.busy ? &written : nullptr);
  if (result.tooOld > 0) {
    err << "cwreport import: " << result.tooOld << " call" << (result.tooOld == 1 ? "" : "s")
        << " fell before the last day of the log and " << (result.tooOld == 1 ? "was" : "were")
        << " not added (the log stays in time order)\n";
  }
  out << "Imported " << result.written << " call" << (result.written == 1 ? "" : "s") << " from " << config.cdr
      << " into " << config.log << " (" << counts.rows << " rows read; skipped: " << counts.internal
      << " internal, " << result.known << " imported before, " << result.tooOld << " too old; "
      << counts.badRows << " bad row" << (counts.badRows == 1 ? "" : "s") << ")\n";
  if (config.busy) {
    const std::int64_t stretches = AppendBusy(config, written);
    out << "Added " << stretches << " all-lines-busy stretch" << (stretches == 1 ? "" : "es") << " to "
        << BusyLogPath(config.busyFolder) << '\n';
  }
  return counts.rows == 0 && counts.badRows > 0 ? 1 : 0;
}

}  // namespace

std::string ImportHelp() {
  return "usage: cwreport import [OPTIONS]\n"
         "\n"
         "Appends the calls of a PBX's CDR file (Asterisk cdr_csv or cdr_custom,\n"
         "FreeSWITCH cdr_csv, or a CSV with a header row) to the call log, one record\n"
         "per call however many rows the PBX wrote for it. Calls between extensions\n"
         "are skipped. A state file beside the log (LOG.import) remembers what was\n"
         "imported, so importing the same file again adds nothing. Options left out\n"
         "are taken from the section [Import] of the edition's settings file (keys\n"
         "Cdr, Format, Columns, InboundContexts, Trunks, RingSeconds); the log is\n"
         "--log, else Logs in [Reports].\n"
         "\n"
         "Options:\n" +
         OptionHelp(kOptions) +
         "\n"
         "Rows that cannot be read are skipped and named on standard error.\n"
         "Exit status: 0 done, 1 no row could be imported or the log could not be\n"
         "written, 2 bad usage or settings, a missing CDR file, or a trunk channel\n"
         "that is not listed.\n";
}

int RunImport(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  ImportConfig config;
  try {
    const ParsedArguments parsed = ParseArguments(kOptions, args, 0);
    if (parsed.help) {
      out << ImportHelp();
      return 0;
    }
    config = ReadImportConfig(parsed, err);
  } catch (const UsageError& usage) {
    err << "cwreport import: " << usage.text << "\nRun \"cwreport help import\" for the options.\n";
    return 2;
  } catch (const ImportRefusal& refusal) {
    err << "cwreport import: " << refusal.text << '\n';
    return 2;
  }

  try {
    if (!FileExists(config.cdr)) {
      err << "cwreport import: cannot find the CDR file " << config.cdr << '\n';
      return 2;
    }
    LogAppender appender(config.log);
    if (appender.Repaired() > 0) {
      err << "cwreport import: cut off " << appender.Repaired()
          << " bytes that an interrupted import left at the end of " << config.log << '\n';
    }
    if (config.follow) return FollowCdr(config, appender, out, err);
    return ImportOnce(config, appender, out, err);
  } catch (const RuntimeError& error) {
    err << "cwreport import: error " << error.Number() << ": " << error.Description() << '\n';
    return 1;
  }
}

}  // namespace cw::cli
