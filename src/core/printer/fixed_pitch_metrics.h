#pragma once
// Text measured on a fixed-pitch grid, for tests and benchmarks that must not
// depend on installed fonts: every character of a 10-point font is 120 twips
// wide (bold 10 % wider), and its line is 240 twips high; both scale with the
// point size. The font name does not matter.

#include <string_view>

#include "printer/text_metrics.h"

namespace cw {

class FixedPitchMetrics : public TextMetrics {
 public:
  static constexpr double kCharacterTwipsPerPoint = 12;
  static constexpr double kLineTwipsPerPoint = 24;

  static double CharacterWidth(const FontSpec& font) {
    const double plain = font.points * kCharacterTwipsPerPoint;
    return font.bold ? plain + plain / 10 : plain;
  }

  double TextWidth(const FontSpec& font, std::string_view text) override {
    return static_cast<double>(text.size()) * CharacterWidth(font);
  }
  double TextHeight(const FontSpec& font) override { return font.points * kLineTwipsPerPoint; }
};

}  // namespace cw
