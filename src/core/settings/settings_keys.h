#pragma once
// Every key the report form keeps in the per-user settings (section
// "Reports"), with the default used when it is read. The form, the reports and
// cwreport all read and write through this one list.

#include <string_view>

namespace cw {

inline constexpr std::string_view kReportsSection = "Reports";

struct SettingKey {
  std::string_view name;
  std::string_view defaultValue;
};

namespace setting {
// Where the data is; read at start-up, never written by this program.
inline constexpr SettingKey kPath{"Path", ""};  // folder of the logging program
inline constexpr SettingKey kLogs{"Logs", ""};  // full path of the call log
// Form state, restored at load and written back at unload.
inline constexpr SettingKey kLastTab{"LastTab", "1"};
inline constexpr SettingKey kPrintChart{"PrintChart", "1"};
inline constexpr SettingKey kCondensed{"Condensed", "0"};
inline constexpr SettingKey kDtmf{"DTMF", "0"};  // read only: use the DTMF field of records
inline constexpr SettingKey kCallType{"CallType", "In"};  // "In", "Out" or "InOut"
inline constexpr SettingKey kToDate{"ToDate", ""};        // empty: today
inline constexpr SettingKey kFromDate{"FromDate", ""};
inline constexpr SettingKey kSearchText{"SearchText", ""};  // written, never read back
// The abandoned-call filter, written with each report request.
inline constexpr SettingKey kSelectSeconds{"Select Seconds", "0"};
inline constexpr SettingKey kSelectRings{"Select Rings", "0"};
inline constexpr SettingKey kSelectAnswered{"Select Answered", "0"};
inline constexpr SettingKey kSelectInOut{"Select InOut", "0"};
inline constexpr SettingKey kAbandonedSeconds{"Abandoned Seconds", ""};
inline constexpr SettingKey kAbandonedRings{"Abandoned Rings", ""};
}  // namespace setting

inline constexpr SettingKey kAllSettingKeys[] = {
    setting::kPath,           setting::kLogs,          setting::kLastTab,
    setting::kPrintChart,     setting::kCondensed,     setting::kDtmf,
    setting::kCallType,       setting::kToDate,        setting::kFromDate,
    setting::kSearchText,     setting::kSelectSeconds, setting::kSelectRings,
    setting::kSelectAnswered, setting::kSelectInOut,   setting::kAbandonedSeconds,
    setting::kAbandonedRings,
};

}  // namespace cw
