#pragma once
// How the engine measures text: width and height in twips of a text in a font.
// The real implementation measures with Qt on the Liberation fonts; core tests
// use a fixed-pitch fake.

#include <cstdint>
#include <string>
#include <string_view>

namespace cw {

struct FontSpec {
  std::string name;        // as the report asks for it: "Arial", "Times New Roman"
  double points = 9;       // size in points
  bool bold = false;
  bool italic = false;
  bool underline = false;

  friend bool operator==(const FontSpec&, const FontSpec&) = default;
};

class TextMetrics {
 public:
  virtual ~TextMetrics() = default;
  // Width of the single-byte (Windows-1252) text, in twips.
  virtual double TextWidth(const FontSpec& font, std::string_view text) = 0;
  // Line height of the font, in twips (the same for every text).
  virtual double TextHeight(const FontSpec& font) = 0;
};

}  // namespace cw
