#include "platform/png_page_device.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <cmath>
#include <cstdio>

#include "platform/output_file_error.h"
#include "platform/page_geometry.h"
#include "support/runtime_error.h"

namespace cw {

PngPageDevice::PngPageDevice(std::string folder, int dpi)
    : PainterPageDevice(dpi / 1440.0), folder_(std::move(folder)), dpi_(dpi) {
  if (dpi < kMinDpi || dpi > kMaxDpi) {
    throw RuntimeError(err::kInvalidCall, "Resolution must be " + std::to_string(kMinDpi) + " to " +
                                              std::to_string(kMaxDpi) + " dpi, not " + std::to_string(dpi));
  }
}

PngPageDevice::~PngPageDevice() {
  SetPainter(nullptr);
  if (painter_ && painter_->isActive()) painter_->end();
  if (!finished_) {
    for (const QString& page : written_) QFile::remove(page);
  }
}

std::string PngPageDevice::PageFileName(int page) {
  char name[32];
  std::snprintf(name, sizeof name, "page-%04d.png", page);
  return name;
}

QString PngPageDevice::PagePath(int page) const {
  return QDir(QFile::decodeName(folder_.c_str())).filePath(QString::fromStdString(PageFileName(page)));
}

void PngPageDevice::BeginDocument(const PageSetup& setup) {
  if (begun_ || finished_) throw RuntimeError(err::kInvalidCall, "The page images were already begun");
  const PageSizeTwips size = OrientedPageSize(setup);
  pixels_ = QSize(static_cast<int>(std::lround(size.width * UnitsPerTwip())),
                  static_cast<int>(std::lround(size.height * UnitsPerTwip())));
  const QString folder = QFile::decodeName(folder_.c_str());
  if (!QDir().mkpath(folder) || !QFileInfo(folder).isDir()) {
    throw OutputFileError(QDir(folder).filePath(QStringLiteral(".")), "Cannot create the image folder",
                          QStringLiteral("not a writable folder"));
  }
  painter_ = std::make_unique<QPainter>();
  begun_ = true;
}

void PngPageDevice::BeginPage() {
  if (!begun_) throw RuntimeError(err::kInvalidCall, "A page image was begun before the document");
  if (pageOpen_) EndPage();
  image_ = QImage(pixels_, QImage::Format_RGB32);
  if (image_.isNull()) {
    throw RuntimeError(err::kInvalidCall, "No memory for a page image of " + std::to_string(pixels_.width()) +
                                              " x " + std::to_string(pixels_.height()) + " pixels");
  }
  const int dotsPerMeter = static_cast<int>(std::lround(dpi_ / 0.0254));
  image_.setDotsPerMeterX(dotsPerMeter);
  image_.setDotsPerMeterY(dotsPerMeter);
  image_.fill(Qt::white);
  painter_->begin(&image_);
  pageOpen_ = true;
  pictureOnPage_ = false;
  SetPainter(painter_.get());
}

void PngPageDevice::EndPage() {
  if (!pageOpen_) return;
  SetPainter(nullptr);
  painter_->end();
  pageOpen_ = false;

  // Text and rules are black on white: such a page is stored as a grey image,
  // which is a third of the data to compress and a quarter of the file.
  const bool grey = !pictureOnPage_ || image_.allGray();
  const QImage page = grey ? image_.convertToFormat(QImage::Format_Grayscale8) : image_;
  const QString path = PagePath(PagesWritten() + 1);
  QSaveFile file(path);
  if (!file.open(QIODevice::WriteOnly)) throw OutputFileError(path, "Cannot create the page image", file.errorString());
  if (!page.save(&file, "PNG")) throw OutputFileError(path, "Cannot write the page image", file.errorString());
  if (!file.commit()) throw OutputFileError(path, "Cannot complete the page image", file.errorString());
  written_.push_back(path);
}

bool PngPageDevice::Image(const std::string& file, double x, double y, double width, double height) {
  pictureOnPage_ = true;
  return PainterPageDevice::Image(file, x, y, width, height);
}

void PngPageDevice::EndDocument() {
  if (!begun_) throw RuntimeError(err::kInvalidCall, "The page images were ended before they were begun");
  EndPage();
  image_ = QImage();
  for (int page = PagesWritten() + 1; QFile::exists(PagePath(page)); ++page) QFile::remove(PagePath(page));
  finished_ = true;
  begun_ = false;
}

}  // namespace cw
