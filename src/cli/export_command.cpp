// cwreport export: replays a kept spool file into the text export, a PDF and
// page images, as the report that made it would have.
#include <unistd.h>

#include <charconv>
#include <iostream>
#include <exception>
#include <ostream>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "cli/export_command.h"
#include "cli/output_checks.h"
#include "cli/stream_output_file.h"
#include "cli/utf8_text_output.h"
#include "cli/whole_document_replay.h"
#include "platform/headless_application.h"
#include "platform/pdf_page_device.h"
#include "platform/png_page_device.h"
#include "printer/spool_reader.h"
#include "printer/staged_outputs.h"
#include "printer/text_export.h"
#include "support/ansi_text.h"
#include "support/runtime_error.h"

namespace cw::cli {
namespace {

constexpr const char* kExportHelp =
    "usage: cwreport export SPOOL [--text FILE|-] [--pdf FILE] [--png DIR] [--dpi N]\n"
    "                             [--paper letter|a4]\n"
    "\n"
    "Replays a kept spool file (cwreport --spool) into one or more outputs:\n"
    "  --text FILE|-   the text export (Windows-1252, CR LF); - writes it to stdout\n"
    "                  (in UTF-8 with LF when stdout is a terminal).\n"
    "                  The default when no output is named is --text -.\n"
    "  --pdf FILE|-    a PDF with the report's fonts embedded; - writes it to stdout\n"
    "  --png DIR       one image per page, DIR/page-0001.png ... (DIR is created)\n"
    "  --dpi N         resolution of the page images, 10 to 600 (default 150)\n"
    "  --paper P       the paper the report was laid out for: letter (default) or a4\n"
    "\n"
    "Outputs appear under their names only when all of them are complete. Problems\n"
    "of a damaged spool and picture files that cannot be loaded are listed on\n"
    "stderr; what could be used is still exported. A file with no spool header\n"
    "exports nothing.\n"
    "\n"
    "Exit status: 0 done, 1 an error or problems in the spool, 2 bad usage.\n";

constexpr int kDefaultDpi = 150;

struct ExportRequest {
  std::string spool;
  std::optional<std::string> text;
  std::optional<std::string> pdf;
  std::optional<std::string> png;
  std::optional<int> dpi;
  PageSetup paper;  // US Letter unless told
  bool help = false;
};

struct UsageError {
  std::string text;
};

ExportRequest ParseExport(const std::vector<std::string>& arguments) {
  ExportRequest request;
  bool haveSpool = false;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    std::string_view argument = arguments[i];
    if (argument == "--help" || argument == "-h") {
      request.help = true;
      return request;
    }
    if (!argument.starts_with("--") || argument == "-") {
      if (haveSpool) throw UsageError{"one spool file only (" + std::string(argument) + ")"};
      request.spool = argument;
      haveSpool = true;
      continue;
    }
    // --name VALUE or --name=VALUE.
    std::string_view name = argument;
    std::optional<std::string_view> value;
    if (const std::size_t equals = argument.find('='); equals != std::string_view::npos) {
      name = argument.substr(0, equals);
      value = argument.substr(equals + 1);
    }
    auto takeValue = [&]() -> std::string {
      if (value) return std::string(*value);
      if (i + 1 >= arguments.size()) throw UsageError{std::string(name) + " needs a value"};
      return arguments[++i];
    };
    auto once = [&](auto& slot, auto parsed) {
      if (slot) throw UsageError{std::string(name) + " given twice"};
      slot = std::move(parsed);
    };
    if (name == "--text") {
      once(request.text, takeValue());
    } else if (name == "--pdf") {
      once(request.pdf, takeValue());
    } else if (name == "--png") {
      once(request.png, takeValue());
    } else if (name == "--dpi") {
      const std::string text = takeValue();
      int dpi = 0;
      const auto result = std::from_chars(text.data(), text.data() + text.size(), dpi);
      if (result.ec != std::errc() || result.ptr != text.data() + text.size() || dpi < PngPageDevice::kMinDpi ||
          dpi > PngPageDevice::kMaxDpi) {
        throw UsageError{"--dpi must be a whole number from " + std::to_string(PngPageDevice::kMinDpi) + " to " +
                         std::to_string(PngPageDevice::kMaxDpi) + ", not \"" + text + "\""};
      }
      once(request.dpi, dpi);
    } else if (name == "--paper") {
      const std::string paper = takeValue();
      if (paper == "letter") {
        request.paper = PageSetup{12240, 15840, 1};
      } else if (paper == "a4") {
        request.paper = PageSetup{11906, 16838, 1};  // 210 x 297 mm
      } else {
        throw UsageError{"--paper must be letter or a4, not \"" + paper + "\""};
      }
    } else {
      throw UsageError{"unknown option " + std::string(argument)};
    }
  }
  if (!haveSpool) throw UsageError{"no spool file given"};
  for (const auto* path : {&request.text, &request.pdf, &request.png}) {
    if (*path && (*path)->empty()) throw UsageError{"an output needs a file name"};
  }
  if (request.dpi && !request.png) throw UsageError{"--dpi applies to --png only"};
  if (!request.text && !request.pdf && !request.png) request.text = "-";
  return request;
}

// Problem lines of every output, each once: the outputs read the same spool.
class ProblemList {
 public:
  void Add(const SpoolProblems& problems) {
    for (std::string& line : problems.Lines()) {
      if (seen_.insert(line).second) lines_.push_back(std::move(line));
    }
  }
  const std::vector<std::string>& Lines() const { return lines_; }

 private:
  std::set<std::string> seen_;
  std::vector<std::string> lines_;
};

int Export(const ExportRequest& request, std::ostream& out, std::ostream& err) {
  ProblemList problems;
  // Reading the header first reports a missing or unreadable spool before
  // any output is touched.
  SpoolReader first(request.spool);
  if (!first.HasHeader()) {
    // Not even a header (an empty file, say): there is no document, so there
    // are no outputs either.
    problems.Add(first.Problems());
    for (const std::string& line : problems.Lines()) err << request.spool << ": " << line << "\n";
    err << "cwreport export: " << request.spool << " holds no report; nothing was exported\n";
    return 1;
  }
  const SpoolHeader header = first.Header();
  std::vector<NamedOutput> outputs;
  if (request.text) outputs.push_back({"--text", *request.text, false});
  if (request.pdf) outputs.push_back({"--pdf", *request.pdf, false});
  if (request.png) outputs.push_back({"--png", *request.png, true});
  CheckOutputs(outputs, {{"the spool being exported", request.spool}});

  // Every file is complete before any takes its name; standard output, which
  // cannot be called back, is written after the files.
  StagedOutputs staged;
  const auto application = request.pdf || request.png ? MakeHeadlessApplication() : nullptr;
  const auto exportText = [&](OutputFile& output) {
    SpoolReader reader(request.spool);
    ExportSpoolText(reader, output);
    output.Commit();
    problems.Add(reader.Problems());
  };
  if (request.text && *request.text != "-") exportText(staged.Add(*request.text));
  if (request.pdf && *request.pdf != "-") {
    PdfPageDevice device(*request.pdf, Win1252ToUtf8(header.title), &staged);
    problems.Add(ReplayWholeDocument(request.spool, device, request.paper));
  }
  if (request.png) {
    PngPageDevice device(*request.png, request.dpi.value_or(kDefaultDpi), &staged);
    problems.Add(ReplayWholeDocument(request.spool, device, request.paper));
  }
  StreamOutputFile stream(out);
  if (request.text == "-") {
    // A person at a terminal reads UTF-8; a pipe gets the file format.
    Utf8TextOutput utf8(stream);
    const bool terminal = &out == &std::cout && ::isatty(STDOUT_FILENO) == 1;
    exportText(terminal ? static_cast<OutputFile&>(utf8) : stream);
  }
  if (request.pdf == "-") {
    PdfPageDevice device(stream, Win1252ToUtf8(header.title));
    problems.Add(ReplayWholeDocument(request.spool, device, request.paper));
  }
  staged.Publish();
  for (const std::string& line : problems.Lines()) err << request.spool << ": " << line << "\n";
  return problems.Lines().empty() ? 0 : 1;
}

}  // namespace

int RunExport(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  ExportRequest request;
  try {
    request = ParseExport(args);
  } catch (const UsageError& usage) {
    err << "cwreport export: " << usage.text << "\n" << kExportHelp;
    return 2;
  }
  if (request.help) {
    out << kExportHelp;
    return 0;
  }
  try {
    return Export(request, out, err);
  } catch (const OutputRefusal& refusal) {
    err << "cwreport export: " << refusal.text << "\n";
    return 2;
  } catch (const RuntimeError& error) {
    err << "cwreport export: error " << error.Number() << ": " << error.what() << "\n";
  } catch (const std::exception& error) {
    err << "cwreport export: " << error.what() << "\n";
  }
  return 1;
}

}  // namespace cw::cli
