#include "settings/startup.h"

#include "settings/logging_ini.h"
#include "settings/settings_keys.h"

namespace cw {

DataLocations LocateData(std::string_view edition, std::string path, std::string logs) {
  DataLocations data;
  data.iniPath = LoggingIniPath(path, edition);
  data.path = std::move(path);
  data.logs = std::move(logs);
  data.hardwareType = ReadHardwareType(data.iniPath);
  data.activeLines = ReadActiveLines(data.iniPath);
  return data;
}

DataLocations ReadDataLocations(SettingsStore& store, std::string_view edition,
                                const ErrorBoxOutput& errors) {
  std::string path = GetOptions(store, edition, kReportsSection, setting::kPath.name,
                                setting::kPath.defaultValue, errors);
  std::string logs = GetOptions(store, edition, kReportsSection, setting::kLogs.name,
                                setting::kLogs.defaultValue, errors);
  return LocateData(edition, std::move(path), std::move(logs));
}

StartupState ResolveStartup(std::string_view commandLine, SettingsStore& store,
                            const ErrorBoxOutput& errors) {
  CommandLineChoice choice = ResolveCommandLine(commandLine);
  StartupState state;
  state.data = ReadDataLocations(store, choice.edition, errors);
  state.edition = std::move(choice.edition);
  state.historyMode = choice.historyMode;
  state.historyNumber = std::move(choice.historyNumber);
  state.windowHandle = choice.windowHandle;
  return state;
}

}  // namespace cw
