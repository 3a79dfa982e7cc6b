#include "platform/png_page_device.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cmath>
#include <cstdio>
#include <vector>

#include "platform/page_geometry.h"
#include "support/runtime_error.h"

namespace cw {

PngPageDevice::PngPageDevice(std::string folder, int dpi, StagedOutputs* staging)
    : PainterPageDevice(dpi / 1440.0),
      folder_(std::move(folder)),
      dpi_(dpi),
      staging_(staging != nullptr ? staging : &ownStaging_) {
  if (dpi < kMinDpi || dpi > kMaxDpi) {
    throw RuntimeError(err::kInvalidCall, "Resolution must be " + std::to_string(kMinDpi) + " to " +
                                              std::to_string(kMaxDpi) + " dpi, not " + std::to_string(dpi));
  }
}

PngPageDevice::~PngPageDevice() {
  SetPainter(nullptr);
  if (painter_ && painter_->isActive()) painter_->end();
  // Pages not published go with ownStaging_.
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
  // The folders this document makes, outermost first, go again if it fails.
  std::vector<QString> missing;
  for (QString path = QFileInfo(folder).absoluteFilePath(); !QFileInfo::exists(path) && !QDir(path).isRoot();
       path = QFileInfo(path).absolutePath()) {
    missing.insert(missing.begin(), path);
  }
  if (!QDir().mkpath(folder) || !QFileInfo(folder).isDir()) {
    const bool isFile = QFileInfo::exists(folder) && !QFileInfo(folder).isDir();
    throw RuntimeError(missing.empty() || isFile ? err::kPathFileAccess : err::kPathNotFound,
                       "Cannot write to " + folder_ + ": " +
                           (isFile ? "it is not a folder" : "the folder cannot be made"));
  }
  for (const QString& made : missing) staging_->MadeFolder(QFile::encodeName(made).toStdString());
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
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  if (!page.save(&buffer, "PNG")) {
    throw RuntimeError(err::kPathFileAccess, "Cannot make the page image " + PageFileName(pages_ + 1));
  }
  AtomicOutputFile& file = staging_->Add(QFile::encodeName(PagePath(pages_ + 1)).toStdString());
  file.Write(std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
  file.Commit();
  ++pages_;
}

bool PngPageDevice::Image(const std::string& file, double x, double y, double width, double height) {
  pictureOnPage_ = true;
  return PainterPageDevice::Image(file, x, y, width, height);
}

void PngPageDevice::EndDocument() {
  if (!begun_) throw RuntimeError(err::kInvalidCall, "The page images were ended before they were begun");
  EndPage();
  image_ = QImage();
  for (int page = pages_ + 1; QFile::exists(PagePath(page)); ++page) {
    staging_->RemoveAtPublish(QFile::encodeName(PagePath(page)).toStdString());
  }
  if (staging_ == &ownStaging_) ownStaging_.Publish();
  finished_ = true;
  begun_ = false;
}

}  // namespace cw
