#pragma once
// The logging program's own INI file ("Callwarden.ini" or "Ringtally.ini" in
// its folder), read the way GetPrivateProfileInt reads it: section and key
// names ignore case, and a missing file, section or key gives the default.

#include <cstdint>
#include <string>
#include <string_view>

namespace cw {

inline constexpr std::string_view kPortsSection = "Ports";
inline constexpr std::string_view kHardwareTypeKey = "KVXHardware";
inline constexpr std::int32_t kDefaultHardwareType = 3;
inline constexpr std::string_view kActiveLinesKey = "ActiveLines";
inline constexpr std::int32_t kDefaultActiveLines = 2;

// A file of the logging program's folder, found ignoring case because the
// logging program names its files as Windows would ("BusyLines.log" may lie
// on disk as "busylines.log"). The exact name joined to the folder when the
// folder holds no such file or does not exist; empty when folder is empty
// (nothing is looked up in the current folder).
std::string LoggingProductFile(std::string_view folder, std::string_view name);

// The INI file of an edition in the folder of setting "Path" (see above).
// Error 5 for an unknown edition.
std::string LoggingIniPath(std::string_view pathSetting, std::string_view edition);

// A profile value as a whole number: blanks and tabs skipped, an optional
// sign, then "0x" and hex digits or decimal digits, as many as there are;
// "12abc" is 12, a text without leading digits ("abc", "-") is 0. Digits
// beyond 32 bits wrap around, as the Windows function's do.
std::int32_t ProfileIntValue(std::string_view value);

// GetPrivateProfileInt over the text of an INI file: the default when the
// section or key is missing or the value is empty, else ProfileIntValue of
// the value.
std::int32_t ProfileIntFromText(std::string_view iniText, std::string_view section,
                                std::string_view key, std::int32_t defaultValue);

// The same over a file; a missing or unreadable file (or an empty path) gives
// the default.
std::int32_t ReadProfileInt(const std::string& iniPath, std::string_view section, std::string_view key,
                            std::int32_t defaultValue);

// [Ports] KVXHardware (default 3) and [Ports] ActiveLines (default 2).
std::int32_t ReadHardwareType(const std::string& iniPath);
std::int32_t ReadActiveLines(const std::string& iniPath);

}  // namespace cw
