// Any text as an INI file: parsed, read, changed and written again by the
// settings store, and read as the logging program's INI. Whatever the file
// holds, a key that was set reads back as set, through the document and
// through the file.

#include <cstdint>
#include <optional>
#include <string>

#include "fuzz_support.h"
#include "settings/ini_document.h"
#include "settings/ini_settings_store.h"
#include "settings/logging_ini.h"
#include "settings/settings_values.h"

namespace cw::fuzz {
namespace {

void Document(std::string_view text) {
  IniDocument document = IniDocument::Parse(text);
  for (std::string_view key : {"Logs", "Path", "LastTab", "DTMF"}) {
    if (const std::optional<std::string_view> value = document.Find("Reports", key)) {
      Refusable([&] {
        ClampLastTab(*value, 8);
        SettingIsTrue(*value);
      });
    }
  }
  document.Set("reports", "Logs", "/var/log/calls.log");
  document.Set("Ports", "ActiveLines", "4");
  const IniDocument again = IniDocument::Parse(document.Text());
  if (again.Find("Reports", "logs") != std::optional<std::string_view>("/var/log/calls.log")) {
    Violated("a key set in the document did not read back");
  }
  if (ProfileIntFromText(document.Text(), "ports", "activelines", 2) != 4) {
    Violated("ActiveLines set in the document did not read back");
  }
}

void Files(std::string_view text) {
  const testing::TempFolder& folder = ScratchFolder();
  const std::string file = folder.Write("settings.ini", text);
  ReadActiveLines(file);
  ReadHardwareType(file);

  IniSettingsStore store(SettingsLocation{file, {}});
  store.Get("Vorn Ringtally", "Reports", "Logs", "");
  store.Save("Vorn Ringtally", "Reports", "Select Seconds", "30");
  if (store.Get("Vorn Ringtally", "Reports", "Select Seconds", "") != "30") {
    Violated("a saved setting did not read back");
  }
  IniSettingsStore fresh(SettingsLocation{file, {}});
  if (fresh.Get("Vorn Ringtally", "REPORTS", "select seconds", "") != "30") {
    Violated("a saved setting did not reach the file");
  }
}

}  // namespace
}  // namespace cw::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  cw::fuzz::Document(text);
  cw::fuzz::Files(text);
  cw::ProfileIntValue(text);
  return 0;
}
