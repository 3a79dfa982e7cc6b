#pragma once
// Small pieces the matrix builders share: checked additions to 32-bit cells
// and the weekday of a log date, converted once per day of the log.

#include <cstdint>
#include <string_view>

#include "data/log_conversions.h"
#include "reports/report_form.h"
#include "support/runtime_error.h"

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
  if (matrices.weekday == 0 || date != matrices.weekdayDate) {
    const int weekday = ParseLogDate(date).Weekday();
    matrices.weekdayDate.assign(date);
    matrices.weekday = weekday;
  }
  return matrices.weekday;
}

}  // namespace cw
