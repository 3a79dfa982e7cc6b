#include "cli/import_config.h"

#include <ostream>

#include "cli/common_options.h"
#include "cli/settings_file_check.h"
#include "import/import_settings.h"
#include "settings/edition.h"
#include "settings/ini_settings_store.h"
#include "settings/settings_keys.h"
#include "support/file_helpers.h"
#include "support/runtime_error.h"
#include "support/text.h"

namespace cw::cli {

namespace {

// Where each value came from, for messages: the option, or the key in the file.
std::string FromSetting(std::string_view key, const std::string& file) {
  return std::string(key) + " in [Import] of " + (file.empty() ? std::string("the settings") : file);
}

}  // namespace

ImportConfig ReadImportConfig(const ParsedArguments& parsed, std::ostream& err) {
  std::string edition(kEditionRingtally);
  std::string settingsFile;
  if (const GivenOption* given = parsed.Find(option::kEdition)) edition = EditionOf(given->value);
  if (const GivenOption* given = parsed.Find(option::kSettings)) settingsFile = given->value;
  SettingsLocation location = settingsFile.empty() ? ResolveSettingsLocation(SettingsEnvironmentOfProcess())
                                                   : SettingsLocation{settingsFile, {}};
  IniSettingsStore store(std::move(location));
  try {
    settingsFile = store.FileFor(edition);
  } catch (const RuntimeError&) {
    settingsFile.clear();
  }
  if (const auto problem = SettingsFileProblem(settingsFile)) err << *problem << '\n';
  auto setting = [&](const SettingKey& key) {
    return store.Get(edition, kImportSection, key.name, key.defaultValue);
  };
  auto given = [&parsed](const OptionRule& rule) -> std::optional<std::string> {
    if (const GivenOption* option = parsed.Find(rule)) return option->value;
    return std::nullopt;
  };

  ImportConfig config;
  config.follow = parsed.Find(option::kFollow) != nullptr;
  config.busy = parsed.Find(option::kBusy) != nullptr;

  config.cdr = given(option::kCdr).value_or(setting(import_setting::kCdr));
  if (config.cdr.empty()) {
    throw ImportRefusal{"no CDR file is named: give it with --cdr FILE or as " +
                        FromSetting(import_setting::kCdr.name, settingsFile)};
  }
  config.log = given(option::kLog).value_or(store.Get(edition, kReportsSection, setting::kLogs.name, ""));
  if (config.log.empty()) {
    throw ImportRefusal{"no call log is named: give it with --log FILE or as Logs in [Reports] of " +
                        (settingsFile.empty() ? std::string("the settings") : settingsFile)};
  }
  config.busyFolder = given(option::kPath).value_or(store.Get(edition, kReportsSection, setting::kPath.name, ""));
  if (config.busy && config.busyFolder.empty()) {
    throw ImportRefusal{"--busy needs the logging program's folder for BusyLines.log: give it with --path DIR "
                        "or as Path in [Reports]"};
  }

  const std::optional<std::string> formatOption = given(option::kFormat);
  const std::string formatText = formatOption.value_or(setting(import_setting::kFormat));
  if (!Trim(formatText).empty()) {
    config.format = FormatNamed(formatText);
    if (!config.format) {
      const std::string what = "the format must be asterisk, asterisk-custom, freeswitch or csv, not \"" +
                               formatText + "\"";
      if (formatOption) throw UsageError{"--format: " + what};
      throw ImportRefusal{FromSetting(import_setting::kFormat.name, settingsFile) + ": " + what};
    }
  }
  const std::string columns = given(option::kColumns).value_or(setting(import_setting::kColumns));
  config.columns = SplitColumnList(columns);
  if (!config.format && !config.columns.empty()) config.format = CdrFormat::kAsteriskCustom;

  try {
    // Each --trunk may itself be a list, as the setting is.
    std::string list;
    for (const std::string& entry : parsed.All(option::kTrunk)) list += entry + ",";
    config.rules.trunks = ParseTrunkList(list.empty() ? setting(import_setting::kTrunks) : list);
  } catch (const RuntimeError& error) {
    throw ImportRefusal{error.Description()};
  }
  if (config.rules.trunks.empty()) {
    throw ImportRefusal{"no trunks are named, so no call can be told from an internal one: give each trunk "
                        "with --trunk PREFIX=LINE (e.g. --trunk SIP/telco=1) or as " +
                        FromSetting(import_setting::kTrunks.name, settingsFile) + " (e.g. Trunks=SIP/telco=1)"};
  }

  const std::vector<std::string> contexts = parsed.All(option::kInboundContext);
  config.rules.inboundContexts = contexts.empty() ? SplitList(setting(import_setting::kInboundContexts)) : contexts;

  if (const GivenOption* ring = parsed.Find(option::kRingSeconds)) {
    config.rules.ringSeconds = static_cast<std::int32_t>(ring->number);
  } else {
    const std::string text(Trim(setting(import_setting::kRingSeconds)));
    const bool ok = !text.empty() && text.size() <= 2 && IsAllDigits(text) && std::stoi(text) >= 1 &&
                    std::stoi(text) <= kMaxRingSeconds;
    if (!ok) {
      throw ImportRefusal{FromSetting(import_setting::kRingSeconds.name, settingsFile) +
                          " must be a whole number of seconds from 1 to 60, not \"" + text + "\""};
    }
    config.rules.ringSeconds = std::stoi(text);
  }
  return config;
}

}  // namespace cw::cli
