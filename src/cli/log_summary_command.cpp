#include "cli/log_summary_command.h"

#include <array>
#include <map>
#include <optional>
#include <ostream>
#include <string_view>

#include "cli/common_options.h"
#include "cli/local_clock.h"
#include "cli/option_table.h"
#include "cli/settings_file_check.h"
#include "data/call_record.h"
#include "data/get_record.h"
#include "data/log_buffer.h"
#include "data/oldest_log_date.h"
#include "settings/edition.h"
#include "settings/ini_settings_store.h"
#include "settings/settings_keys.h"
#include "settings/startup.h"
#include "support/civil_date.h"
#include "support/date_format.h"
#include "support/file_helpers.h"
#include "support/runtime_error.h"
#include "support/whole_numbers.h"

namespace cw::cli {

namespace {

constexpr std::array<const OptionRule*, 5> kOptions = {&option::kLog, &option::kPath, &option::kSettings,
                                                       &option::kEdition, &option::kToday};

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

std::string LogSummaryHelp() {
  return "usage: cwreport log-summary [OPTIONS]\n"
         "\n"
         "Prints the date of the oldest call in the call log and the number of calls\n"
         "on each line (with --path, also the logging program's active line count).\n"
         "Without --log the log is the setting \"Logs\" of the edition.\n"
         "\n"
         "Options:\n" +
         OptionHelp(kOptions) +
         "\n"
         "Exit status: 0 done, 2 no call log or bad usage, 1 an error.\n";
}

int RunLogSummary(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  std::string logPath;
  bool logGiven = false;
  std::string settingsFile;
  std::optional<std::string> path;
  std::string edition(kEditionRingtally);
  std::optional<CivilDate> today;
  try {
    const ParsedArguments parsed = ParseArguments(kOptions, args, 0);
    if (parsed.help) {
      out << LogSummaryHelp();
      return 0;
    }
    if (const GivenOption* given = parsed.Find(option::kLog)) {
      logPath = given->value;
      logGiven = true;
    }
    if (const GivenOption* given = parsed.Find(option::kPath)) path = given->value;
    if (const GivenOption* given = parsed.Find(option::kSettings)) settingsFile = given->value;
    if (const GivenOption* given = parsed.Find(option::kEdition)) edition = EditionOf(given->value);
    if (const GivenOption* given = parsed.Find(option::kToday)) today = DateOf(option::kToday.name, given->value);
  } catch (const UsageError& usage) {
    err << "cwreport log-summary: " << usage.text << "\nRun \"cwreport help log-summary\" for the options.\n";
    return 2;
  }

  try {
    if (!logGiven) {
      SettingsLocation location = settingsFile.empty()
                                      ? ResolveSettingsLocation(SettingsEnvironmentOfProcess())
                                      : SettingsLocation{settingsFile, {}};
      IniSettingsStore store(std::move(location));
      settingsFile = store.FileFor(edition);
      if (const auto problem = SettingsFileProblem(settingsFile)) err << *problem << '\n';
      logPath = store.Get(edition, kReportsSection, setting::kLogs.name, setting::kLogs.defaultValue);
    }
    if (logPath.empty() || !FileExists(logPath)) {
      const std::string source = logGiven ? std::string("--log") : "the setting \"Logs\" in " + settingsFile;
      err << "Cannot Find the Call Logs File"
          << (logPath.empty() ? ": no call log is named (" + source + " is empty)"
                              : ": " + logPath + " (from " + source + ")")
          << "\ncwreport: give the call log with --log FILE\n";
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
    if (path) {
      const DataLocations data = LocateData(edition, *path, logPath);
      out << "Active lines: " << data.activeLines << " (" << (data.iniPath.empty() ? "no INI file" : data.iniPath)
          << ")\n";
    }
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
