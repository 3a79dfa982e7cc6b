#pragma once
// The ReportHost of cwreport: message boxes become lines on standard error,
// the preview becomes the requested outputs (text, PDF, page images, the kept
// spool, the printer), charts are drawn by the platform's bar chart, and long work shows a
// progress bar when standard error is a terminal.

#include <iosfwd>
#include <utility>
#include <string>
#include <vector>

#include "cli/command_line_advice.h"
#include "cli/report_options.h"
#include "cli/terminal_progress.h"
#include "printer/staged_outputs.h"
#include "reports/report_host.h"

namespace cw::cli {

class CliReportHost final : public ReportHost {
 public:
  // out receives "--text -" (in UTF-8 when it is the process's standard
  // output on a terminal, unless --encoding says otherwise); err the
  // messages. progressBar: err is a terminal.
  // paper: the page the report is laid out on. With --print, outputs.printer
  // is a name ChoosePrinter gave.
  CliReportHost(ReportOutputs outputs, PageSetup paper, CivilDate today, std::ostream& out, std::ostream& err,
                bool progressBar);

  // "TITLE: TEXT" (the text alone when the title is empty), one line per line
  // of the text, control bytes escaped; then, for a box whose advice is meant
  // for the desktop, one line with the command-line equivalent. OK boxes
  // answer OK; a Retry/Cancel box answers Cancel.
  MessageAnswer MessageBox(std::string_view title, std::string_view text, MessageIcon icon,
                           MessageButtons buttons) override;
  void SetBusy(bool busy) override;
  void DoEvents() override;
  void Progress(std::int64_t done, std::int64_t total) override;
  // Writes every requested output of the finished document under temporary
  // names (standard output last, after the files are complete), and prints
  // it last, once the files have taken their names. Throws RuntimeError when
  // a file cannot be written (the report's error box); a printer that fails
  // is told on err and kept in PrinterFailed().
  void ShowPreview(OrlPrinter& document, const ReportData& data) override;
  void DrawBarChart(const BarChartSpec& chart, const std::string& bitmapFile) override;
  // No screen: the preview's size is of no use here.
  ScreenTwips Screen() override;
  CivilDate Today() override;
  TimeOfDay Now() override;
  std::string AppTitle() override;

  // Documents written so far.
  int Documents() const { return documents_; }
  // The files of a request that produced its documents take their names, all
  // together. Errors 75/76.
  void CommitOutputs() { staged_.Publish(); }
  // Removes every output file written but not committed: a request that
  // ended in an error leaves the files of an earlier run as they were.
  void DiscardOutputs() { staged_.Discard(); }
  void ClearProgress() { progress_.Clear(); }
  // Where the call log was looked for, for the advice after a box.
  void SetAdviceContext(AdviceContext context) { advice_ = std::move(context); }
  // --print met a printer that failed: the request has not done its work.
  bool PrinterFailed() const { return printerFailed_; }

 private:
  std::string OutputName(const std::string& name, bool folder) const;
  void KeepSpool(const std::string& spool, const std::string& target);
  void WriteText(const std::string& spool, const std::string& target);
  void WritePdf(const std::string& spool, const std::string& target, const std::string& title);
  void WritePng(const std::string& spool, const std::string& folder);
  void WriteStandardOutput(const std::string& spool, const std::string& title, const ReportData& data);
  void WriteCsvOutput(const ReportData& data, OutputFile& output);
  void Print(OrlPrinter& document);
  void ReportProblems(const std::string& spool, const std::vector<std::string>& lines);
  void ExportText(const std::string& spool, OutputFile& output);

  ReportOutputs outputs_;
  PageSetup paper_;
  CivilDate today_;
  std::ostream& out_;
  std::ostream& err_;
  TerminalProgress progress_;
  int documents_ = 0;
  bool printerFailed_ = false;
  StagedOutputs staged_;
  bool utf8Text_ = false;
  AdviceContext advice_;
};

}  // namespace cw::cli
