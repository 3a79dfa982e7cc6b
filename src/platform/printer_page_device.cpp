#include "platform/printer_page_device.h"

#include <QDir>
#include <QPageLayout>
#include <QPageSize>
#include <QPrinterInfo>
#include <algorithm>

#include "platform/cups_job.h"
#include "platform/printer_refusal.h"
#include "support/runtime_error.h"

namespace cw {

namespace {

constexpr double kTwipsPerPoint = 20;
constexpr double kTwipsPerInch = 1440;

double DeviceUnitsPerTwip(const QPrinter& printer) {
  const int dpi = printer.resolution();
  return (dpi > 0 ? dpi : 600) / kTwipsPerInch;
}

}  // namespace

PrinterPageDevice::PrinterPageDevice(QPrinter& printer, QString requiredPrinter)
    : PainterPageDevice(DeviceUnitsPerTwip(printer)), printer_(printer), requiredPrinter_(std::move(requiredPrinter)) {}

PrinterPageDevice::~PrinterPageDevice() {
  SetPainter(nullptr);
  if (jobOpen_) Abort();
}

void PrinterPageDevice::Fail(const QString& what) const {
  const QString name = printer_.printerName().isEmpty() ? QStringLiteral("the printer") : printer_.printerName();
  throw RuntimeError(kPrinterError, "Printer error: " + name.toStdString() + ": " + what.toStdString());
}

void PrinterPageDevice::BeginDocument(const PageSetup& setup) {
  if (jobOpen_) return;
  if (!requiredPrinter_.isEmpty() && printer_.printerName() != requiredPrinter_) {
    // Qt keeps the previous printer when it is given a name it does not know.
    if (QPrinterInfo::printerInfo(requiredPrinter_).isNull()) Fail(QStringLiteral("the printer is not available"));
    printer_.setPrinterName(requiredPrinter_);
  }
  // With no printer installed Qt falls back to a PDF file that has no name.
  if (printer_.outputFormat() == QPrinter::PdfFormat && printer_.outputFileName().isEmpty()) {
    Fail(QStringLiteral("no printer is installed"));
  }
  if (!printer_.isValid()) Fail(QStringLiteral("the printer is not available"));
  if (const QString refusal = PrinterRefusal(printer_.printerName()); !refusal.isEmpty()) Fail(refusal);
  printer_.setPageOrientation(setup.orientation == 2 ? QPageLayout::Landscape : QPageLayout::Portrait);
  RenderIntoOwnFile();
  painter_ = std::make_unique<QPainter>();
  if (!painter_->begin(&printer_)) {
    painter_.reset();
    DropJobFile();
    Fail(QStringLiteral("cannot start the print job"));
  }
  jobOpen_ = true;
  pages_ = 0;
}

void PrinterPageDevice::BeginPage() {
  if (!jobOpen_) throw RuntimeError(err::kInvalidCall, "A printer page was begun before the document");
  if (pageOpen_) EndPage();
  if (pages_ > 0 && !printer_.newPage()) Fail(QStringLiteral("cannot start a new page"));
  ++pages_;
  pageOpen_ = true;
  SetPainter(painter_.get());
}

void PrinterPageDevice::EndPage() {
  pageOpen_ = false;
  SetPainter(nullptr);
}

void PrinterPageDevice::EndDocument() { EndPage(); }

void PrinterPageDevice::RenderIntoOwnFile() {
  if (printer_.outputFormat() != QPrinter::NativeFormat || !printer_.outputFileName().isEmpty()) return;
  // Not named .pdf: Qt keeps the printer's own engine and settings and only
  // writes where it is told.
  jobFile_ = std::make_unique<QTemporaryFile>(QDir::temp().filePath(QStringLiteral("callwarden-print-XXXXXX.job")));
  if (!jobFile_->open()) {
    const QString reason = jobFile_->errorString();
    jobFile_.reset();
    Fail(QStringLiteral("cannot make the print job's temporary file (%1)").arg(reason));
  }
  jobFile_->close();
  printer_.setOutputFileName(jobFile_->fileName());
}

void PrinterPageDevice::DropJobFile() {
  if (!jobFile_) return;
  printer_.setOutputFileName(QString());
  jobFile_.reset();
}

void PrinterPageDevice::Finish() {
  if (!jobOpen_) return;
  EndPage();
  jobOpen_ = false;
  const bool ended = painter_->end();
  painter_.reset();
  if (!ended || printer_.printerState() == QPrinter::Error) {
    DropJobFile();
    Fail(QStringLiteral("the print job could not be sent"));
  }
  if (!jobFile_) return;
  // The whole job is drawn: its file goes to the printer's queue.
  const QString file = jobFile_->fileName();
  printer_.setOutputFileName(QString());
  const QString refusal = SubmitCupsJob(printer_, file, printer_.docName());
  jobFile_.reset();
  if (!refusal.isEmpty()) Fail(QStringLiteral("the print job could not be sent (%1)").arg(refusal));
}

bool PrinterPageDevice::Abort() {
  if (!jobOpen_) return true;
  EndPage();
  jobOpen_ = false;
  // A job in a file of our own is dropped whole; Qt's own hand-over can
  // rarely be withdrawn, and sends what was drawn when its painter ends.
  const bool withdrawn = printer_.abort() || jobFile_ != nullptr;
  if (painter_->isActive()) painter_->end();
  painter_.reset();
  DropJobFile();
  return withdrawn;
}

PageSetup PrinterPageDevice::Paper(const QPrinter& printer) {
  const QSizeF points = printer.pageLayout().pageSize().size(QPageSize::Point);
  PageSetup paper;
  if (points.isEmpty()) return paper;  // no paper known: US Letter
  paper.widthTwips = std::min(points.width(), points.height()) * kTwipsPerPoint;
  paper.heightTwips = std::max(points.width(), points.height()) * kTwipsPerPoint;
  paper.orientation = 1;
  return paper;
}

QPointF PrinterPageDevice::PhysicalOffsetTwips(const QPrinter& printer) {
  const QRectF paper = printer.paperRect(QPrinter::Point);
  const QRectF printable = printer.pageRect(QPrinter::Point);
  return (printable.topLeft() - paper.topLeft()) * kTwipsPerPoint;
}

}  // namespace cw
