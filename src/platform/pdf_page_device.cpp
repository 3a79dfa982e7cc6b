#include "platform/pdf_page_device.h"

#include <QFile>
#include <QPageLayout>
#include <QPageSize>

#include "platform/output_file_error.h"
#include "platform/page_geometry.h"
#include "support/runtime_error.h"

namespace cw {

PdfPageDevice::PdfPageDevice(std::string path, std::string title)
    : PainterPageDevice(1.0), path_(std::move(path)), title_(std::move(title)) {}

PdfPageDevice::~PdfPageDevice() {
  SetPainter(nullptr);
  if (painter_ && painter_->isActive()) painter_->end();
  // file_ is not committed: its temporary file goes with it.
}

void PdfPageDevice::BeginDocument(const PageSetup& setup) {
  if (begun_ || completed_) throw RuntimeError(err::kInvalidCall, "The PDF document was already begun");
  const PageSizeTwips size = OrientedPageSize(setup);
  const QString path = QFile::decodeName(path_.c_str());
  file_ = std::make_unique<QSaveFile>(path);
  if (!file_->open(QIODevice::WriteOnly)) throw OutputFileError(path, "Cannot create the PDF file", file_->errorString());

  writer_ = std::make_unique<QPdfWriter>(file_.get());
  writer_->setResolution(1440);
  writer_->setCreator(QStringLiteral("Callwarden Reports"));
  if (!title_.empty()) writer_->setTitle(QString::fromStdString(title_));
  // The page is given exactly as it is to be seen; no margins, since spool
  // coordinates are measured from the page's top-left corner.
  const QPageSize pageSize(QSizeF(size.width / 20.0, size.height / 20.0), QPageSize::Point, QString(),
                           QPageSize::ExactMatch);
  writer_->setPageLayout(QPageLayout(pageSize, QPageLayout::Portrait, QMarginsF(0, 0, 0, 0)));
  painter_ = std::make_unique<QPainter>();
  begun_ = true;
}

void PdfPageDevice::BeginPage() {
  if (!begun_) throw RuntimeError(err::kInvalidCall, "A PDF page was begun before the document");
  if (pageOpen_) EndPage();
  if (pages_ == 0) {
    if (!painter_->begin(writer_.get())) {
      throw OutputFileError(QFile::decodeName(path_.c_str()), "Cannot write the PDF file", file_->errorString());
    }
  } else if (!writer_->newPage()) {
    throw OutputFileError(QFile::decodeName(path_.c_str()), "Cannot write the PDF file", file_->errorString());
  }
  ++pages_;
  pageOpen_ = true;
  SetPainter(painter_.get());
}

void PdfPageDevice::EndPage() {
  pageOpen_ = false;
  SetPainter(nullptr);
}

void PdfPageDevice::EndDocument() {
  if (!begun_) throw RuntimeError(err::kInvalidCall, "The PDF document was ended before it was begun");
  // A PDF holds at least one page; a document that drew none is one blank page.
  if (pages_ == 0) BeginPage();
  EndPage();
  const QString path = QFile::decodeName(path_.c_str());
  const bool painted = painter_->end();
  if (!painted || file_->error() != QFileDevice::NoError) {
    throw OutputFileError(path, "Cannot write the PDF file", file_->errorString());
  }
  if (!file_->commit()) throw OutputFileError(path, "Cannot complete the PDF file", file_->errorString());
  begun_ = false;
  completed_ = true;
}

}  // namespace cw
