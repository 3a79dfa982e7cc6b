#pragma once
// Time-of-day texts as the logging program writes them.

#include <string_view>

#include "support/civil_date.h"

namespace cw {

// Accepts h:mm, hh:mm, h:mm:ss and hh:mm:ss, each optionally followed by AM/PM
// or A/P in any case, with or without a space before it; surrounding blanks are
// ignored. 12 AM is midnight, 12 PM noon. Anything else, or an hour, minute or
// second out of range, is error 13.
TimeOfDay ParseTimeText(std::string_view text);

}  // namespace cw
