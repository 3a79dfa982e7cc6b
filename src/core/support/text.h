#pragma once
// Small text helpers on single-byte strings.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace cw {

// ASCII digits only: the log's numbers are never written in other scripts.
constexpr bool IsDigit(char c) { return static_cast<unsigned char>(c - '0') < 10; }
// The value of a digit that IsDigit accepted.
constexpr int DigitValue(char c) { return c - '0'; }

// Trim removes blanks (spaces) only, as the classic Trim does; tabs stay.
constexpr std::string_view Trim(std::string_view text) {
  std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  std::size_t last = text.find_last_not_of(' ');
  return text.substr(first, last - first + 1);
}

// Case folding by the letters of Windows-1252: A-Z, the accented capitals
// 0xC0-0xDE (but 0xD7, the multiplication sign) and the four capitals
// 0x8A, 0x8C, 0x8E and 0x9F have lower-case partners; every other byte stays
// as it is (0xDF and 0xB5 have no capital in the code page).
char LowerCaseLetter(char c);
char UpperCaseLetter(char c);
std::string LowerCase(std::string_view text);
std::string UpperCase(std::string_view text);

// Substring by 1-based start and length, clipped to the text (Mid$).
constexpr std::string_view Mid(std::string_view text, std::size_t start1, std::size_t length) {
  if (start1 == 0 || start1 > text.size()) return {};
  return text.substr(start1 - 1, length);
}

}  // namespace cw
