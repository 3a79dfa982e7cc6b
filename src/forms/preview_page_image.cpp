#include "forms/preview_page_image.h"

#include <QPaintEvent>
#include <QPainter>

namespace cw {

PreviewPageImage::PreviewPageImage(QWidget* parent) : QWidget(parent) {
  setObjectName("PageImg");
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_OpaquePaintEvent);
}

void PreviewPageImage::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  const QRect area = event->rect();
  if (canvas_.isNull()) {
    painter.fillRect(area, Qt::white);
    return;
  }
  painter.drawImage(area, canvas_, area);
  // A widget larger than its image (between a resize and the redraw) shows white.
  const QRegion rest = QRegion(area).subtracted(QRegion(canvas_.rect()));
  for (const QRect& part : rest) painter.fillRect(part, Qt::white);
}

}  // namespace cw
