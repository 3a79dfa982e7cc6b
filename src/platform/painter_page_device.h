#pragma once
// The drawing half of every Qt page: text, lines, boxes and pictures of a
// replayed spool painted with a QPainter. Subclasses own the paint device
// (PDF, PNG pages, the preview, a printer) and hand over the painter of the
// current page. Coordinates arrive in twips and are scaled to device units.

#include <QList>
#include <QPainter>
#include <QPointF>
#include <QRawFont>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "platform/font_face.h"
#include "printer/page_device.h"

namespace cw {

class PainterPageDevice : public PageDevice {
 public:
  // unitsPerTwip: device units per twip (1 for a 1440-dpi PDF, dpi / 1440 for images).
  explicit PainterPageDevice(double unitsPerTwip);

  void SetFont(const FontSpec& font) override;
  void Text(double x, double y, std::string_view text) override;
  void Line(double x1, double y1, double x2, double y2) override;
  void Box(double x1, double y1, double x2, double y2) override;
  bool Image(const std::string& file, double x, double y, double width, double height) override;

  // A picture's own size, as the classic picture object measures a bitmap:
  // one pixel of a 96-dpi screen is 15 twips.
  static constexpr double kTwipsPerPicturePixel = 15;
  // Lines and box outlines are one dot of a 600-dpi printer wide.
  static constexpr double kLineWidthTwips = 1440.0 / 600.0;

 protected:
  // The painter of the current page, or null between pages. The pen and font
  // state of this device are applied to it.
  void SetPainter(QPainter* painter);
  double UnitsPerTwip() const { return unitsPerTwip_; }

 private:
  QPainter& Painter();
  void SelectFace();

  double unitsPerTwip_;
  QPainter* painter_ = nullptr;
  FontFaceCache faces_;
  FontSpec font_;
  // The current font at the device's pixel size, and its baseline offset.
  const FontFace* face_ = nullptr;
  QRawFont sized_;
  double deviceUnitsPerFontUnit_ = 0;
  double baseline_ = 0;
  std::map<std::pair<const FontFace*, double>, QRawFont> sizedFonts_;
  // Reused between texts so that drawing does not allocate per call.
  QList<quint32> glyphs_;
  QList<QPointF> positions_;
};

}  // namespace cw
