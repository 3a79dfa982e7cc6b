#include "support/civil_date.h"

#include "support/runtime_error.h"

namespace cw {

namespace {

// The serial of 1 Mar 0000 of the proleptic Gregorian calendar, the day from
// which the era arithmetic below counts.
constexpr std::int64_t kSerialOfEraOrigin = -693899;

// Day count from 1 Mar 0000 for a civil date; eras of 400 years (146097
// days) repeat exactly, so the calculation is a few divisions.
constexpr std::int64_t DaysFromCivil(std::int64_t year, int month, int day) {
  year -= month <= 2 ? 1 : 0;
  const std::int64_t era = (year >= 0 ? year : year - 399) / 400;
  const std::int64_t yearOfEra = year - era * 400;
  const int monthFromMarch = month > 2 ? month - 3 : month + 9;
  const std::int64_t dayOfYear = (153 * monthFromMarch + 2) / 5 + day - 1;
  const std::int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  return era * 146097 + dayOfEra;
}

struct Ymd {
  int year;
  int month;
  int day;
};

constexpr Ymd CivilFromDays(std::int64_t days) {
  const std::int64_t era = (days >= 0 ? days : days - 146096) / 146097;
  const std::int64_t dayOfEra = days - era * 146097;
  const std::int64_t yearOfEra =
      (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const std::int64_t monthFromMarch = (5 * dayOfYear + 2) / 153;
  const int day = static_cast<int>(dayOfYear - (153 * monthFromMarch + 2) / 5 + 1);
  const int month = static_cast<int>(monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9);
  const std::int64_t year = yearOfEra + era * 400 + (month <= 2 ? 1 : 0);
  return {static_cast<int>(year), month, day};
}

static_assert(DaysFromCivil(1899, 12, 30) == -kSerialOfEraOrigin);

constexpr std::int64_t kFirstSerial = DaysFromCivil(100, 1, 1) + kSerialOfEraOrigin;
constexpr std::int64_t kLastSerial = DaysFromCivil(9999, 12, 31) + kSerialOfEraOrigin;

Ymd YmdOf(std::int32_t serial) { return CivilFromDays(serial - kSerialOfEraOrigin); }

std::int64_t FloorDiv(std::int64_t a, std::int64_t b) {
  const std::int64_t q = a / b;
  return (a % b != 0 && (a < 0) != (b < 0)) ? q - 1 : q;
}

}  // namespace

CivilDate CivilDate::FromYmd(int year, int month, int day) {
  // Month and day roll over the way DateSerial does: the month first moves
  // the year, then the day counts from the first of that month.
  // A year of two digits is read as DateSerial reads it: 0-29 are 2000-2029,
  // 30-99 are 1930-1999.
  std::int64_t fullYear = year;
  if (year >= 0 && year <= 29) fullYear += 2000;
  else if (year >= 30 && year <= 99) fullYear += 1900;
  const std::int64_t monthIndex = static_cast<std::int64_t>(month) - 1;
  const std::int64_t wholeYear = fullYear + FloorDiv(monthIndex, 12);
  const int normalMonth = static_cast<int>(monthIndex - FloorDiv(monthIndex, 12) * 12) + 1;
  const std::int64_t serial = DaysFromCivil(wholeYear, normalMonth, 1) + kSerialOfEraOrigin +
                              (static_cast<std::int64_t>(day) - 1);
  if (serial < kFirstSerial || serial > kLastSerial) throw RuntimeError(err::kInvalidCall);
  return CivilDate(static_cast<std::int32_t>(serial));
}

int CivilDate::Year() const { return YmdOf(serial_).year; }
int CivilDate::Month() const { return YmdOf(serial_).month; }
int CivilDate::Day() const { return YmdOf(serial_).day; }


}  // namespace cw
