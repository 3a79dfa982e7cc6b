#pragma once
// cwreport's clock: today and the time of day in local time, read from the
// system clock where --today does not fix the date. (The desktop reads the
// same from Qt.)

#include "support/civil_date.h"

namespace cw::cli {

CivilDate TodayFromClock();
// Seconds since midnight.
TimeOfDay TimeFromClock();

}  // namespace cw::cli
