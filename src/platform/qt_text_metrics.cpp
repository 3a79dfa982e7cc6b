#include "platform/qt_text_metrics.h"

namespace cw {

double QtTextMetrics::TextWidth(const FontSpec& font, std::string_view text) {
  const FontFace& face = faces_.Get(font);
  return face.Width(text) * face.TwipsPerUnit(font.points);
}

double QtTextMetrics::TextHeight(const FontSpec& font) {
  const FontFace& face = faces_.Get(font);
  return (face.ascent + face.descent) * face.TwipsPerUnit(font.points);
}

double QtTextMetrics::Ascent(const FontSpec& font) {
  const FontFace& face = faces_.Get(font);
  return face.ascent * face.TwipsPerUnit(font.points);
}

}  // namespace cw
