#include "data/log_conversions.h"

#include <array>

#include "support/text.h"
#include "support/whole_numbers.h"

namespace cw {

LogDateParts SplitLogDate(std::string_view text) {
  // Nearly every date in a log is written "mm/dd/yyyy"; those are read digit
  // by digit. The parts of any other text go through the general conversion,
  // which gives the same numbers for plain digits.
  if (text.size() == 10 && IsDigit(text[0]) && IsDigit(text[1]) && IsDigit(text[3]) &&
      IsDigit(text[4]) && IsDigit(text[6]) && IsDigit(text[7]) && IsDigit(text[8]) &&
      IsDigit(text[9])) {
    return LogDateParts{
        DigitValue(text[6]) * 1000 + DigitValue(text[7]) * 100 + DigitValue(text[8]) * 10 + DigitValue(text[9]),
        DigitValue(text[0]) * 10 + DigitValue(text[1]), DigitValue(text[3]) * 10 + DigitValue(text[4])};
  }
  const std::string_view yearText = text.size() > 4 ? text.substr(text.size() - 4) : text;
  const std::int16_t year = TextToInt16(yearText);
  const std::int16_t month = TextToInt16(text.substr(0, 2));
  const std::int16_t day = TextToInt16(Mid(text, 4, 2));
  return LogDateParts{year, month, day};
}

CivilDate ParseLogDate(std::string_view text) {
  const LogDateParts parts = SplitLogDate(text);
  return CivilDate::FromYmd(parts.year, parts.month, parts.day);
}

bool IsCalendarDate(const LogDateParts& parts, CivilDate date) {
  // A month and day that exist come back unchanged whatever the year (a
  // two-digit year only moves the century); any other pair rolls over.
  return date.Month() == parts.month && date.Day() == parts.day;
}

namespace {

// One part of a duration; a part that is not a number is worth 0.
std::int32_t DurationPart(std::string_view part) {
  if (!part.empty() && part.size() <= 9) {
    std::int32_t value = 0;
    bool plain = true;
    for (char c : part) {
      if (!IsDigit(c)) {
        plain = false;
        break;
      }
      value = value * 10 + DigitValue(c);
    }
    if (plain) return value;
  }
  if (!IsNumericText(part)) return 0;
  return TextToInt32(part);
}

}  // namespace

std::int32_t DurationToSeconds(std::string_view text) {
  // At most three parts count; a fourth means the text is not a duration.
  std::array<std::string_view, 3> parts;
  std::size_t count = 0;
  std::size_t start = 0;
  while (true) {
    const std::size_t colon = text.find(':', start);
    if (count == parts.size()) return 0;
    parts[count++] = text.substr(start, colon == std::string_view::npos ? colon : colon - start);
    if (colon == std::string_view::npos) break;
    start = colon + 1;
  }
  if (count == 2) {
    return AddInt32(MulInt32(DurationPart(parts[0]), 60), DurationPart(parts[1]));
  }
  if (count == 3) {
    std::int32_t seconds = MulInt32(DurationPart(parts[0]), 3600);
    seconds = AddInt32(seconds, MulInt32(DurationPart(parts[1]), 60));
    return AddInt32(seconds, DurationPart(parts[2]));
  }
  return 0;
}

}  // namespace cw
