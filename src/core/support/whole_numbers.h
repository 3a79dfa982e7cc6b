#pragma once
// 16- and 32-bit whole numbers as the classic runtime has them: conversions
// round halves to even, anything out of range is error 6 (Overflow), text
// that is not a number is error 13 (Type mismatch).

#include <cstdint>
#include <string_view>

namespace cw {

// Nearest whole number, halves to even (2.5 -> 2, 3.5 -> 4, -2.5 -> -2).
double RoundHalfEven(double value);

// Round half to even, then check the range; error 6 when it does not fit.
std::int16_t ToInt16(double value);
std::int32_t ToInt32(double value);

// Checked 32-bit arithmetic; error 6 on overflow.
std::int32_t AddInt32(std::int32_t a, std::int32_t b);
std::int32_t MulInt32(std::int32_t a, std::int32_t b);

// Text to number the way the runtime converts a numeric text: surrounding
// blanks allowed, an optional sign, digits, an optional fraction (rounded half
// to even). Error 13 when the text is not a number, 6 when out of range.
std::int16_t TextToInt16(std::string_view text);
std::int32_t TextToInt32(std::string_view text);
double TextToDouble(std::string_view text);

// True when TextToDouble would succeed.
bool IsNumericText(std::string_view text);

}  // namespace cw
