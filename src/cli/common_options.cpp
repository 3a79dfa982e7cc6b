#include "cli/common_options.h"

#include <charconv>
#include <vector>

#include "settings/edition.h"
#include "support/text.h"

namespace cw::cli {

namespace {

// The whole digits of a date part; nullopt for an empty part, a sign or
// anything else.
std::optional<int> DatePart(std::string_view part, std::size_t minDigits, std::size_t maxDigits) {
  if (part.size() < minDigits || part.size() > maxDigits) return std::nullopt;
  int value = 0;
  const auto [end, error] = std::from_chars(part.data(), part.data() + part.size(), value);
  if (error != std::errc() || end != part.data() + part.size()) return std::nullopt;
  return value;
}

std::vector<std::string_view> Split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  for (std::size_t start = 0;;) {
    const std::size_t end = text.find(separator, start);
    parts.push_back(text.substr(start, end == std::string_view::npos ? end : end - start));
    if (end == std::string_view::npos) return parts;
    start = end + 1;
  }
}

}  // namespace

std::string EditionOf(const std::string& text) {
  if (text != kEditionRingtally && text != kEditionCallwarden) {
    throw UsageError{"--edition must be \"" + std::string(kEditionRingtally) + "\" or \"" +
                     std::string(kEditionCallwarden) + "\", not \"" + text + "\""};
  }
  return text;
}

PageSetup PaperOf(const std::string& text) {
  const std::string paper = LowerCase(text);
  if (paper == "letter") return PageSetup{12240, 15840, 1};
  if (paper == "a4") return PageSetup{11906, 16838, 1};  // 210 x 297 mm
  throw UsageError{"--paper must be letter or a4, not \"" + text + "\""};
}

CivilDate DateOf(std::string_view option, std::string_view text) {
  std::optional<int> year;
  std::optional<int> month;
  std::optional<int> day;
  if (const std::vector<std::string_view> parts = Split(text, '/'); parts.size() == 3) {
    month = DatePart(parts[0], 1, 2);
    day = DatePart(parts[1], 1, 2);
    year = DatePart(parts[2], 4, 4);
  } else if (const std::vector<std::string_view> dashed = Split(text, '-'); dashed.size() == 3) {
    year = DatePart(dashed[0], 4, 4);
    month = DatePart(dashed[1], 1, 2);
    day = DatePart(dashed[2], 1, 2);
  }
  const std::string wanted = std::string(option) + " needs a date as m/d/yyyy or yyyy-mm-dd";
  if (!year || !month || !day) throw UsageError{wanted + ", not \"" + std::string(text) + "\""};
  // The year is four digits: from 1000 on, which DateSerial takes as written.
  if (*year < 1000 || *month < 1 || *month > 12 || *day < 1 || *day > 31) {
    throw UsageError{wanted + ", not \"" + std::string(text) + "\""};
  }
  // DateSerial would roll 02/30 over into March: a day the month does not
  // have is no date.
  const CivilDate date = CivilDate::FromYmd(*year, *month, *day);
  if (date.Month() != *month || date.Day() != *day) {
    throw UsageError{std::string(option) + ": \"" + std::string(text) + "\" is no calendar day"};
  }
  return date;
}

std::string EncodingOf(const std::string& text) {
  const std::string encoding = LowerCase(text);
  if (encoding == "utf-8" || encoding == "windows-1252") return encoding;
  throw UsageError{"--encoding must be utf-8 or windows-1252, not \"" + text + "\""};
}

}  // namespace cw::cli
