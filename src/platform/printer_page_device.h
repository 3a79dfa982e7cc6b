#pragma once
// A replayed document on a real printer (Qt Print Support; CUPS on Linux).
// The copies of one print request make one printer job: the first copy
// starts the job, each later copy continues it on a new sheet, and Finish
// sends it. A job for a printer queue is rendered into a temporary file of its
// own and handed to the queue only by Finish, so that Abort can drop all of
// it (Qt cannot withdraw a job it hands over itself). Every failure of the printer is a RuntimeError (482, "Printer
// error") so that the replay can ask whether to try the step again.

#include <QPainter>
#include <QPrinter>
#include <QString>
#include <QTemporaryFile>
#include <memory>

#include "platform/painter_page_device.h"

namespace cw {

// The classic number of a failed printer step.
inline constexpr int kPrinterError = 482;

class PrinterPageDevice final : public PainterPageDevice {
 public:
  // The printer must stay alive and configured (document name, page size)
  // while the device is used; its resolution fixes the device units.
  // requiredPrinter: the printer the job must go to; when the system no
  // longer has it, starting the job fails (and a retry looks again) rather
  // than printing on another printer.
  explicit PrinterPageDevice(QPrinter& printer, QString requiredPrinter = {});
  ~PrinterPageDevice() override;  // a job that was not finished is abandoned

  // The first call starts the job in the set-up's orientation; later calls
  // (further copies) only make the next page a new sheet. Fails when the
  // printer is not there or there is none at all.
  void BeginDocument(const PageSetup& setup) override;
  void BeginPage() override;
  void EndPage() override;
  // The end of one copy; the job stays open for the next.
  void EndDocument() override;

  // Ends the job and hands it to the printer. Nothing happens when no page
  // was begun (a range that holds no page prints nothing).
  void Finish();
  // Drops the job. True when nothing of it reaches the printer; false when
  // the pages drawn so far could not be withdrawn (a job that Qt hands over
  // itself, e.g. to a file the printer was set to).
  bool Abort();

  int PagesBegun() const { return pages_; }

  // The printer's paper in twips, portrait, and the printable area's offset
  // from the paper's top-left corner in twips (the physical offsets).
  static PageSetup Paper(const QPrinter& printer);
  static QPointF PhysicalOffsetTwips(const QPrinter& printer);

 private:
  [[noreturn]] void Fail(const QString& what) const;
  // The job's own file, when the job goes to a queue, in place of Qt's.
  void RenderIntoOwnFile();
  void DropJobFile();

  QPrinter& printer_;
  QString requiredPrinter_;
  std::unique_ptr<QPainter> painter_;
  std::unique_ptr<QTemporaryFile> jobFile_;
  bool jobOpen_ = false;
  bool pageOpen_ = false;
  int pages_ = 0;
};

}  // namespace cw
