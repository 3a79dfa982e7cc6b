#include "settings/logging_ini.h"

#include <filesystem>
#include <optional>
#include <system_error>

#include "settings/edition.h"
#include "settings/ini_document.h"
#include "support/file_helpers.h"
#include "support/runtime_error.h"

namespace cw {

std::string LoggingProductFile(std::string_view folder, std::string_view name) {
  if (folder.empty()) return {};
  std::error_code error;
  if (std::filesystem::is_directory(std::string(folder), error)) {
    if (std::optional<std::string> found = FindFileNoCase(folder, name)) return *found;
  }
  return JoinPath(folder, name);
}

std::string LoggingIniPath(std::string_view pathSetting, std::string_view edition) {
  return LoggingProductFile(pathSetting, LoggingIniName(edition));
}

std::int32_t ProfileIntValue(std::string_view value) {
  std::size_t at = value.find_first_not_of(" \t");
  if (at == std::string_view::npos) return 0;
  bool negative = false;
  if (value[at] == '-' || value[at] == '+') {
    negative = value[at] == '-';
    ++at;
  }
  std::uint32_t base = 10;
  if (at + 1 < value.size() && value[at] == '0' && (value[at + 1] == 'x' || value[at + 1] == 'X')) {
    base = 16;
    at += 2;
  }
  std::uint32_t number = 0;  // wraps, as the profile function's does
  for (; at < value.size(); ++at) {
    const char c = value[at];
    std::uint32_t digit;
    if (c >= '0' && c <= '9') {
      digit = static_cast<std::uint32_t>(c - '0');
    } else if (base == 16 && c >= 'a' && c <= 'f') {
      digit = static_cast<std::uint32_t>(c - 'a' + 10);
    } else if (base == 16 && c >= 'A' && c <= 'F') {
      digit = static_cast<std::uint32_t>(c - 'A' + 10);
    } else {
      break;
    }
    number = number * base + digit;
  }
  if (negative) number = 0u - number;
  return static_cast<std::int32_t>(number);
}

std::int32_t ProfileIntFromText(std::string_view iniText, std::string_view section, std::string_view key,
                                std::int32_t defaultValue) {
  const IniDocument document = IniDocument::Parse(iniText);
  const std::optional<std::string_view> value = document.Find(section, key);
  if (!value || value->find_first_not_of(" \t") == std::string_view::npos) return defaultValue;
  return ProfileIntValue(*value);
}

std::int32_t ReadProfileInt(const std::string& iniPath, std::string_view section, std::string_view key,
                            std::int32_t defaultValue) {
  std::error_code error;
  if (iniPath.empty() || !std::filesystem::is_regular_file(iniPath, error)) return defaultValue;
  std::string text;
  try {
    text = ReadWholeFile(iniPath);
  } catch (const RuntimeError&) {
    return defaultValue;
  }
  return ProfileIntFromText(text, section, key, defaultValue);
}

std::int32_t ReadHardwareType(const std::string& iniPath) {
  return ReadProfileInt(iniPath, kPortsSection, kHardwareTypeKey, kDefaultHardwareType);
}

std::int32_t ReadActiveLines(const std::string& iniPath) {
  return ReadProfileInt(iniPath, kPortsSection, kActiveLinesKey, kDefaultActiveLines);
}

}  // namespace cw
