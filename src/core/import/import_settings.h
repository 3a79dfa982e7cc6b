#pragma once
// The import's keys in the edition's settings file, section "[Import]". The
// options of cwreport import override them one by one.

#include <string_view>

#include "settings/settings_keys.h"

namespace cw {

inline constexpr std::string_view kImportSection = "Import";

namespace import_setting {
inline constexpr SettingKey kCdr{"Cdr", ""};                  // the CDR file
inline constexpr SettingKey kFormat{"Format", ""};            // empty: detected
inline constexpr SettingKey kColumns{"Columns", ""};          // an asterisk-custom layout's fields
inline constexpr SettingKey kInboundContexts{"InboundContexts", ""};
inline constexpr SettingKey kTrunks{"Trunks", ""};            // PREFIX=LINE, ...
inline constexpr SettingKey kRingSeconds{"RingSeconds", "6"};
}  // namespace import_setting

}  // namespace cw
