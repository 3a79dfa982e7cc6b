#pragma once
// One font as the layout sees it: the installed face that draws it, and for
// each of the 256 Windows-1252 byte values its glyph and unhinted advance in
// font units. Kerning is off (the classic text width does not kern), so the
// width of a text is the sum of its bytes' advances, and the painter draws
// every glyph exactly where the measurement put it.

#include <QRawFont>
#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include "printer/text_metrics.h"

namespace cw {

struct FontFace {
  QRawFont raw;                       // sized to one em = unitsPerEm pixels
  double unitsPerEm = 0;
  double ascent = 0;                  // font units, as the classic line height counts them
  double descent = 0;
  std::array<quint32, 256> glyphs{};
  std::array<double, 256> advances{};

  // Width of the bytes in font units.
  double Width(std::string_view text) const {
    double a = 0, b = 0;  // two sums so that the adds do not wait on each other
    std::size_t i = 0;
    for (; i + 1 < text.size(); i += 2) {
      a += advances[static_cast<unsigned char>(text[i])];
      b += advances[static_cast<unsigned char>(text[i + 1])];
    }
    if (i < text.size()) a += advances[static_cast<unsigned char>(text[i])];
    return a + b;
  }
  // Font units to twips at a size in points (1 point = 20 twips).
  double TwipsPerUnit(double points) const { return points * 20.0 / unitsPerEm; }
};

// Faces by the name, bold and italic of a FontSpec (size and underline do not
// change advances). Needs a QGuiApplication. Get throws RuntimeError 53 when no
// installed font can draw the name.
class FontFaceCache {
 public:
  FontFaceCache();
  const FontFace& Get(const FontSpec& font);

 private:
  std::unordered_map<std::string, std::unique_ptr<FontFace>> faces_;
  // Reports measure long runs of texts in the same font.
  const FontFace* last_ = nullptr;
  std::string lastName_;
  bool lastBold_ = false;
  bool lastItalic_ = false;
};

}  // namespace cw
