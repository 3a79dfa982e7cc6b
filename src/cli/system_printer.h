#pragma once
// --print: a finished report document on one of the system's printers,
// headless (no print dialog, no progress window), through the same
// PrintReport replay the desktop's Print button uses.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "forms/qt_print_report.h"
#include "printer/page_device.h"

namespace cw {
class OrlPrinter;
}

namespace cw::cli {

// The printer a request prints on, chosen before the report runs so that a
// wrong name costs nothing.
struct ChosenPrinter {
  std::string name;  // the system's name of it (UTF-8)
  PageSetup paper;   // its paper, portrait, as the printer replay takes it
};

// The printer whose name, trimmed, equals `wanted`, trimmed; the system's
// default printer when `wanted` is blank. Needs the Qt application. Throws
// RuntimeError 482 (naming the printers there are) when there is no such
// printer, or no default one.
ChosenPrinter ChoosePrinter(std::string_view wanted);

struct PrintJob {
  std::string printer;  // a name ChoosePrinter gave
  std::optional<std::int16_t> copies;    // default 1
  std::optional<std::int16_t> fromPage;  // default the first page
  std::optional<std::int16_t> toPage;    // default the last page
  // Records replayed of the total, for a progress bar.
  std::function<void(std::int64_t done, std::int64_t total)> progress;
  // Damaged records or pictures that could not be printed, one text.
  std::function<void(const std::string& text)> reportProblems;
};

// Prints the document (EndDoc done). A printer step that fails raises the
// document's OnPrinterError; the report form's handler always asks for a
// retry, and after kPrinterStepRepeats repeats the printer counts as failed
// and the job is dropped (PrintOutcome::kPrinterFailed).
PrintOutcome PrintOnSystemPrinter(OrlPrinter& document, const PrintJob& job);

}  // namespace cw::cli
