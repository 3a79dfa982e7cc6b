#pragma once
// Times in call detail records. PBXs write local time as
// "yyyy-mm-dd hh:mm:ss" (a "T" for the blank, and a fraction of a second,
// occur too); a few templates write seconds since 1970 instead. The import
// counts time as local seconds from the first day of the date serials, so
// that a record's date and clock time are read straight off it.

#include <cstdint>
#include <optional>
#include <string_view>

#include "support/civil_date.h"

namespace cw {

// Local seconds: the date serial times 86400 plus the time of day.
using LocalSeconds = std::int64_t;

// nullopt when the text is no date and time (a day that is not in the
// calendar included). Seconds since 1970 (nine digits or more) are turned
// into local time by the system's time zone.
std::optional<LocalSeconds> ParseCdrTime(std::string_view text);

inline CivilDate DateOf(LocalSeconds time) {
  return CivilDate::FromSerial(static_cast<std::int32_t>(time >= 0 ? time / 86400 : (time - 86399) / 86400));
}
inline TimeOfDay TimeOfDayOf(LocalSeconds time) {
  const std::int64_t rest = time % 86400;
  return static_cast<TimeOfDay>(rest < 0 ? rest + 86400 : rest);
}
inline LocalSeconds LocalSecondsOf(CivilDate date, TimeOfDay time) {
  return static_cast<LocalSeconds>(date.Serial()) * 86400 + time;
}

}  // namespace cw
