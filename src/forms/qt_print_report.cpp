#include "forms/qt_print_report.h"

#include <QCoreApplication>
#include <QPrinter>
#include <QPrinterInfo>
#include <memory>
#include <optional>

#include "forms/print_progress_form.h"
#include "platform/printer_page_device.h"
#include "printer/orl_printer.h"
#include "printer/spool_reader.h"
#include "printer/spool_replay.h"
#include "support/ansi_text.h"
#include "support/runtime_error.h"
#include "support/text.h"

namespace cw {

namespace {

QString FromAnsi(std::string_view text) { return QString::fromStdString(Win1252ToUtf8(text)); }

// Shows the print dialog; false when it was cancelled.
bool AskPrintOptions(OrlPrinter& document, const PrinterCatalog& printers, QWidget* parent) {
  OrlPrinter::OutputOptions& options = document.Options();
  PrintOptForm form(&document, printers, parent);
  form.FromPage = options.printFromPage > 0 ? options.printFromPage : std::int16_t{1};
  form.ToPage = options.printToPage > 0 ? options.printToPage : document.TotalPages();
  form.Copies = options.printCopies > 0 ? options.printCopies : std::int16_t{1};
  form.exec();
  if (form.DialogResult != 1) return false;
  options.printToPage = form.ToPage;
  options.printFromPage = form.FromPage;
  options.printCopies = form.Copies;
  options.defaultPrinter = form.PrinterName;
  return true;
}

// The printer named by DefaultPrinter when the list has it (the job must go
// there: `required`), else the current one.
struct SelectedPrinter {
  std::unique_ptr<QPrinter> printer;
  QString required;
};

SelectedPrinter SelectPrinter(const std::string& defaultPrinter, const PrinterCatalog& printers) {
  SelectedPrinter selected;
  const QString wanted = FromAnsi(Trim(defaultPrinter));
  for (const QString& name : printers.names) {
    if (name.trimmed() == wanted) {
      selected.required = name;
      break;
    }
  }
  const QString name = selected.required.isEmpty() ? printers.current : selected.required;
  const QPrinterInfo info = QPrinterInfo::printerInfo(name);
  selected.printer = info.isNull() ? std::make_unique<QPrinter>(QPrinter::HighResolution)
                                   : std::make_unique<QPrinter>(info, QPrinter::HighResolution);
  return selected;
}

std::string ProblemText(const ReplayResult& result) {
  std::string text;
  for (const std::string& line : result.problems.Lines()) text += line + "\r\n";
  for (const std::string& picture : result.missingImages) {
    text += "The picture " + picture + " could not be printed.\r\n";
  }
  return text;
}

}  // namespace

PrintOutcome PrintReportOnPrinter(OrlPrinter& document, const QtPrintReportOptions& settings) {
  if (document.PrinterFailed()) return PrintOutcome::kNothingToDo;
  const PrinterCatalog printers = settings.printers ? settings.printers() : SystemPrinters();
  OrlPrinter::OutputOptions& options = document.Options();

  ReplayOptions replay;
  if (options.showPrintDialog) {
    if (!AskPrintOptions(document, printers, settings.parent)) return PrintOutcome::kCancelled;
    replay.fromPage = options.printFromPage;
    replay.toPage = options.printToPage;
    replay.copies = options.printCopies;
  } else {
    replay.fromPage = options.printFromPage > 0 ? options.printFromPage : std::int16_t{1};
    replay.toPage = options.printToPage > 0 ? options.printToPage : document.TotalPages();
    replay.copies = options.printCopies > 0 ? options.printCopies : std::int16_t{1};
  }

  const std::string spool = document.PrintFile();
  const SelectedPrinter selected = SelectPrinter(options.defaultPrinter, printers);
  QPrinter* printer = selected.printer.get();
  const QString title = FromAnsi(document.Title());
  printer->setDocName(title);
  // The offsets are those of the paper turned the document's way.
  {
    const SpoolReader header(spool);
    printer->setPageOrientation(header.Header().orientation == 2 ? QPageLayout::Landscape
                                                                 : QPageLayout::Portrait);
  }
  replay.page = PrinterPageDevice::Paper(*printer);
  const QPointF offset = PrinterPageDevice::PhysicalOffsetTwips(*printer);
  replay.offsetXTwips = offset.x();
  replay.offsetYTwips = offset.y();

  std::optional<PrintProgressForm> progress;
  if (options.showProgress) {
    progress.emplace(title, printer->printerName(), settings.parent);
    progress->show();
    QCoreApplication::processEvents();
    replay.progress = [&](std::int64_t done, std::int64_t total) {
      if (total > 0) progress->SetProgress(static_cast<float>(static_cast<double>(done) / total));
    };
  } else if (settings.progress) {
    replay.progress = settings.progress;
  }
  replay.beginCopy = [&](std::int16_t) {
    // A job takes its name when it starts; the later copies are in that job.
    if (printer->printerState() != QPrinter::Active) printer->setDocName(title);
    QCoreApplication::processEvents();
  };
  replay.shouldStop = [&] {
    QCoreApplication::processEvents();
    return progress && progress->CancelRequested();
  };
  replay.onPrinterError = [&] { return document.RaisePrinterError(); };

  PrinterPageDevice device(*printer, selected.required);
  const ReplayResult result = ReplaySpool(spool, device, replay);

  PrintOutcome outcome = PrintOutcome::kPrinted;
  bool withdrawn = true;
  if (result.stopped || result.printerFailed) {
    const int pagesDrawn = device.PagesBegun();
    withdrawn = device.Abort();
    outcome = result.stopped ? PrintOutcome::kStopped : PrintOutcome::kPrinterFailed;
    if (!withdrawn) withdrawn = pagesDrawn == 0;
  } else {
    try {
      device.Finish();
    } catch (const RuntimeError&) {
      // The job is gone with the failed hand-over: a retry has nothing left
      // to send, so the handler's answer only decides the printer-failed flag.
      document.RaisePrinterError();
      outcome = PrintOutcome::kPrinterFailed;
    }
  }
  if (progress) progress->accept();

  if (outcome == PrintOutcome::kStopped && settings.reportCancelled) {
    const std::string printerName = Utf8ToWin1252(printer->printerName().toStdString());
    std::string text = "Printing of " + document.Title() + " was cancelled";
    text += withdrawn ? "; nothing was sent to the printer " + printerName + "."
                      : ". The pages drawn before Cancel could not be taken back from the printer " + printerName +
                            " and may still print.";
    settings.reportCancelled(text);
  }

  const std::string problems = ProblemText(result);
  if (!problems.empty() && settings.reportProblems) settings.reportProblems(problems);
  return outcome;
}

std::function<void(OrlPrinter&)> MakeQtPrintReport(QtPrintReportOptions options) {
  return [options = std::move(options)](OrlPrinter& document) { PrintReportOnPrinter(document, options); };
}

}  // namespace cw
