#pragma once
// Start-up resolution: from the command line and the per-user settings to the
// state the report form keeps for its life. Everything it reads comes in
// through its arguments (the store, and the logging program's INI file named
// by the settings).

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "settings/command_line.h"
#include "settings/settings_store.h"

namespace cw {

// Where the data is and what the hardware offers.
struct DataLocations {
  std::string path;     // setting "Path": the logging program's folder
  std::string logs;     // setting "Logs": the call-log file
  std::string iniPath;  // the edition's INI file in "Path"; empty when "Path" is
  std::int32_t hardwareType = 3;
  std::int32_t activeLines = 2;
};

struct StartupState {
  std::string edition;
  bool historyMode = false;
  std::string historyNumber;
  std::optional<std::int32_t> windowHandle;
  DataLocations data;
};

// The INI path and the two INI values for given "Path" and "Logs" (cwreport
// calls this after --path and --log have overridden the settings).
DataLocations LocateData(std::string_view edition, std::string path, std::string logs);

// Reads "Path" and then "Logs" of the edition (section "Reports", empty
// defaults) through GetOptions, then LocateData.
DataLocations ReadDataLocations(SettingsStore& store, std::string_view edition,
                                const ErrorBoxOutput& errors);

// ResolveCommandLine, then ReadDataLocations for the edition it chose.
StartupState ResolveStartup(std::string_view commandLine, SettingsStore& store,
                            const ErrorBoxOutput& errors);

}  // namespace cw
