#pragma once
// The hour texts of the time-of-day tables and the hourly charts (daily call
// analysis and all-lines-busy summary).

#include <string>
#include <vector>

namespace cw {

// Row label of hour 0..23 in a time-of-day table: "12:00 - 1:00 AM",
// "1:00 - 2:00 AM", ..., "12:00 - 1:00 PM", ... Hours 11 and 23 have always
// read "11:00 - 12:00 AM" and "11:00 - 12:00 PM"; they are kept so. Error 5
// for an hour outside 0..23.
std::string HourLabel(int hour);

// Bar labels of an hourly chart, one per hour 0..23: a blank for even hours,
// "1AM", "3AM", ..., "11PM" for odd ones (24 labels would not fit under the
// bars).
std::vector<std::string> HourChartLabels();

}  // namespace cw
