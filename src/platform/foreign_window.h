#pragma once
// Whether a window of another program (the logging program's, which holds
// the embedded report form) still exists. Qt wraps such a window
// (QWindow::fromWinId) but is not told when it goes away.

#include <QWindow>

namespace cw {

// False only when the display says there is no such window; true when it has
// one, and on a display that cannot be asked (not X11).
bool ForeignWindowExists(WId window);

}  // namespace cw
