#include "cli/system_printer.h"

#include <QPrinter>
#include <QPrinterInfo>
#include <QStringList>

#include "forms/print_opt_form.h"
#include "platform/printer_page_device.h"
#include "platform/printer_refusal.h"
#include "printer/orl_printer.h"
#include "support/ansi_text.h"
#include "support/runtime_error.h"

namespace cw::cli {

namespace {

std::string PrinterList(const QStringList& names) {
  if (names.isEmpty()) return "this system has no printer";
  return "the printers are: " + names.join(QStringLiteral(", ")).toStdString();
}

}  // namespace

ChosenPrinter ChoosePrinter(std::string_view wanted) {
  const PrinterCatalog printers = SystemPrinters();
  const QString name = QString::fromStdString(std::string(wanted)).trimmed();
  QString found;
  if (name.isEmpty()) {
    if (printers.current.isEmpty()) {
      throw RuntimeError(kPrinterError, "There is no default printer: name one with --print PRINTER (" +
                                            PrinterList(printers.names) + ")");
    }
    found = printers.current;
  } else {
    for (const QString& candidate : printers.names) {
      if (candidate.trimmed() == name) {
        found = candidate;
        break;
      }
    }
    if (found.isEmpty()) {
      throw RuntimeError(kPrinterError,
                         "There is no printer named \"" + name.toStdString() + "\" (" + PrinterList(printers.names) + ")");
    }
  }
  // A queue told to reject jobs would lose this one: better said now, before
  // the report runs, than after it.
  if (const QString refusal = PrinterRefusal(found); !refusal.isEmpty()) {
    throw RuntimeError(kPrinterError, "The printer \"" + found.toStdString() + "\" cannot print now: " +
                                          refusal.toStdString());
  }
  // The page the report is laid out on is the one the replay will print on.
  const QPrinter printer(QPrinterInfo::printerInfo(found), QPrinter::HighResolution);
  return ChosenPrinter{found.toStdString(), PrinterPageDevice::Paper(printer)};
}

PrintOutcome PrintOnSystemPrinter(OrlPrinter& document, const PrintJob& job) {
  OrlPrinter::OutputOptions& options = document.Options();
  options.showPrintDialog = false;
  options.showProgress = false;
  options.defaultPrinter = Utf8ToWin1252(job.printer);
  // 0 leaves the choice to PrintReport: one copy of the whole document.
  options.printCopies = job.copies.value_or(0);
  options.printFromPage = job.fromPage.value_or(0);
  options.printToPage = job.toPage.value_or(0);

  QtPrintReportOptions printing;
  // The printer was chosen from the system's list a moment ago; the job
  // must go to it and to no other.
  printing.printers = [name = QString::fromStdString(job.printer)] { return PrinterCatalog{{name}, name}; };
  printing.progress = job.progress;
  printing.reportProblems = job.reportProblems;
  return PrintReportOnPrinter(document, printing);
}

}  // namespace cw::cli
