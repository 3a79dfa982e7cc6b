#pragma once
// Small text helpers on single-byte strings.

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>

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

// The N bytes at text (N from 1 to 8) as one word, the first in the lowest
// byte. Built from one or two loads of whole words (overlapping when N is
// not a power of two): a copy into a zeroed word would be written in pieces
// and read back whole, which stalls the processor on every call.
template <std::size_t N>
[[gnu::always_inline]] inline std::uint64_t LoadBytes(const char* text) {
  static_assert(N >= 1 && N <= 8 && std::endian::native == std::endian::little);
  auto load = [text]<class Word>(Word, std::size_t at) {
    Word word;
    std::memcpy(&word, text + at, sizeof word);
    return std::uint64_t{word};
  };
  if constexpr (N == 1) {
    return static_cast<unsigned char>(text[0]);
  } else if constexpr (N == 2 || N == 4 || N == 8) {
    using Word = std::conditional_t<N == 2, std::uint16_t, std::conditional_t<N == 4, std::uint32_t, std::uint64_t>>;
    return load(Word{}, 0);
  } else {
    using Word = std::conditional_t<(N < 4), std::uint16_t, std::uint32_t>;
    return load(Word{}, 0) | load(Word{}, N - sizeof(Word)) << (8 * (N - sizeof(Word)));
  }
}

// Trim of the N bytes at text, N (at most 8) known when compiling. The short
// fields of a log line ("In " or "Out") are padded on one side or the other
// from one record to the next, and a test per byte would be a branch that
// goes either way. The bytes are read as one word and the blanks found with
// word arithmetic instead, which the compiler cannot turn back into such
// branches.
template <std::size_t N>
[[gnu::always_inline]] constexpr std::string_view TrimFixed(const char* text) {
  static_assert(N >= 1 && N <= 8);
  std::uint64_t word = 0;
  if (std::is_constant_evaluated()) {
    for (std::size_t k = 0; k < N; ++k) word |= std::uint64_t{static_cast<unsigned char>(text[k])} << (8 * k);
  } else {
    word = LoadBytes<N>(text);
  }
  constexpr std::uint64_t kLow7 = 0x7F7F7F7F7F7F7F7Full;
  constexpr std::uint64_t kBlanks = 0x2020202020202020ull;
  constexpr std::uint64_t kInText = N == 8 ? ~std::uint64_t{0} : (std::uint64_t{1} << (8 * N)) - 1;
  // A byte of x is zero where the text has a blank; the top bit of each
  // byte of kept is set where it has not.
  const std::uint64_t x = word ^ kBlanks;
  const std::uint64_t kept = (((x & kLow7) + kLow7) | x) & ~kLow7 & kInText;
  // All blank: first is 8 and end 0, so the result is empty.
  const auto first = static_cast<std::size_t>(std::countr_zero(kept)) / 8;
  const auto end = static_cast<std::size_t>(std::bit_width(kept)) / 8;
  const std::size_t start = first < end ? first : end;
  return std::string_view(text + start, end - start);
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
