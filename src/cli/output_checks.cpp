#include "cli/output_checks.h"

#include <sys/stat.h>

#include "cli/report_options.h"
#include "cli/spool_room.h"
#include "reports/busy_log.h"
#include "settings/ini_settings_store.h"
#include "settings/startup.h"
#include "support/atomic_file.h"
#include "support/file_helpers.h"
#include "support/runtime_error.h"

namespace cw::cli {

namespace {

[[noreturn]] void Refuse(const NamedOutput& output, const std::string& why) {
  throw OutputRefusal{output.option + " " + output.path + ": " + why};
}

void CheckFolder(const NamedOutput& output) {
  struct stat info;
  // A missing folder is made; anything else there must be a folder.
  if (::stat(output.path.c_str(), &info) == 0 && !S_ISDIR(info.st_mode)) {
    Refuse(output, "not a folder; the page images need a folder");
  }
}

// Every file the request may read, so that no output overwrites one of them.
std::vector<NamedInput> InputsOf(const DataLocations& data, const IniSettingsStore& store, const std::string& edition) {
  std::vector<NamedInput> inputs{{"the call log", data.logs}, {"the logging program's settings", data.iniPath}};
  if (!data.path.empty()) {
    inputs.push_back({"the busy log", FindFileNoCase(data.path, kBusyLogName).value_or("")});
  }
  try {
    inputs.push_back({"the settings file", store.FileFor(edition)});
  } catch (const RuntimeError&) {
    // An edition that names no file has no settings file to protect.
  }
  return inputs;
}

std::vector<NamedOutput> NamedOutputs(const ReportOutputs& outputs) {
  std::vector<NamedOutput> named;
  if (outputs.spool) named.push_back({"--spool", *outputs.spool, false});
  if (outputs.text) named.push_back({"--text", *outputs.text, false});
  if (outputs.pdf) named.push_back({"--pdf", *outputs.pdf, false});
  if (outputs.png) named.push_back({"--png", *outputs.png, true});
  if (outputs.csv) named.push_back({"--csv", *outputs.csv, false});
  return named;
}

// The requests whose spool grows with the whole log: every call listed.
bool ListsWholeLog(const ReportOptions& options) {
  if (options.history) return true;
  return options.period == PeriodChoice::kAll &&
         (options.kind == kind::kCallHistory || options.kind == kind::kByLineNumber);
}

}  // namespace

void CheckReportOutputs(const ReportOptions& options, const DataLocations& data, const IniSettingsStore& store,
                        const std::string& tempFolder) {
  CheckOutputs(NamedOutputs(options.outputs), InputsOf(data, store, options.edition));
  if (ListsWholeLog(options)) CheckRoomForListing(tempFolder, data.logs);
}

void CheckOutputs(const std::vector<NamedOutput>& outputs, const std::vector<NamedInput>& inputs) {
  int toStandardOutput = 0;
  for (const NamedOutput& output : outputs) {
    if (output.path == "-") {
      if (output.option != "--text" && output.option != "--pdf" && output.option != "--csv") {
        Refuse(output, "cannot go to standard output");
      }
      if (++toStandardOutput > 1) Refuse(output, "only one output can go to standard output");
      continue;
    }
    if (output.folder) {
      CheckFolder(output);
      continue;
    }
    const OutputTarget target = ResolveOutputTarget(output.path);
    if (target.kind == OutputKind::kRefused) {
      Refuse(output, "this is " + target.refusal + "; an output must be a file, a character device or a FIFO");
    }
    // A device (/dev/null) is written into, not replaced: reading from it
    // too is no harm to either.
    if (target.kind != OutputKind::kFile) continue;
    const std::optional<FileIdentity> identity = IdentityOf(target.path);
    for (const NamedInput& input : inputs) {
      if (identity && identity == IdentityOf(input.path)) {
        Refuse(output, "this is " + input.what + " (" + input.path + "), which the report reads");
      }
    }
  }
}

}  // namespace cw::cli
