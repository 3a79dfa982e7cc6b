#include "cli/log_summary_command.h"

#include <map>
#include <optional>
#include <ostream>
#include <string_view>

#include "cli/local_clock.h"
#include "data/call_record.h"
#include "data/get_record.h"
#include "data/log_buffer.h"
#include "data/oldest_log_date.h"
#include "settings/edition.h"
#include "settings/ini_settings_store.h"
#include "settings/settings_keys.h"
#include "support/civil_date.h"
#include "support/date_format.h"
#include "support/file_helpers.h"
#include "support/runtime_error.h"
#include "support/whole_numbers.h"

namespace cw::cli {

namespace {

constexpr std::string_view kUsage =
    "usage: cwreport log-summary [--log FILE] [--settings FILE] [--edition NAME] [--today mm/dd/yyyy]\n"
    "Prints the date of the oldest call in the call log and the number of calls\n"
    "on each line. Without --log the log is the setting \"Logs\" of the edition\n"
    "(default \"Vorn Ringtally\") in --settings FILE, or in the file named by\n"
    "CW_SETTINGS, or in ~/.config/callwarden-reports/<edition>.ini.\n";

// Line numbers in numeric order; a line field that is not a number (a damaged
// record) is counted under its own text after them, so nothing goes unseen.
struct LineKey {
  std::optional<std::int32_t> number;
  std::string text;
  friend bool operator<(const LineKey& a, const LineKey& b) {
    if (a.number && b.number) return *a.number < *b.number;
    if (a.number || b.number) return a.number.has_value();
    return a.text < b.text;
  }
};

LineKey KeyOf(std::string_view lineField) {
  try {
    if (IsAllDigits(lineField)) return {TextToInt32(lineField), std::string(lineField)};
  } catch (const RuntimeError&) {
  }
  return {std::nullopt, std::string(lineField)};
}

}  // namespace

int RunLogSummary(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  std::string logPath;
  bool logGiven = false;
  std::string settingsFile;
  std::string edition(kEditionRingtally);
  std::optional<CivilDate> today;
  for (std::size_t i = 0; i < args.size(); ++i) {
    const std::string& option = args[i];
    if (option == "--help") {
      out << kUsage;
      return 0;
    }
    if (i + 1 >= args.size()) {
      err << "cwreport log-summary: unknown option or missing value: " << option << '\n' << kUsage;
      return 2;
    }
    const std::string& value = args[++i];
    if (option == "--log") {
      logPath = value;
      logGiven = true;
    } else if (option == "--settings") {
      settingsFile = value;
    } else if (option == "--edition") {
      edition = value;
    } else if (option == "--today") {
      try {
        today = ParseCaptionDate(value);
      } catch (const RuntimeError&) {
        err << "cwreport log-summary: --today needs a date mm/dd/yyyy, not \"" << value << "\"\n";
        return 2;
      }
    } else {
      err << "cwreport log-summary: unknown option: " << option << '\n' << kUsage;
      return 2;
    }
  }

  try {
    if (!logGiven) {
      SettingsLocation location = settingsFile.empty()
                                      ? ResolveSettingsLocation(SettingsEnvironmentOfProcess())
                                      : SettingsLocation{settingsFile, {}};
      IniSettingsStore store(std::move(location));
      logPath = store.Get(edition, kReportsSection, setting::kLogs.name, setting::kLogs.defaultValue);
    }
    if (logPath.empty() || !FileExists(logPath)) {
      err << "Cannot Find the Call Logs File"
          << (logPath.empty() ? std::string(": no --log and no setting \"Logs\"") : ": " + logPath) << '\n';
      return 2;
    }

    const std::optional<std::string> oldest = OldestLogDate(logPath, today ? *today : TodayFromClock());
    const LogBuffer log = LogBuffer::Load(logPath);
    std::map<LineKey, std::int64_t> callsPerLine;
    std::int64_t total = 0;
    ReaderState reader;
    for (std::string_view line = GetRecord(log.Text(), false, reader); line != kDone;
         line = GetRecord(log.Text(), false, reader)) {
      ++callsPerLine[KeyOf(CallRecord(line).Line())];
      ++total;
    }

    out << "Call log: " << logPath << '\n';
    out << "Oldest date: " << oldest.value_or("") << '\n';
    out << "Calls per line:\n";
    for (const auto& [key, calls] : callsPerLine) {
      out << "  Line " << (key.text.empty() ? std::string("(blank)") : key.text) << ": " << calls << '\n';
    }
    out << "Total calls: " << total << '\n';
    return 0;
  } catch (const RuntimeError& error) {
    err << "cwreport log-summary: error " << error.Number() << ": " << error.Description() << '\n';
    return 1;
  }
}

}  // namespace cw::cli
