#pragma once
// Word reads of a log record's bytes: the building blocks of the per-record
// fast path, kept beside the record decoder that uses them so that all the
// bit arithmetic of the data layer is in one place. The record decoder reads
// the fixed columns with them; CallRecord trims its short fields with
// TrimFixed.

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

namespace cw {

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

}  // namespace cw
