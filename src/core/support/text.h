#pragma once
// Small text helpers on single-byte strings.

#include <string>
#include <string_view>

namespace cw {

// Trim removes blanks (spaces) only, as the classic Trim does; tabs stay.
constexpr std::string_view Trim(std::string_view text) {
  std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  std::size_t last = text.find_last_not_of(' ');
  return text.substr(first, last - first + 1);
}

// ASCII case folding; bytes above 127 are left alone.
std::string LowerCase(std::string_view text);
std::string UpperCase(std::string_view text);

// Substring by 1-based start and length, clipped to the text (Mid$).
constexpr std::string_view Mid(std::string_view text, std::size_t start1, std::size_t length) {
  if (start1 == 0 || start1 > text.size()) return {};
  return text.substr(start1 - 1, length);
}

}  // namespace cw
