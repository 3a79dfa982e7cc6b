#pragma once
// Whether the print system would take a job for a printer now. Qt hands a
// job to a CUPS queue that has been told to reject jobs without a word, and
// the job is lost; asking first lets the printer step fail like any other
// printer error (and be tried again once the queue accepts jobs).

#include <QString>

namespace cw {

// Why printer `name` refuses new jobs ("it does not accept jobs",
// with the queue's own message when it has one), or an empty text when it
// takes them, or when there is no print scheduler to ask (the job then goes
// its own way and fails there if it must).
QString PrinterRefusal(const QString& name);

}  // namespace cw
