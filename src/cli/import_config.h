#pragma once
// What cwreport import works with, from its options and, for what they
// leave out, the section [Import] of the edition's settings file.

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "cli/option_table.h"
#include "import/cdr_layout.h"
#include "import/import_rules.h"

namespace cw::cli {

namespace option {
inline constexpr OptionRule kCdr{"--cdr", "FILE", ValueKind::kText, "the PBX's CDR file (overrides Cdr in [Import])"};
inline constexpr OptionRule kFormat{"--format", "F", ValueKind::kText,
                                    "asterisk, asterisk-custom, freeswitch or csv (default:\n"
                                    "detected from the first rows)"};
inline constexpr OptionRule kColumns{"--columns", "LIST", ValueKind::kText,
                                     "the fields of an asterisk-custom layout in their order,\n"
                                     "e.g. \"start,answer,end,src,dst,dcontext,channel,...\""};
inline constexpr OptionRule kInboundContext{"--inbound-context", "PATTERN", ValueKind::kText,
                                            "a dialplan context that takes calls from outside (\"*\"\n"
                                            "matches any text); repeatable",
                                            0, 0, true};
inline constexpr OptionRule kTrunk{"--trunk", "PREFIX=LINE", ValueKind::kText,
                                   "a trunk's channel prefix and the line its calls are on,\n"
                                   "e.g. SIP/211553=1; repeatable",
                                   0, 0, true};
inline constexpr OptionRule kRingSeconds{"--ring-seconds", "N", ValueKind::kWhole,
                                         "the length of one ring in seconds, {range} (default 6)", 1, 60};
inline constexpr OptionRule kFollow{"--follow", "", ValueKind::kNone,
                                    "keep running: append each call as the PBX writes it,\n"
                                    "through rotations of the CDR file, until SIGINT or SIGTERM"};
inline constexpr OptionRule kBusy{"--busy", "", ValueKind::kNone,
                                  "also append the times when every trunk line carried a call\n"
                                  "to BusyLines.log in the logging program's folder (--path)"};
}  // namespace option

// A request that cannot go ahead (exit status 2), with the whole message.
struct ImportRefusal {
  std::string text;
};

struct ImportConfig {
  std::string cdr;
  std::string log;
  std::string busyFolder;  // the logging program's folder, for --busy
  std::optional<CdrFormat> format;
  std::vector<std::string> columns;
  ImportRules rules;
  bool follow = false;
  bool busy = false;
};

// Throws UsageError for bad options, ImportRefusal for settings that do not
// make a request (no CDR file, no log, no trunks, a bad trunk entry).
ImportConfig ReadImportConfig(const ParsedArguments& parsed, std::ostream& err);

}  // namespace cw::cli
