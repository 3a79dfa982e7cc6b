#pragma once
// The preview's page: one spool page painted into an image at the zoom
// factor. Font sizes are cut to whole points at that factor, as the preview's
// picture box takes them, so small zooms show text a little narrower than it
// prints.

#include <QImage>
#include <QPainter>
#include <QSize>

#include "platform/painter_page_device.h"

namespace cw {

class PreviewPageDevice final : public PainterPageDevice {
 public:
  // zoom: 1 draws the page at its real size; pixelsPerTwip: the screen's.
  // canvas: the image drawn on, made `pixels` large; it must outlive the device.
  PreviewPageDevice(double zoom, double pixelsPerTwip, QImage& canvas, QSize pixels);
  ~PreviewPageDevice() override;

  double Zoom() const { return zoom_; }
  QSize Pixels() const { return pixels_; }

  void BeginDocument(const PageSetup&) override {}
  // Clears the page to white.
  void BeginPage() override;
  void EndPage() override;
  void EndDocument() override {}
  void SetFont(const FontSpec& font) override;

 private:
  double zoom_;
  QImage& canvas_;
  QSize pixels_;
  QPainter painter_;
};

}  // namespace cw
