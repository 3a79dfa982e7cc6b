#include "support/whole_numbers.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "support/runtime_error.h"
#include "support/text.h"

namespace cw {

double RoundHalfEven(double value) {
  if (!std::isfinite(value)) return value;
  // For every double below 2^52 in magnitude the difference to its floor is
  // exact, so the comparison with one half decides the tie without error.
  const double below = std::floor(value);
  const double fraction = value - below;
  if (fraction < 0.5) return below;
  if (fraction > 0.5) return below + 1.0;
  return std::fmod(below, 2.0) == 0.0 ? below : below + 1.0;
}

namespace {

template <typename Int>
Int RoundedInto(double value) {
  const double rounded = RoundHalfEven(value);
  // Written so that NaN fails the test as well.
  if (!(rounded >= static_cast<double>(std::numeric_limits<Int>::min()) &&
        rounded <= static_cast<double>(std::numeric_limits<Int>::max()))) {
    throw RuntimeError(err::kOverflow);
  }
  return static_cast<Int>(rounded);
}

// The pieces of a numeric text: sign, integer digits, fraction digits. Found
// without allocating, as these conversions run for every line of a call log.
struct NumberText {
  bool negative = false;
  std::string_view integer;   // may be empty when a fraction follows (".5")
  std::string_view fraction;  // digits after the point, may be empty
  std::string_view number;    // integer, point and fraction as written
};

bool SplitNumberText(std::string_view text, NumberText& out) {
  std::size_t i = 0;
  std::size_t end = text.size();
  while (i < end && text[i] == ' ') ++i;
  while (end > i && text[end - 1] == ' ') --end;
  if (i < end && (text[i] == '+' || text[i] == '-')) {
    out.negative = text[i] == '-';
    ++i;
  }
  const std::size_t start = i;
  while (i < end && IsDigit(text[i])) ++i;
  out.integer = text.substr(start, i - start);
  if (i < end && text[i] == '.') {
    const std::size_t fractionStart = ++i;
    while (i < end && IsDigit(text[i])) ++i;
    out.fraction = text.substr(fractionStart, i - fractionStart);
  }
  out.number = text.substr(start, i - start);
  return i == end && !(out.integer.empty() && out.fraction.empty());
}

// Whole-number conversion straight from the digits: exact, and rounds the
// written decimal fraction half to even (2.5 -> 2, 2.51 -> 3).
template <typename Int>
Int TextToWhole(std::string_view text) {
  NumberText parts;
  if (!SplitNumberText(text, parts)) throw RuntimeError(err::kTypeMismatch);
  constexpr std::int64_t kBeyond = std::int64_t{1} << 40;  // far outside every target range
  std::int64_t magnitude = 0;
  for (char c : parts.integer) {
    magnitude = magnitude * 10 + (c - '0');
    if (magnitude > kBeyond) throw RuntimeError(err::kOverflow);
  }
  if (!parts.fraction.empty()) {
    const char first = parts.fraction.front();
    bool roundUp = first > '5';
    if (first == '5') {
      const bool moreAfterHalf =
          parts.fraction.find_first_not_of('0', 1) != std::string_view::npos;
      roundUp = moreAfterHalf || (magnitude % 2 == 1);
    }
    if (roundUp) ++magnitude;
  }
  const std::int64_t value = parts.negative ? -magnitude : magnitude;
  if (value < std::numeric_limits<Int>::min() || value > std::numeric_limits<Int>::max()) {
    throw RuntimeError(err::kOverflow);
  }
  return static_cast<Int>(value);
}

}  // namespace

std::int16_t ToInt16(double value) { return RoundedInto<std::int16_t>(value); }
std::int32_t ToInt32(double value) { return RoundedInto<std::int32_t>(value); }

std::int32_t AddInt32(std::int32_t a, std::int32_t b) {
  std::int32_t sum;
  if (__builtin_add_overflow(a, b, &sum)) throw RuntimeError(err::kOverflow);
  return sum;
}

std::int32_t MulInt32(std::int32_t a, std::int32_t b) {
  std::int32_t product;
  if (__builtin_mul_overflow(a, b, &product)) throw RuntimeError(err::kOverflow);
  return product;
}

std::int16_t TextToInt16(std::string_view text) { return TextToWhole<std::int16_t>(text); }
std::int32_t TextToInt32(std::string_view text) { return TextToWhole<std::int32_t>(text); }

double TextToDouble(std::string_view text) {
  NumberText parts;
  if (!SplitNumberText(text, parts)) throw RuntimeError(err::kTypeMismatch);
  double value = 0.0;
  const char* first = parts.number.data();
  const char* last = first + parts.number.size();
  const auto [end, ec] = std::from_chars(first, last, value, std::chars_format::fixed);
  if (ec == std::errc::result_out_of_range || !std::isfinite(value)) {
    throw RuntimeError(err::kOverflow);
  }
  if (ec != std::errc() || end != last) throw RuntimeError(err::kTypeMismatch);
  return parts.negative ? -value : value;
}

bool IsNumericText(std::string_view text) {
  NumberText parts;
  if (!SplitNumberText(text, parts)) return false;
  // A text of hundreds of digits is a number that does not fit a double.
  double value = 0.0;
  const char* first = parts.number.data();
  const char* last = first + parts.number.size();
  const auto [end, ec] = std::from_chars(first, last, value, std::chars_format::fixed);
  return ec == std::errc() && end == last && std::isfinite(value);
}

}  // namespace cw
