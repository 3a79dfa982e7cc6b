#pragma once
// The real TextMetrics: widths from the unhinted advances of the installed
// font that draws the name (Liberation for the classic names), kerning off,
// so that a layout is the same on every machine with those fonts. Needs a
// QGuiApplication (the offscreen platform is enough).

#include "platform/font_face.h"
#include "printer/text_metrics.h"

namespace cw {

class QtTextMetrics final : public TextMetrics {
 public:
  QtTextMetrics() = default;

  double TextWidth(const FontSpec& font, std::string_view text) override;
  // Ascent plus descent, like the classic TextHeight.
  double TextHeight(const FontSpec& font) override;
  // From the top of the line to the baseline, in twips.
  double Ascent(const FontSpec& font);

 private:
  FontFaceCache faces_;
};

}  // namespace cw
