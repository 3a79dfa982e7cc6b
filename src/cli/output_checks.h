#pragma once
// Checks made on the outputs of a request before any work: an output must be
// something that can be written (a file, a new name, a device or FIFO; a
// folder for the page images), and must not be one of the files the request
// reads. Files are compared by identity, so another spelling, a link or a
// hard link of an input is caught as well.

#include <string>
#include <vector>

namespace cw {
class IniSettingsStore;
struct DataLocations;
}  // namespace cw

namespace cw::cli {

struct ReportOptions;

// A request refused before it ran (exit status 2).
struct OutputRefusal {
  std::string text;
};

struct NamedOutput {
  std::string option;  // "--text", for the message
  std::string path;    // as given; "-" is standard output and not checked
  bool folder = false;  // --png: a folder of page images
};

struct NamedInput {
  std::string what;  // "the call log", for the message
  std::string path;  // empty: not used by this request
};

// Throws OutputRefusal naming the option, the path and what is wrong.
void CheckOutputs(const std::vector<NamedOutput>& outputs, const std::vector<NamedInput>& inputs);

// The checks of a report request: its outputs against the call log, the busy
// log, the logging program's INI file and the settings file; and, for a
// listing of the whole log, the room for its spool in tempFolder.
void CheckReportOutputs(const ReportOptions& options, const DataLocations& data, const IniSettingsStore& store,
                        const std::string& tempFolder);

}  // namespace cw::cli
