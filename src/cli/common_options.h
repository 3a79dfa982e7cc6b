#pragma once
// Options that several cwreport subcommands share, described once, and the
// readers of their values.

#include <optional>
#include <string>
#include <string_view>

#include "cli/option_table.h"
#include "printer/page_device.h"
#include "support/civil_date.h"

namespace cw::cli {

namespace option {

inline constexpr OptionRule kEdition{"--edition", "NAME", ValueKind::kText,
                                     "\"Vorn Ringtally\" (default) or \"Callwarden MultiLine\": the\n"
                                     "application name of the settings and the logging INI file"};
inline constexpr OptionRule kSettings{"--settings", "FILE", ValueKind::kText,
                                      "the per-user settings file (default: $CW_SETTINGS, else\n"
                                      "CONFIG/callwarden-reports/<edition>.ini, where CONFIG is\n"
                                      "$XDG_CONFIG_HOME, or ~/.config without it)"};
inline constexpr OptionRule kLog{"--log", "FILE", ValueKind::kText, "the call log (overrides the setting \"Logs\")"};
inline constexpr OptionRule kPath{"--path", "DIR", ValueKind::kText,
                                  "the logging program's folder: its INI file, BusyLines.log\n"
                                  "and the chart bitmap (overrides the setting \"Path\")"};
inline constexpr OptionRule kToday{"--today", "DATE", ValueKind::kText,
                                   "the date to take for today (default: the system clock)"};
inline constexpr OptionRule kText{"--text", "FILE|-", ValueKind::kText,
                                  "the text export (Windows-1252, CR LF); - is standard output,\n"
                                  "in UTF-8 with LF when that is a terminal"};
inline constexpr OptionRule kEncoding{"--encoding", "E", ValueKind::kText,
                                      "the characters of the text export: windows-1252 or utf-8"};
inline constexpr OptionRule kPdf{"--pdf", "FILE|-", ValueKind::kText,
                                 "a PDF with the report's fonts embedded; - is standard output"};
inline constexpr OptionRule kPng{"--png", "DIR", ValueKind::kText,
                                 "one image per page, DIR/page-0001.png, ... (DIR is created)"};
inline constexpr OptionRule kDpi{"--dpi", "N", ValueKind::kWhole,
                                 "with --png: the resolution of the page images, {range}\n"
                                 "(default 150)",
                                 10, 600};
inline constexpr OptionRule kPaper{"--paper", "P", ValueKind::kText,
                                   "letter or a4: the page the report is laid out on"};

}  // namespace option

// The edition --edition names; UsageError for any other text.
std::string EditionOf(const std::string& text);

// The page of --paper letter or a4; UsageError for any other.
PageSetup PaperOf(const std::string& text);

// A date as people type it: m/d/yyyy (mm/dd/yyyy included) or yyyy-mm-dd,
// a real calendar day. UsageError naming the option for anything else.
CivilDate DateOf(std::string_view option, std::string_view text);

// The --encoding value, lower case: "windows-1252" or "utf-8".
std::string EncodingOf(const std::string& text);

}  // namespace cw::cli
