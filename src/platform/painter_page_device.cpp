#include "platform/painter_page_device.h"

#include <QFile>
#include <QGlyphRun>
#include <QImage>
#include <QPaintEngine>
#include <QPen>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <optional>

#include "support/ansi_text.h"
#include "support/runtime_error.h"

namespace cw {
namespace {

// Devices that cannot AND a picture into the page (PDF) get the same look by
// leaving the picture's white pixels out: on a white page, ANDing with white
// changes nothing and every other pixel comes out as the picture's.
QImage WhiteAsTransparent(const QImage& picture) {
  QImage result = picture.convertToFormat(QImage::Format_ARGB32);
  for (int row = 0; row < result.height(); ++row) {
    auto* pixel = reinterpret_cast<QRgb*>(result.scanLine(row));
    for (int column = 0; column < result.width(); ++column) {
      if ((pixel[column] & 0x00FFFFFFu) == 0x00FFFFFFu) pixel[column] = 0;
    }
  }
  return result;
}

// The bytes of a picture file, or nothing when it is not a regular file or
// cannot be read. A spool may name any path: a named pipe there would leave
// the image loader waiting for a writer for ever, so the file is opened
// without waiting and looked at before a byte is read.
std::optional<QByteArray> ReadPictureFile(const std::string& path) {
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (fd < 0) return std::nullopt;
  std::optional<QByteArray> bytes;
  struct stat info {};
  if (::fstat(fd, &info) == 0 && S_ISREG(info.st_mode)) {
    QByteArray data(static_cast<qsizetype>(info.st_size), Qt::Uninitialized);
    qsizetype got = 0;
    while (got < data.size()) {
      const ssize_t n = ::read(fd, data.data() + got, static_cast<std::size_t>(data.size() - got));
      if (n < 0 && errno == EINTR) continue;
      if (n <= 0) break;
      got += n;
    }
    data.truncate(got);
    bytes = std::move(data);
  }
  ::close(fd);
  return bytes;
}

}  // namespace

PainterPageDevice::PainterPageDevice(double unitsPerTwip) : unitsPerTwip_(unitsPerTwip) {
  if (!(unitsPerTwip > 0)) throw RuntimeError(err::kInvalidCall, "Device units per twip must be positive");
}

void PainterPageDevice::SetPainter(QPainter* painter) {
  painter_ = painter;
  if (painter_ == nullptr) return;
  // On coarse devices (screen, page images) that is under a pixel: draw one
  // device pixel instead (a cosmetic pen).
  double lineWidth = kLineWidthTwips * unitsPerTwip_;
  if (lineWidth < 1) lineWidth = 0;
  painter_->setPen(QPen(Qt::black, lineWidth, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
  painter_->setBrush(Qt::NoBrush);
  painter_->setRenderHint(QPainter::TextAntialiasing, true);
}

QPainter& PainterPageDevice::Painter() {
  if (painter_ == nullptr) throw RuntimeError(err::kInvalidCall, "Drawing outside a page");
  return *painter_;
}

void PainterPageDevice::SetFont(const FontSpec& font) {
  font_ = font;
  face_ = nullptr;
}

void PainterPageDevice::SelectFace() {
  face_ = &faces_.Get(font_);
  const double pixelSize = font_.points * 20.0 * unitsPerTwip_;
  auto [entry, added] = sizedFonts_.try_emplace({face_, pixelSize});
  if (added) {
    entry->second = face_->raw;
    entry->second.setPixelSize(pixelSize);
  }
  sized_ = entry->second;
  deviceUnitsPerFontUnit_ = pixelSize / face_->unitsPerEm;
  baseline_ = face_->ascent * deviceUnitsPerFontUnit_;
}

void PainterPageDevice::Text(double x, double y, std::string_view text) {
  QPainter& painter = Painter();
  if (face_ == nullptr) SelectFace();
  if (text.empty()) return;
  // Glyphs go exactly where the measurement put them: each advances by its
  // unhinted width, with no kerning or shaping in between.
  const auto count = static_cast<qsizetype>(text.size());
  glyphs_.resize(count);
  positions_.resize(count);
  double advance = 0;
  for (qsizetype i = 0; i < count; ++i) {
    const auto byte = static_cast<unsigned char>(text[static_cast<std::size_t>(i)]);
    glyphs_[i] = face_->glyphs[byte];
    positions_[i] = QPointF(advance, 0);
    advance += face_->advances[byte] * deviceUnitsPerFontUnit_;
  }
  QGlyphRun run;
  run.setRawFont(sized_);
  run.setGlyphIndexes(glyphs_);
  run.setPositions(positions_);
  run.setUnderline(font_.underline);
  painter.drawGlyphRun(QPointF(x * unitsPerTwip_, y * unitsPerTwip_ + baseline_), run);
}

void PainterPageDevice::Line(double x1, double y1, double x2, double y2) {
  Painter().drawLine(QPointF(x1 * unitsPerTwip_, y1 * unitsPerTwip_),
                     QPointF(x2 * unitsPerTwip_, y2 * unitsPerTwip_));
}

void PainterPageDevice::Box(double x1, double y1, double x2, double y2) {
  const QRectF box = QRectF(QPointF(x1 * unitsPerTwip_, y1 * unitsPerTwip_),
                            QPointF(x2 * unitsPerTwip_, y2 * unitsPerTwip_))
                         .normalized();
  Painter().drawRect(box);
}

bool PainterPageDevice::Image(const std::string& file, double x, double y, double width, double height) {
  QPainter& painter = Painter();
  const QString name = QString::fromStdString(Win1252ToUtf8(file));
  const std::optional<QByteArray> bytes = ReadPictureFile(QFile::encodeName(name).toStdString());
  if (!bytes) return false;
  const QImage picture = QImage::fromData(*bytes);
  if (picture.isNull()) return false;
  if (width == 0) width = picture.width() * kTwipsPerPicturePixel;
  if (height == 0) height = picture.height() * kTwipsPerPicturePixel;
  const QRectF target(x * unitsPerTwip_, y * unitsPerTwip_, width * unitsPerTwip_, height * unitsPerTwip_);

  painter.save();
  painter.setRenderHint(QPainter::SmoothPixmapTransform, true);
  painter.setRenderHint(QPainter::LosslessImageRendering, true);  // no JPEG in a PDF
  // Only the raster engine carries raster operations out; the PDF engine
  // claims them but ignores them.
  if (painter.paintEngine()->type() == QPaintEngine::Raster) {
    painter.setCompositionMode(QPainter::RasterOp_SourceAndDestination);
    painter.drawImage(target, picture.convertToFormat(QImage::Format_RGB32));
  } else {
    painter.drawImage(target, WhiteAsTransparent(picture));
  }
  painter.restore();
  return true;
}

}  // namespace cw
