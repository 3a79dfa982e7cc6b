#pragma once
// ScaleMode codes: the unit of every coordinate of a document. The reports use
// inches; the engine measures in twips (1440 to the inch).

#include <cstdint>
#include <optional>

namespace cw {

namespace scale {
inline constexpr std::int16_t kUser = 0;  // a surface's own scale, which starts as twips
inline constexpr std::int16_t kTwips = 1;
inline constexpr std::int16_t kPoints = 2;
inline constexpr std::int16_t kPixels = 3;
inline constexpr std::int16_t kInches = 5;
inline constexpr std::int16_t kMillimeters = 6;
inline constexpr std::int16_t kCentimeters = 7;

inline constexpr double kTwipsPerInch = 1440.0;
// A screen pixel at 96 dots per inch.
inline constexpr double kTwipsPerPixel = 15.0;
// The fixed character cell of the text export.
inline constexpr double kTwipsPerCharacter = 120.0;
}  // namespace scale

// Twips in one unit of the scale mode; nullopt for a code without a fixed unit
// (4, characters, whose cell differs across and down, is not used here).
constexpr std::optional<double> TwipsPerUnit(std::int16_t scaleMode) {
  switch (scaleMode) {
    case scale::kUser:
    case scale::kTwips: return 1.0;
    case scale::kPoints: return 20.0;
    case scale::kPixels: return scale::kTwipsPerPixel;
    case scale::kInches: return scale::kTwipsPerInch;
    case scale::kMillimeters: return scale::kTwipsPerInch / 25.4;
    case scale::kCentimeters: return scale::kTwipsPerInch / 2.54;
    default: return std::nullopt;
  }
}

}  // namespace cw
