// cwreport export: replays a kept spool file into the text export, a PDF and
// page images, as the report that made it would have.
#include <unistd.h>

#include <array>
#include <iostream>
#include <exception>
#include <ostream>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "cli/common_options.h"
#include "cli/export_command.h"
#include "cli/option_table.h"
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

// The help and the refusal of --dpi show the range the page images accept.
static_assert(option::kDpi.minimum == PngPageDevice::kMinDpi && option::kDpi.maximum == PngPageDevice::kMaxDpi);

namespace {

constexpr std::array<const OptionRule*, 6> kOptions = {&option::kText, &option::kEncoding, &option::kPdf,
                                                       &option::kPng,  &option::kDpi,      &option::kPaper};

constexpr int kDefaultDpi = 150;

struct ExportRequest {
  std::string spool;
  std::optional<std::string> text;
  std::optional<std::string> pdf;
  std::optional<std::string> png;
  std::optional<int> dpi;
  std::string encoding;  // of the text: "utf-8", "windows-1252", or empty (as the output decides)
  PageSetup paper;  // US Letter unless told
  bool help = false;
};

ExportRequest ParseExport(const std::vector<std::string>& arguments) {
  ExportRequest request;
  const ParsedArguments parsed = ParseArguments(kOptions, arguments, 1);
  if (parsed.help) {
    request.help = true;
    return request;
  }
  if (parsed.operands.empty()) throw UsageError{"no spool file given"};
  request.spool = parsed.operands.front();
  for (const GivenOption& given : parsed.options) {
    if (given.rule == &option::kText) {
      request.text = given.value;
    } else if (given.rule == &option::kEncoding) {
      request.encoding = EncodingOf(given.value);
    } else if (given.rule == &option::kPdf) {
      request.pdf = given.value;
    } else if (given.rule == &option::kPng) {
      request.png = given.value;
    } else if (given.rule == &option::kDpi) {
      request.dpi = static_cast<int>(given.number);
    } else if (given.rule == &option::kPaper) {
      request.paper = PaperOf(given.value);
    }
  }
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
  // A person at a terminal reads UTF-8; files and pipes get the file format,
  // unless --encoding says otherwise.
  const auto exportText = [&](OutputFile& file, bool terminal) {
    Utf8TextOutput utf8(file);
    const bool inUtf8 = request.encoding.empty() ? terminal : request.encoding == "utf-8";
    OutputFile& output = inUtf8 ? static_cast<OutputFile&>(utf8) : file;
    SpoolReader reader(request.spool);
    ExportSpoolText(reader, output);
    output.Commit();
    problems.Add(reader.Problems());
  };
  if (request.text && *request.text != "-") exportText(staged.Add(*request.text), false);
  if (request.pdf && *request.pdf != "-") {
    PdfPageDevice device(*request.pdf, Win1252ToUtf8(header.title), &staged);
    problems.Add(ReplayWholeDocument(request.spool, device, request.paper));
  }
  if (request.png) {
    PngPageDevice device(*request.png, request.dpi.value_or(kDefaultDpi), &staged);
    problems.Add(ReplayWholeDocument(request.spool, device, request.paper));
  }
  StreamOutputFile stream(out);
  if (request.text == "-") exportText(stream, &out == &std::cout && ::isatty(STDOUT_FILENO) == 1);
  if (request.pdf == "-") {
    PdfPageDevice device(stream, Win1252ToUtf8(header.title));
    problems.Add(ReplayWholeDocument(request.spool, device, request.paper));
  }
  staged.Publish();
  for (const std::string& line : problems.Lines()) err << request.spool << ": " << line << "\n";
  return problems.Lines().empty() ? 0 : 1;
}

}  // namespace

std::string ExportHelp() {
  return "usage: cwreport export SPOOL [OUTPUTS]\n"
         "\n"
         "Replays a kept spool file (cwreport --spool) into one or more outputs\n"
         "(with none, --text -):\n" +
         OptionHelp(kOptions) +
         "\n"
         "Outputs appear under their names only when all of them are complete. Problems\n"
         "of a damaged spool and picture files that cannot be loaded are listed on\n"
         "stderr; what could be used is still exported. A file with no spool header\n"
         "exports nothing.\n"
         "\n"
         "Exit status: 0 done, 1 an error or problems in the spool, 2 bad usage.\n";
}

int RunExport(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  ExportRequest request;
  try {
    request = ParseExport(args);
  } catch (const UsageError& usage) {
    err << "cwreport export: " << usage.text << "\nRun \"cwreport help export\" for the options.\n";
    return 2;
  }
  if (request.help) {
    out << ExportHelp();
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
