#pragma once
// The "Save Report" dialog that the engine's SaveReport shows when it is given
// no file name: text files first, all files second, ".txt" added to a name
// typed without one. The desktop wires it into the document's environment
// (OrlPrinterEnvironment::askSaveFileName).

#include <string>

class QWidget;

namespace cw {

// The chosen file name, as the file system spells it; empty when cancelled.
std::string AskSaveReportFileName(QWidget* parent);

}  // namespace cw
