#pragma once
// Civil (proleptic Gregorian) dates as day serials, and times of day as
// seconds since midnight. Weekday 1 = Sunday ... 7 = Saturday.

#include <compare>
#include <cstdint>

namespace cw {

class CivilDate {
 public:
  // Day 0 is 30 Dec 1899, the classic date serial; earlier dates are negative.
  constexpr CivilDate() = default;
  static constexpr CivilDate FromSerial(std::int32_t serial) { return CivilDate(serial); }

  // Builds a date from year, month and day the way DateSerial does: a month
  // outside 1..12 or a day outside the month rolls over into the neighbouring
  // months and years (13/01/2024 is 01/01/2025, 02/30/2024 is 03/01/2024).
  // A two-digit year 0-29 is 2000-2029 and 30-99 is 1930-1999. Error 5 when
  // the result falls outside the years 100 to 9999.
  static CivilDate FromYmd(int year, int month, int day);

  constexpr std::int32_t Serial() const { return serial_; }
  int Year() const;
  int Month() const;   // 1..12
  int Day() const;     // 1..31
  // 1 = Sunday .. 7 = Saturday. Inline: the analyses ask it of every call.
  constexpr int Weekday() const {
    // Serial 1, 31 Dec 1899, was a Sunday.
    const std::int32_t sinceSunday = (serial_ - 1) % 7;
    return (sinceSunday < 0 ? sinceSunday + 7 : sinceSunday) + 1;
  }

  constexpr CivilDate AddDays(std::int32_t days) const { return CivilDate(serial_ + days); }
  friend constexpr auto operator<=>(CivilDate, CivilDate) = default;

 private:
  constexpr explicit CivilDate(std::int32_t serial) : serial_(serial) {}
  std::int32_t serial_ = 0;
};

// Seconds since midnight, 0..86399.
using TimeOfDay = std::int32_t;

}  // namespace cw
