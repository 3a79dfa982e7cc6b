#include "support/text.h"

#include <array>

namespace cw {

namespace {

// One table, read both ways: each capital of the code page with its small
// letter.
constexpr std::array<unsigned char, 256> kLower = [] {
  std::array<unsigned char, 256> lower{};
  for (int c = 0; c < 256; ++c) lower[c] = static_cast<unsigned char>(c);
  for (int c = 'A'; c <= 'Z'; ++c) lower[c] = static_cast<unsigned char>(c - 'A' + 'a');
  for (int c = 0xC0; c <= 0xDE; ++c) {
    if (c != 0xD7) lower[c] = static_cast<unsigned char>(c + 0x20);  // not the multiplication sign
  }
  lower[0x8A] = 0x9A;  // S caron
  lower[0x8C] = 0x9C;  // OE
  lower[0x8E] = 0x9E;  // Z caron
  lower[0x9F] = 0xFF;  // Y diaeresis
  return lower;
}();

constexpr std::array<unsigned char, 256> kUpper = [] {
  std::array<unsigned char, 256> upper{};
  for (int c = 0; c < 256; ++c) upper[c] = static_cast<unsigned char>(c);
  for (int c = 0; c < 256; ++c) {
    if (kLower[c] != c) upper[kLower[c]] = static_cast<unsigned char>(c);
  }
  return upper;
}();

}  // namespace

char LowerCaseLetter(char c) { return static_cast<char>(kLower[static_cast<unsigned char>(c)]); }

char UpperCaseLetter(char c) { return static_cast<char>(kUpper[static_cast<unsigned char>(c)]); }

std::string LowerCase(std::string_view text) {
  std::string result(text);
  for (char& c : result) c = LowerCaseLetter(c);
  return result;
}

std::string UpperCase(std::string_view text) {
  std::string result(text);
  for (char& c : result) c = UpperCaseLetter(c);
  return result;
}

}  // namespace cw
