#include "import/cdr_time.h"

#include <cstring>
#include <ctime>

#include "support/runtime_error.h"
#include "support/text.h"

namespace cw {

namespace {

// The number of two digits at text[at], or -1 (the caller has checked the length).
int TwoDigits(std::string_view text, std::size_t at) {
  if (!IsDigit(text[at]) || !IsDigit(text[at + 1])) return -1;
  return DigitValue(text[at]) * 10 + DigitValue(text[at + 1]);
}

std::optional<LocalSeconds> FromEpoch(std::string_view text) {
  std::int64_t seconds = 0;
  for (char c : text) {
    if (!IsDigit(c) || seconds > 100'000'000'000) return std::nullopt;
    seconds = seconds * 10 + DigitValue(c);
  }
  const auto time = static_cast<std::time_t>(seconds);
  std::tm local{};
  if (::localtime_r(&time, &local) == nullptr) return std::nullopt;
  try {
    const CivilDate date = CivilDate::FromYmd(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
    return LocalSecondsOf(date, local.tm_hour * 3600 + local.tm_min * 60 + local.tm_sec);
  } catch (const RuntimeError&) {
    return std::nullopt;
  }
}

}  // namespace

std::optional<LocalSeconds> ParseCdrTime(std::string_view text) {
  text = Trim(text);
  if (text.size() >= 9 && text.find_first_not_of("0123456789") == std::string_view::npos) return FromEpoch(text);
  // yyyy-mm-dd hh:mm:ss, then an optional fraction.
  if (text.size() < 19 || text[4] != '-' || text[7] != '-' || (text[10] != ' ' && text[10] != 'T') ||
      text[13] != ':' || text[16] != ':') {
    return std::nullopt;
  }
  const int century = TwoDigits(text, 0), yearOf = TwoDigits(text, 2);
  const int year = century < 0 || yearOf < 0 ? -1 : century * 100 + yearOf;
  const int month = TwoDigits(text, 5), day = TwoDigits(text, 8);
  const int hour = TwoDigits(text, 11), minute = TwoDigits(text, 14), second = TwoDigits(text, 17);
  if (year < 100 || month < 1 || month > 12 || day < 1 || hour < 0 || hour > 23 || minute < 0 || minute > 59 ||
      second < 0 || second > 59) {
    return std::nullopt;
  }
  if (text.size() > 19) {
    if (text[19] != '.' || text.size() == 20) return std::nullopt;
    for (char c : text.substr(20)) {
      if (!IsDigit(c)) return std::nullopt;
    }
  }
  // A CDR file holds the same day row after row: the last day is kept, so
  // that a date is built only when it changes.
  thread_local char lastText[10] = {};
  thread_local std::optional<CivilDate> lastDate;
  if (!lastDate || std::memcmp(lastText, text.data(), sizeof lastText) != 0) {
    const CivilDate date = CivilDate::FromYmd(year, month, day);
    // FromYmd rolls 02/30 over into March; such a day is not in the calendar.
    if (date.Day() != day) return std::nullopt;
    std::memcpy(lastText, text.data(), sizeof lastText);
    lastDate = date;
  }
  return LocalSecondsOf(*lastDate, hour * 3600 + minute * 60 + second);
}

}  // namespace cw
