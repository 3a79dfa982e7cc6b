#pragma once
// Columns of the condensed summary of tab 7 (one row per caller), in inches.
// The page-heading handler writes the headings and Print_Detail_Condensed the
// rows at the same places: the name from its left edge, the three others
// right-aligned (RightAlignedX) so that they end at their positions, as the
// numbers of the detail listing do.

namespace cw::condensed {

inline constexpr double kNameX = 0.5;       // left edge of "Name"
inline constexpr double kNumberX = 4.75;    // right end of "Number"
inline constexpr double kCallsX = 5.6;      // right end of "Calls"
inline constexpr double kDurationX = 6.75;  // right end of "Duration" (h:mm:ss)

}  // namespace cw::condensed
