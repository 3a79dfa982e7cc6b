#pragma once
// Hands a finished print file to a CUPS queue. The printer device renders a
// job into a file of its own first, so that a job cancelled half-way can be
// dropped before any of it reaches the printer; only a whole job is sent.

#include <QString>

class QPrinter;

namespace cw {

// Sends `file` (what Qt rendered for `printer`) to the printer's queue as one
// job titled `title`, with the paper, orientation and sides of `printer`, as
// Qt's own hand-over does. Empty when CUPS took it, else why it did not.
QString SubmitCupsJob(const QPrinter& printer, const QString& file, const QString& title);

}  // namespace cw
