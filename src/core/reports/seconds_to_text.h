#pragma once
// Durations in whole seconds as the line-usage and all-lines-busy reports
// print them.

#include <cstdint>
#include <string>

namespace cw {

// "m:ss" (shortMinutes) or "mm:ss" under an hour, "h:mm:ss" from an hour on:
// 45 -> "0:45" / "00:45", 3599 -> "59:59", 3600 -> "1:00:00". A negative
// duration (a call over midnight measured backwards) first gets a day added.
// 64 bits: the time of every line over years of log does not fit in 32.
std::string SecondsToText(std::int64_t seconds, bool shortMinutes);

}  // namespace cw
