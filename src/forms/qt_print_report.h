#pragma once
// PrintReport on a real printer, for the desktop program: the print dialog
// (PrintOptForm), the choice of printer, the progress window
// (PrintProgressForm) and the replay of the spool onto the printer through
// Qt Print Support. Hand MakeQtPrintReport's result to each report document
// as OrlPrinterEnvironment::printReport.

#include <QString>
#include <cstdint>
#include <functional>
#include <string>

#include "forms/print_opt_form.h"

class QWidget;

namespace cw {

class OrlPrinter;

struct QtPrintReportOptions {
  QWidget* parent = nullptr;  // owner of the dialog and the progress window
  // The printers offered in the dialog and searched for DefaultPrinter;
  // empty: the system's (SystemPrinters()).
  std::function<PrinterCatalog()> printers;
  // Told what went wrong inside the spool (damaged records, pictures that
  // could not be loaded) once the job has gone out; one text of one or more
  // lines. Empty: not told.
  std::function<void(const std::string& text)> reportProblems;
  // Told that the progress window's Cancel stopped the job, and whether any
  // of it reached the printer. Empty: not told.
  std::function<void(const std::string& text)> reportCancelled;
  // Told how far the replay is (records read of the total for all copies)
  // when ShowProgress is off: a headless caller's own progress bar. Empty:
  // not told.
  std::function<void(std::int64_t done, std::int64_t total)> progress;
};

// What happened to one PrintReport call, for the caller and for tests.
enum class PrintOutcome {
  kNothingToDo,  // the document's printer had failed before
  kCancelled,    // the print dialog was cancelled
  kStopped,      // the progress window's Cancel: the job was dropped
  kPrinted,      // the job went to the printer (an empty page range sends none)
  kPrinterFailed // a printer error that was not retried: the rest was dropped
};

// Prints the finished document (EndDoc done, spool in place):
// 1. with ShowPrintDialog, PrintOptForm filled from PrintFromPage,
//    PrintToPage and PrintCopies (a value still 0 shows as page 1, the last
//    page and one copy) and DefaultPrinter; OK writes the four back unchanged,
//    Cancel ends here;
// 2. the first printer whose name, trimmed, equals DefaultPrinter, trimmed,
//    else the system's current printer;
// 3. with ShowProgress, PrintProgressForm (naming the printer) for the whole
//    replay; its Cancel drops the job, and reportCancelled is told;
// 4. the spool replayed from PrintFromPage to PrintToPage, PrintCopies times,
//    as one job named after the document's Title, positions measured from the
//    paper's edge. Without the dialog, a range or copies left at 0 mean the
//    whole document once.
// A printer step that fails raises the document's OnPrinterError
// (OrlPrinter::RaisePrinterError): a retry repeats the step, else the
// printer-failed flag is set and the job is dropped. A spool that cannot be
// opened is a RuntimeError (53 or 75) for the caller.
PrintOutcome PrintReportOnPrinter(OrlPrinter& document, const QtPrintReportOptions& options = {});

// The environment's printReport for the desktop program.
std::function<void(OrlPrinter&)> MakeQtPrintReport(QtPrintReportOptions options);

}  // namespace cw
