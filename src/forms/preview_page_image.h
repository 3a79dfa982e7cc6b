#pragma once
// PageImg: the drawn page inside the preview's Panel. It shows the image the
// page was drawn into and takes the keyboard focus, so that the preview's
// keys keep working after every button and scroll bar.

#include <QImage>
#include <QWidget>

namespace cw {

class PreviewPageImage final : public QWidget {
 public:
  explicit PreviewPageImage(QWidget* parent);

  // The image pages are drawn into; call update() after drawing.
  QImage& Canvas() { return canvas_; }
  const QImage& Canvas() const { return canvas_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QImage canvas_;
};

}  // namespace cw
