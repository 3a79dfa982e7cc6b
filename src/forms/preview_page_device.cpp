#include "forms/preview_page_device.h"

#include <algorithm>
#include <cmath>

namespace cw {

PreviewPageDevice::PreviewPageDevice(double zoom, double pixelsPerTwip, QImage& canvas, QSize pixels)
    : PainterPageDevice(zoom * pixelsPerTwip), zoom_(zoom), canvas_(canvas), pixels_(pixels) {
  if (canvas_.size() != pixels_ || canvas_.format() != QImage::Format_RGB32) {
    canvas_ = QImage(pixels_, QImage::Format_RGB32);
  }
}

PreviewPageDevice::~PreviewPageDevice() {
  if (painter_.isActive()) painter_.end();
}

void PreviewPageDevice::BeginPage() {
  if (painter_.isActive()) painter_.end();
  canvas_.fill(Qt::white);
  painter_.begin(&canvas_);
  SetPainter(&painter_);
}

void PreviewPageDevice::EndPage() {
  SetPainter(nullptr);
  if (painter_.isActive()) painter_.end();
}

void PreviewPageDevice::SetFont(const FontSpec& font) {
  // The picture box holds whole points; below one point it shows its smallest.
  FontSpec shown = font;
  const double points = std::max(1.0, std::trunc(font.points * zoom_));
  shown.points = points / zoom_;
  PainterPageDevice::SetFont(shown);
}

}  // namespace cw
