#include "cli/cli_report_host.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <ostream>

#include "cli/local_clock.h"
#include "cli/stream_output_file.h"
#include "cli/system_printer.h"
#include "cli/utf8_text_output.h"
#include "cli/whole_document_replay.h"
#include "platform/bar_chart.h"
#include "platform/pdf_page_device.h"
#include "platform/png_page_device.h"
#include "printer/orl_printer.h"
#include "printer/output_file.h"
#include "printer/spool_reader.h"
#include "printer/text_export.h"
#include "reports/csv_export.h"
#include "support/ansi_text.h"
#include "support/runtime_error.h"

namespace cw::cli {

namespace {

constexpr int kDefaultDpi = 150;
constexpr std::size_t kCopyBlock = 1 << 20;

}  // namespace

CliReportHost::CliReportHost(ReportOutputs outputs, PageSetup paper, CivilDate today, std::ostream& out,
                             std::ostream& err, bool progressBar)
    : outputs_(std::move(outputs)), paper_(paper), today_(today), out_(out), err_(err), progress_(progressBar) {
  // The file format is for files and the programs that read them; a person
  // at a terminal reads UTF-8.
  utf8Text_ = outputs_.encoding ? *outputs_.encoding == "utf-8"
                                : outputs_.text == "-" && &out_ == &std::cout && ::isatty(STDOUT_FILENO) == 1;
}

MessageAnswer CliReportHost::MessageBox(std::string_view title, std::string_view text, MessageIcon,
                                        MessageButtons buttons) {
  progress_.Clear();
  std::string line;
  if (!title.empty()) line = TerminalSafe(title) + ": ";
  line += TerminalSafe(text);
  err_ << line << '\n';
  if (const std::string advice = CommandLineAdvice(title, text, advice_); !advice.empty()) err_ << advice << '\n';
  err_ << std::flush;
  // Nobody is there to press Retry.
  return buttons == MessageButtons::kOk ? MessageAnswer::kOk : MessageAnswer::kCancel;
}

void CliReportHost::SetBusy(bool) {}

void CliReportHost::DoEvents() {}

void CliReportHost::Progress(std::int64_t done, std::int64_t total) { progress_.Update(done, total); }

ScreenTwips CliReportHost::Screen() { return {}; }

CivilDate CliReportHost::Today() { return today_; }

TimeOfDay CliReportHost::Now() { return TimeFromClock(); }

std::string CliReportHost::AppTitle() { return "Callwarden Reports"; }

void CliReportHost::DrawBarChart(const BarChartSpec& chart, const std::string& bitmapFile) {
  DrawBarChartBitmap(chart, bitmapFile);
}

// The first document's outputs carry the names given; a report that makes
// more documents names the next ones NAME-2.EXT, NAME-3.EXT.
std::string CliReportHost::OutputName(const std::string& name, bool folder) const {
  if (documents_ <= 1) return name;
  const std::string suffix = "-" + std::to_string(documents_);
  const std::filesystem::path path(name);
  if (folder || !path.has_extension()) return name + suffix;
  return (path.parent_path() / (path.stem().string() + suffix + path.extension().string())).string();
}

void CliReportHost::ShowPreview(OrlPrinter& document, const ReportData& data) {
  progress_.Clear();
  ++documents_;
  // The document is finished (EndDoc): its spool is complete until the
  // report's DestroyReport deletes it, so everything is taken from it now.
  const std::string spool = document.PrintFile();
  if (outputs_.spool) KeepSpool(spool, OutputName(*outputs_.spool, false));
  if (outputs_.text && *outputs_.text != "-") WriteText(spool, OutputName(*outputs_.text, false));
  if (outputs_.pdf && *outputs_.pdf != "-") WritePdf(spool, OutputName(*outputs_.pdf, false), document.Title());
  if (outputs_.png) WritePng(spool, OutputName(*outputs_.png, true));
  if (outputs_.csv && *outputs_.csv != "-") WriteCsvOutput(data, staged_.Add(OutputName(*outputs_.csv, false)));
  // What went to standard output cannot be called back: it goes once every
  // file of the document is complete.
  WriteStandardOutput(spool, document.Title(), data);
  // Last: a job that has gone to the printer cannot be called back either,
  // so the files take their names first.
  if (outputs_.print && !printerFailed_) {
    CommitOutputs();
    Print(document);
  }
}

void CliReportHost::Print(OrlPrinter& document) {
  PrintJob job;
  job.printer = outputs_.printer;
  job.copies = outputs_.copies;
  job.fromPage = outputs_.fromPage;
  job.toPage = outputs_.toPage;
  job.progress = [this](std::int64_t done, std::int64_t total) { progress_.Update(done, total); };
  job.reportProblems = [this, &document](const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t start = 0; start < text.size();) {
      const std::size_t end = text.find("\r\n", start);
      lines.push_back(text.substr(start, end - start));
      start = end == std::string::npos ? text.size() : end + 2;
    }
    ReportProblems(document.PrintFile(), lines);
  };
  const PrintOutcome outcome = PrintOnSystemPrinter(document, job);
  progress_.Clear();
  if (outcome == PrintOutcome::kPrinterFailed || outcome == PrintOutcome::kNothingToDo) {
    printerFailed_ = true;
    err_ << "cwreport: the report was not printed: the printer \"" << outputs_.printer << "\" failed\n" << std::flush;
    return;
  }
  const std::int16_t pages = document.TotalPages();
  if (outputs_.fromPage && *outputs_.fromPage > pages) {
    err_ << "cwreport: nothing was printed: the document has " << pages << (pages == 1 ? " page" : " pages")
         << ", --from-page is " << *outputs_.fromPage << '\n' << std::flush;
  }
}

void CliReportHost::KeepSpool(const std::string& spool, const std::string& target) {
  std::ifstream in(spool, std::ios::binary);
  if (!in) throw RuntimeError(err::kFileNotFound, "Cannot read the spool file " + spool);
  AtomicOutputFile& output = staged_.Add(target);
  std::string block(kCopyBlock, '\0');
  while (in) {
    in.read(block.data(), static_cast<std::streamsize>(block.size()));
    output.Write(std::string_view(block.data(), static_cast<std::size_t>(in.gcount())));
  }
  if (in.bad()) throw RuntimeError(err::kPathFileAccess, "Cannot read the spool file " + spool);
  output.Commit();
}

void CliReportHost::WriteText(const std::string& spool, const std::string& target) {
  ExportText(spool, staged_.Add(target));
}

void CliReportHost::ExportText(const std::string& spool, OutputFile& file) {
  const ExportProgress progress = [this](std::int64_t done, std::int64_t total) { progress_.Update(done, total); };
  SpoolReader reader(spool);
  Utf8TextOutput utf8(file);
  OutputFile& output = utf8Text_ ? static_cast<OutputFile&>(utf8) : file;
  ExportSpoolText(reader, output, progress);
  output.Commit();
  ReportProblems(spool, reader.Problems().Lines());
}

void CliReportHost::WritePdf(const std::string& spool, const std::string& target, const std::string& title) {
  PdfPageDevice device(target, Win1252ToUtf8(title), &staged_);
  const SpoolProblems problems = ReplayWholeDocument(spool, device, paper_);
  ReportProblems(spool, problems.Lines());
}

void CliReportHost::WritePng(const std::string& spool, const std::string& folder) {
  PngPageDevice device(folder, outputs_.dpi.value_or(kDefaultDpi), &staged_);
  const SpoolProblems problems = ReplayWholeDocument(spool, device, paper_);
  ReportProblems(spool, problems.Lines());
}

void CliReportHost::WriteCsvOutput(const ReportData& data, OutputFile& output) {
  // The report was asked to keep its rows (ReportEnvironment::keepData).
  if (!data.Keeping()) throw RuntimeError(err::kInvalidCall, "The report kept no data for the CSV");
  WriteCsv(data, output, outputs_.csvSeparator);
  output.Commit();
}

void CliReportHost::WriteStandardOutput(const std::string& spool, const std::string& title, const ReportData& data) {
  if (outputs_.text == "-") {
    StreamOutputFile output(out_);
    ExportText(spool, output);
  }
  if (outputs_.pdf == "-") {
    StreamOutputFile output(out_);
    PdfPageDevice device(output, Win1252ToUtf8(title));
    const SpoolProblems problems = ReplayWholeDocument(spool, device, paper_);
    ReportProblems(spool, problems.Lines());
  }
  if (outputs_.csv == "-") {
    StreamOutputFile output(out_);
    WriteCsvOutput(data, output);
  }
}

// A spool this program has just written has no problems; if one turns up,
// it is shown rather than lost.
void CliReportHost::ReportProblems(const std::string& spool, const std::vector<std::string>& lines) {
  for (const std::string& line : lines) err_ << spool << ": " << line << '\n';
}

}  // namespace cw::cli
