#include "support/date_format.h"

#include <array>
#include <cmath>
#include <cstdio>

#include "support/runtime_error.h"
#include "support/text.h"
#include "support/whole_numbers.h"

namespace cw {

namespace {

constexpr std::array<std::string_view, 7> kWeekdays = {
    "Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};
constexpr std::array<std::string_view, 12> kMonths = {
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"};

// Format patterns are matched regardless of case, as the classic Format
// treats "MM/DD/YYYY" like "mm/dd/yyyy".
bool IsPattern(std::string_view pattern, std::string_view known) {
  if (pattern.size() != known.size()) return false;
  for (std::size_t i = 0; i < known.size(); ++i) {
    char c = pattern[i];
    char k = known[i];
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    if (k >= 'A' && k <= 'Z') k = static_cast<char>(k - 'A' + 'a');
    if (c != k) return false;
  }
  return true;
}

void AppendNumber(std::string& out, int value, int minDigits) {
  char buffer[16];
  const int length = std::snprintf(buffer, sizeof buffer, "%0*d", minDigits, value);
  out.append(buffer, static_cast<std::size_t>(length));
}

int TwelveHour(int hour) {
  const int h = hour % 12;
  return h == 0 ? 12 : h;
}

}  // namespace

std::string_view WeekdayName(int weekday, bool abbreviated) {
  if (weekday < 1 || weekday > 7) throw RuntimeError(err::kInvalidCall);
  const std::string_view name = kWeekdays[static_cast<std::size_t>(weekday - 1)];
  return abbreviated ? name.substr(0, 3) : name;
}

std::string_view MonthName(int month, bool abbreviated) {
  if (month < 1 || month > 12) throw RuntimeError(err::kInvalidCall);
  const std::string_view name = kMonths[static_cast<std::size_t>(month - 1)];
  return abbreviated ? name.substr(0, 3) : name;
}

std::string FormatDate(CivilDate date, std::string_view pattern) {
  std::string out;
  if (IsPattern(pattern, "mm/dd/yyyy")) {
    AppendNumber(out, date.Month(), 2);
    out += '/';
    AppendNumber(out, date.Day(), 2);
    out += '/';
    AppendNumber(out, date.Year(), 4);
  } else if (IsPattern(pattern, "mmm dd, yyyy")) {
    out += MonthName(date.Month(), true);
    out += ' ';
    AppendNumber(out, date.Day(), 2);
    out += ", ";
    AppendNumber(out, date.Year(), 4);
  } else if (IsPattern(pattern, "mmmm yyyy")) {
    out += MonthName(date.Month(), false);
    out += ' ';
    AppendNumber(out, date.Year(), 4);
  } else if (IsPattern(pattern, "dddd")) {
    out += WeekdayName(date.Weekday(), false);
  } else if (IsPattern(pattern, "ddd")) {
    out += WeekdayName(date.Weekday(), true);
  } else {
    throw RuntimeError(err::kInvalidCall);
  }
  return out;
}

std::string FormatTime(TimeOfDay time, std::string_view pattern) {
  if (time < 0 || time >= 86400) throw RuntimeError(err::kInvalidCall);
  const int hour = time / 3600;
  const int minute = time / 60 % 60;
  std::string out;
  if (IsPattern(pattern, "h:mmampm")) {
    AppendNumber(out, TwelveHour(hour), 1);
    out += ':';
    AppendNumber(out, minute, 2);
    out += hour < 12 ? "AM" : "PM";
  } else if (IsPattern(pattern, "h")) {
    AppendNumber(out, hour, 1);
  } else if (IsPattern(pattern, "h:Nn")) {
    AppendNumber(out, hour, 1);
    out += ':';
    AppendNumber(out, minute, 2);
  } else if (IsPattern(pattern, "h:Nn AM/PM")) {
    AppendNumber(out, TwelveHour(hour), 1);
    out += ':';
    AppendNumber(out, minute, 2);
    out += hour < 12 ? " AM" : " PM";
  } else {
    throw RuntimeError(err::kInvalidCall);
  }
  return out;
}

std::string FormatNumber(double value, std::string_view pattern) {
  int minDigits = 0;
  if (IsPattern(pattern, "#0")) {
    minDigits = 1;
  } else if (IsPattern(pattern, "00")) {
    minDigits = 2;
  } else {
    throw RuntimeError(err::kInvalidCall);
  }
  if (!std::isfinite(value)) throw RuntimeError(err::kOverflow);
  double rounded = RoundHalfEven(value);
  // A value that rounds to nothing prints as 0, not "-0".
  if (rounded == 0.0) rounded = 0.0;
  char buffer[400];
  const int length = std::snprintf(buffer, sizeof buffer, "%0*.0f",
                                   minDigits + (rounded < 0 ? 1 : 0), rounded);
  return std::string(buffer, static_cast<std::size_t>(length));
}

CivilDate ParseCaptionDate(std::string_view text) {
  const int month = TextToInt16(Mid(text, 1, 2));
  const int day = TextToInt16(Mid(text, 4, 2));
  const std::string_view year = text.size() > 4 ? text.substr(text.size() - 4) : text;
  return CivilDate::FromYmd(TextToInt16(year), month, day);
}

}  // namespace cw
