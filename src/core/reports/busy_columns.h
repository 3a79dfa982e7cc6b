#pragma once
// Columns of the all-lines-busy listing, in inches. The page-heading handler
// writes the headings and Print_BusyReport the rows at the same places: the
// date from its left edge, the others right-aligned (RightAlignedX) so that
// they end at their positions.
//
// The date stands left of the start time. The detail listing's date position
// (4.5 inches, 3.75 with touch-tone digits) would put it under the end time,
// right of the start time it belongs before.

namespace cw::busy {

inline constexpr double kDateX = 2.0;        // left edge of "Date"
inline constexpr double kStartTimeX = 3.65;  // right end of "Start Time"
inline constexpr double kEndTimeX = 4.55;    // right end of "End Time"
inline constexpr double kDurationX = 5.3;    // right end of "Duration"
inline constexpr double kLinesX = 5.9;       // right end of "Lines"

// The totals under the listing: the number of occurrences ends under the
// start times, the total length under the durations.
inline constexpr double kOccurrencesX = kStartTimeX;
inline constexpr double kTotalDurationX = kDurationX;

}  // namespace cw::busy
