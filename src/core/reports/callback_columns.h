#pragma once
// Where the call-back listing's columns are, in inches, for the rows and the
// page headings: the missed call (line, name, number, date, time), then who
// returned it (when, on which line, in which direction) and after how long.

namespace cw::callback {

inline constexpr double kLineX = 0.3;        // left
inline constexpr double kNameX = 0.65;       // left
inline constexpr double kNumberX = 3.8;      // right end
inline constexpr double kDateX = 4.05;       // left
inline constexpr double kTimeX = 5.45;       // right end
inline constexpr double kReturnedX = 5.65;   // left: date and time, or "not returned"
inline constexpr double kByLineX = 6.95;     // left: line and direction of the call back
inline constexpr double kAfterX = 8.0;       // right end: the wait

// The summary: its labels end at kLabelX, counts at kCountX, shares at kShareX.
inline constexpr double kLabelX = 3.5;
inline constexpr double kCountX = 4.4;
inline constexpr double kShareX = 5.3;

}  // namespace cw::callback
