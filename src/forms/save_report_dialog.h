#pragma once
// The "Save Report" dialog that the engine's SaveReport shows when it is given
// no file name: text files first, then CSV files (the report's data), then
// all files; ".txt" added to a name typed without one, ".csv" when CSV files
// are chosen. The desktop wires it into the document's environment
// (OrlPrinterEnvironment::askSaveFileName).

#include <string>

class QWidget;

namespace cw {

// The chosen file name, as the file system spells it; empty when cancelled.
std::string AskSaveReportFileName(QWidget* parent);

}  // namespace cw
