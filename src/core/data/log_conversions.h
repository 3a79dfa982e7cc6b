#pragma once
// The two conversions every report applies to call-log fields.

#include <cstdint>
#include <string_view>

#include "support/civil_date.h"

namespace cw {

// A log date "mm/dd/yyyy" as a date: year from the last four characters,
// month from the first two, day from the two at position 4, combined the way
// DateSerial combines them (a month 13 rolls into the next year). Nothing else
// is checked. Error 13 when a part is not a number; error 5 when the result
// lies outside the years 100 to 9999.
CivilDate ParseLogDate(std::string_view text);

// The numbers ParseLogDate reads from a log date, before they are combined.
struct LogDateParts {
  int year = 0;
  int month = 0;
  int day = 0;
};
// Error 13 when a part is not a number.
LogDateParts SplitLogDate(std::string_view text);
// Whether date, built from parts, has that month and day: false when the
// parts name no day of the calendar (10/32, 02/30, 13/01, 00/10) and the
// date is where combining them rolled over to.
bool IsCalendarDate(const LogDateParts& parts, CivilDate date);

// A duration "h:mm:ss" or "mm:ss" as whole seconds. Any other number of
// ":"-separated parts gives 0, and a part that is not a number counts as 0.
// Error 6 when the seconds do not fit in 32 bits.
std::int32_t DurationToSeconds(std::string_view text);

}  // namespace cw
