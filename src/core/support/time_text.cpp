#include "support/time_text.h"

#include "support/runtime_error.h"
#include "support/text.h"

namespace cw {

namespace {

char Upper(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c; }

// Reads exactly `count` digits at pos; false when they are not there.
bool ReadDigits(std::string_view text, std::size_t& pos, std::size_t count, int& value) {
  if (text.size() - pos < count) return false;
  value = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const char c = text[pos + i];
    if (!IsDigit(c)) return false;
    value = value * 10 + (c - '0');
  }
  pos += count;
  return true;
}

[[noreturn]] void NotATime() { throw RuntimeError(err::kTypeMismatch); }

}  // namespace

TimeOfDay ParseTimeText(std::string_view text) {
  text = Trim(text);
  std::size_t pos = 0;
  int hour = 0;
  int minute = 0;
  int second = 0;
  const std::size_t hourDigits = (text.size() > 1 && IsDigit(text[1])) ? 2 : 1;
  if (!ReadDigits(text, pos, hourDigits, hour)) NotATime();
  if (pos >= text.size() || text[pos] != ':') NotATime();
  ++pos;
  if (!ReadDigits(text, pos, 2, minute)) NotATime();
  if (pos < text.size() && text[pos] == ':') {
    ++pos;
    if (!ReadDigits(text, pos, 2, second)) NotATime();
  }
  while (pos < text.size() && text[pos] == ' ') ++pos;

  // The suffix: AM, PM, A or P in any case, or nothing.
  enum class Half { kNone, kAm, kPm } half = Half::kNone;
  const std::string_view suffix = text.substr(pos);
  if (!suffix.empty()) {
    const char first = Upper(suffix[0]);
    if (first != 'A' && first != 'P') NotATime();
    if (suffix.size() > 2 || (suffix.size() == 2 && Upper(suffix[1]) != 'M')) NotATime();
    half = first == 'A' ? Half::kAm : Half::kPm;
  }

  if (minute > 59 || second > 59) NotATime();
  if (half == Half::kNone) {
    if (hour > 23) NotATime();
  } else {
    // 12 AM is midnight and 12 PM noon.
    if (hour > 12) NotATime();
    hour %= 12;
    if (half == Half::kPm) hour += 12;
  }
  return hour * 3600 + minute * 60 + second;
}

}  // namespace cw
