#include "platform/pdf_page_device.h"

#include <QPageLayout>
#include <QPageSize>

#include "platform/page_geometry.h"
#include "support/runtime_error.h"

namespace cw {

PdfPageDevice::PdfPageDevice(std::string path, std::string title, StagedOutputs* staging)
    : PainterPageDevice(1.0), path_(std::move(path)), title_(std::move(title)), staging_(staging) {}

PdfPageDevice::PdfPageDevice(OutputFile& output, std::string title)
    : PainterPageDevice(1.0), path_("standard output"), title_(std::move(title)), output_(&output) {}

PdfPageDevice::~PdfPageDevice() {
  SetPainter(nullptr);
  if (painter_ && painter_->isActive()) painter_->end();
  // An own file not committed takes its temporary file with it.
}

void PdfPageDevice::FailWriting(const std::string& what) {
  // The file writer's own error says why; else Qt's painter gave up.
  if (device_) device_->RethrowError();
  throw RuntimeError(err::kPathFileAccess, what + " \"" + path_ + "\"");
}

void PdfPageDevice::BeginDocument(const PageSetup& setup) {
  if (begun_ || completed_) throw RuntimeError(err::kInvalidCall, "The PDF document was already begun");
  const PageSizeTwips size = OrientedPageSize(setup);
  if (output_ == nullptr) {
    if (staging_ != nullptr) {
      output_ = &staging_->Add(path_);
    } else {
      ownFile_ = std::make_unique<AtomicOutputFile>(path_);
      output_ = ownFile_.get();
    }
  }
  device_ = std::make_unique<OutputFileDevice>(*output_);

  writer_ = std::make_unique<QPdfWriter>(device_.get());
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
    if (!painter_->begin(writer_.get())) FailWriting("Cannot write the PDF file");
  } else if (!writer_->newPage()) {
    FailWriting("Cannot write the PDF file");
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
  if (!painter_->end()) FailWriting("Cannot write the PDF file");
  device_->RethrowError();
  output_->Commit();
  begun_ = false;
  completed_ = true;
}

}  // namespace cw
