#pragma once
// The two editions of the product. The edition text is also the application
// name under which the per-user settings are kept, and it decides which INI
// file of the logging program describes the hardware.

#include <string_view>

namespace cw {

inline constexpr std::string_view kEditionCallwarden = "Callwarden MultiLine";
inline constexpr std::string_view kEditionRingtally = "Vorn Ringtally";

// "Callwarden.ini" or "Ringtally.ini": the logging program's INI file of an
// edition, in its folder (setting "Path"). Error 5 for any other edition.
std::string_view LoggingIniName(std::string_view edition);

}  // namespace cw
