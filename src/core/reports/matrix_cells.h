#pragma once
// Small pieces the matrix builders share: checked additions to 32-bit cells,
// the weekday of a log date converted once per day of the log, and the hour,
// length and line of a call read straight from the digits in the shape the
// logging program writes them. They run for every record of a log of
// millions, so each takes the common shape at a glance and hands anything
// else to the general conversion, which decides (and raises its error)
// exactly as before.

#include <cstdint>
#include <cstring>
#include <string_view>

#include "data/log_conversions.h"
#include "reports/report_form.h"
#include "support/runtime_error.h"
#include "support/time_text.h"
#include "support/whole_numbers.h"

namespace cw {

// a + b in 32 bits; error 6 when the sum does not fit. Inline: it runs for
// every cell of every record.
inline std::int32_t SumInt32(std::int32_t a, std::int32_t b) {
  std::int32_t sum;
  if (__builtin_add_overflow(a, b, &sum)) throw RuntimeError(err::kOverflow);
  return sum;
}

// Weekday (1 = Sunday) of a log date "mm/dd/yyyy". The log is in time order
// with many calls a day, so the last date text and its weekday are kept in
// the matrices and a record of the same day costs one comparison.
inline int CachedWeekday(ReportForm::Matrices& matrices, std::string_view date) {
  // A date of the log is ten characters: compared as two words, no call.
  const std::string& last = matrices.weekdayDate;
  if (matrices.weekday != 0 && date.size() == 10 && last.size() == 10) {
    std::uint64_t a8, b8;
    std::uint16_t a2, b2;
    std::memcpy(&a8, date.data(), 8);
    std::memcpy(&b8, last.data(), 8);
    std::memcpy(&a2, date.data() + 8, 2);
    std::memcpy(&b2, last.data() + 8, 2);
    if (a8 == b8 && a2 == b2) return matrices.weekday;
  }
  if (matrices.weekday == 0 || date != last) {
    const int weekday = ParseLogDate(date).Weekday();
    matrices.weekdayDate.assign(date);
    matrices.weekday = weekday;
  }
  return matrices.weekday;
}

namespace matrix_detail {
constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }
constexpr int Digit(char c) { return c - '0'; }
}  // namespace matrix_detail

// Kind of a call by its trimmed direction: 1 for "In", 2 for "Out", 0 for
// anything else (compared exactly, case included). In and out calls come in
// no order, so the test is done without a branch on which one it is.
inline int DirectionKind(std::string_view direction) {
  if (direction.size() < 2 || direction.size() > 3) return 0;
  const auto byte = [&](std::size_t k) { return static_cast<std::uint32_t>(static_cast<unsigned char>(direction[k])); };
  const std::uint32_t third = direction.size() == 3 ? byte(2) : 0u;
  const std::uint32_t word = byte(0) | byte(1) << 8 | third << 16;
  constexpr std::uint32_t kIn = 'I' | 'n' << 8;
  constexpr std::uint32_t kOut = 'O' | 'u' << 8 | static_cast<std::uint32_t>('t') << 16;
  return static_cast<int>(word == kIn) + 2 * static_cast<int>(word == kOut);
}

// The hour (0..23) of a call's time, as ParseTimeText and the "h" format give
// it. The logging program writes "hh:mmAM" or "h:mmPM".
inline int HourOfCall(std::string_view time) {
  using matrix_detail::Digit;
  using matrix_detail::IsDigit;
  const std::size_t n = time.size();
  if ((n == 7 || n == 6) && (time[n - 1] == 'M' || time[n - 1] == 'm')) {
    const std::size_t colon = n - 5;  // after one or two hour digits
    const char half = time[n - 2];
    if (time[colon] == ':' && IsDigit(time[0]) && (colon == 1 || IsDigit(time[1])) && IsDigit(time[colon + 1]) &&
        IsDigit(time[colon + 2]) && time[colon + 1] <= '5') {
      const int hour = colon == 1 ? Digit(time[0]) : Digit(time[0]) * 10 + Digit(time[1]);
      // Morning and afternoon calls alternate all day: no branch on which.
      const char lower = static_cast<char>(half | 0x20);
      const bool am = lower == 'a';
      const bool pm = lower == 'p';
      if (hour <= 12 && (am | pm)) return hour % 12 + 12 * static_cast<int>(pm);
    }
  }
  return ParseTimeText(time) / 3600;
}

// A call's length in seconds as DurationToSeconds gives it. The logging
// program writes "h:mm:ss".
inline std::int32_t SecondsOfCall(std::string_view duration) {
  using matrix_detail::Digit;
  using matrix_detail::IsDigit;
  const std::size_t n = duration.size();
  if ((n == 7 || n == 8) && duration[n - 3] == ':' && duration[n - 6] == ':' && IsDigit(duration[0]) &&
      IsDigit(duration[n - 7]) && IsDigit(duration[n - 5]) && IsDigit(duration[n - 4]) &&
      IsDigit(duration[n - 2]) && IsDigit(duration[n - 1])) {
    const int hours = n == 7 ? Digit(duration[0]) : Digit(duration[0]) * 10 + Digit(duration[1]);
    return hours * 3600 + (Digit(duration[n - 5]) * 10 + Digit(duration[n - 4])) * 60 +
           Digit(duration[n - 2]) * 10 + Digit(duration[n - 1]);
  }
  return DurationToSeconds(duration);
}

// The line number of a call as TextToInt16 converts the line field: one to
// three digits directly, anything else through the conversion (error 13 for
// a field that is not a number).
inline std::int16_t LineOfCall(std::string_view line) {
  using matrix_detail::Digit;
  using matrix_detail::IsDigit;
  const std::size_t n = line.size();
  if (n >= 1 && n <= 3 && IsDigit(line[0]) && (n < 2 || IsDigit(line[1])) && (n < 3 || IsDigit(line[2]))) {
    int value = 0;
    for (char c : line) value = value * 10 + Digit(c);
    return static_cast<std::int16_t>(value);
  }
  return TextToInt16(line);
}

}  // namespace cw
