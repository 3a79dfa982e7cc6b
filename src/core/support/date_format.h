#pragma once
// The one place that formats dates, times and numbers for the reports, in
// English, with the classic format patterns.

#include <cstdint>
#include <string>
#include <string_view>

#include "support/civil_date.h"

namespace cw {

// Date patterns: "mm/dd/yyyy" (01/05/2024), "mmm dd, yyyy" (Jan 05, 2024),
// "mmmm yyyy" (January 2024), "dddd" (Friday), "ddd" (Fri).
// Error 5 for a pattern not in this list.
std::string FormatDate(CivilDate date, std::string_view pattern);

// Time patterns: "h:mmampm" (9:05AM, 12:00PM), "h" (hour 0..23), "h:Nn"
// (9:05, 24-hour), "h:Nn AM/PM" (9:05 AM). Error 5 for another pattern.
std::string FormatTime(TimeOfDay time, std::string_view pattern);

// Number patterns: "#0" (plain whole number, halves to even) and "00" (at
// least two digits). Error 5 for another pattern.
std::string FormatNumber(double value, std::string_view pattern);

// Abbreviated and full English names, weekday 1 = Sunday, month 1 = January.
std::string_view WeekdayName(int weekday, bool abbreviated);
std::string_view MonthName(int month, bool abbreviated);

// Parses "mm/dd/yyyy" as the form captions hold it: month from characters
// 1-2, day from 4-5, year from the last four (DateSerial rules). Error 13 when
// a part is not a number.
CivilDate ParseCaptionDate(std::string_view text);

}  // namespace cw
