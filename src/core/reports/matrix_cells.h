#pragma once
// Small pieces the matrix builders share: checked additions to 32-bit cells,
// and the hour, length and line of a call read straight from the digits in
// the shape the logging program writes them. They run for every record of a log of
// millions, so each takes the common shape at a glance and hands anything
// else to the general conversion, which decides (and raises its error)
// exactly as before.

#include <cstdint>
#include <cstring>
#include <string_view>

#if defined(__SSE2__) && defined(__x86_64__)
#include <emmintrin.h>
#endif

#include "data/call_record.h"
#include "data/log_conversions.h"
#include "support/runtime_error.h"
#include "support/text.h"
#include "support/time_text.h"
#include "support/whole_numbers.h"

namespace cw {

// Additions to the cells of one record worked out together: every sum is
// made first, then one test raises error 6 if any of them outgrew 32 bits,
// before the caller stores anything (so an overflow leaves the tables as
// they were). One test instead of one per cell, for every record.
// Only sums of seconds need it. A count grows by one a record from zero, and
// a log holds fewer than 2^31 records: GetRecord refuses one of 2^31 bytes or
// more, and a record takes at least three (a character, CR and LF).
class CellSums {
 public:
  std::int32_t Add(std::int32_t a, std::int32_t b) {
    std::int32_t sum;
    overflow_ |= __builtin_add_overflow(a, b, &sum);
    return sum;
  }
  void Check() const {
    if (overflow_) throw RuntimeError(err::kOverflow);
  }

 private:
  bool overflow_ = false;
};

namespace matrix_detail {

// The digit in byte k (counted from 0) of a word checked by DigitsIn.
constexpr int DigitAt(std::uint64_t word, int k) { return static_cast<int>(word >> (8 * k) & 0x0F); }

// Whether every byte that mask selects (0xF0 in each) holds a digit no
// greater than 9 minus that byte of headroom: '0' to '9' for headroom 0, '0'
// to '5' for 4. All at once, as one test.
constexpr bool DigitsIn(std::uint64_t word, std::uint64_t mask, std::uint64_t headroom) {
  const std::uint64_t threes = mask & 0x3030303030303030ull;
  // Once the high halves are 3, adding 6 (plus the headroom) carries into
  // the high half exactly when the digit is too large; no carry leaves the byte.
  const std::uint64_t plus = mask / 0xF0 * 6 + headroom;
  return ((word & mask) == threes) & (((word + plus) & mask) == threes);
}
}  // namespace matrix_detail

// Kind of a call by its trimmed direction: 1 for "In", 2 for "Out", 0 for
// anything else (compared exactly, case included). In and out calls come in
// no order, so the test is done without a branch on which one it is.
inline int DirectionKind(std::string_view direction) {
  const std::size_t n = direction.size();
  if (n < 2 || n > 3) return 0;
  // The first two bytes and the last one make a word; the length tells "In"
  // from "Inn". No branch on which direction it is.
  const auto byte = [&](std::size_t k) { return static_cast<std::uint32_t>(static_cast<unsigned char>(direction[k])); };
  const std::uint32_t word = byte(0) | byte(1) << 8 | byte(n - 1) << 16;
  constexpr std::uint32_t kIn = 'I' | 'n' << 8 | static_cast<std::uint32_t>('n') << 16;
  constexpr std::uint32_t kOut = 'O' | 'u' << 8 | static_cast<std::uint32_t>('t') << 16;
  return static_cast<int>((word == kIn) & (n == 2)) + 2 * static_cast<int>((word == kOut) & (n == 3));
}

// The hour (0..23) of a time in the shape the logging program writes,
// "hh:mmAM" (AM or PM in either case), held as a word; -1 for any other
// shape. Every test is made at once, in one branch.
inline int HourOfTimeWord(std::uint64_t word) {
  using matrix_detail::DigitAt;
  using matrix_detail::DigitsIn;
  const std::uint64_t lower = word | 0x0020200000000000ull;
  const auto half = static_cast<char>(lower >> 40 & 0xFF);
  const bool pm = half == 'p';
  const int hour = DigitAt(word, 0) * 10 + DigitAt(word, 1);
  // Bytes counted from 0: digits in 0, 1, 3 and 4 (3, the tens of the
  // minutes, up to 5), ":" in 2, "m" in 6.
  const bool shaped = DigitsIn(word, 0x000000F0F000F0F0ull, 0x0000000004000000ull) &
                      ((lower & 0x00FF000000FF0000ull) == 0x006D0000003A0000ull) & ((half == 'a') | pm) &
                      (hour <= 12);
  // 12 o'clock is hour 0 of its half of the day.
  return shaped ? (hour == 12 ? 0 : hour) + 12 * static_cast<int>(pm) : -1;
}

// The hour (0..23) of a call's time, as ParseTimeText and the "h" format give
// it: "hh:mmAM" and "h:mmAM" (read as "0h:mmAM") by their word, anything else
// through the general conversion.
inline int HourOfCall(std::string_view time) {
  const std::size_t n = time.size();
  if (n == 7 || n == 6) {
    const std::uint64_t word = n == 7 ? LoadBytes<7>(time.data()) : LoadBytes<6>(time.data()) << 8 | '0';
    if (const int hour = HourOfTimeWord(word); hour >= 0) return hour;
  }
  return ParseTimeText(time) / 3600;
}

// The seconds of a duration in the shape the logging program writes,
// "h:mm:ss", held as a word; -1 for any other shape.
inline std::int32_t SecondsOfDurationWord(std::uint64_t word) {
  using matrix_detail::DigitsIn;
  // Bytes counted from 0: digits in 0, 2, 3, 5 and 6; ":" in 1 and 4.
  const bool shaped =
      DigitsIn(word, 0x00F0F000F0F000F0ull, 0) & ((word & 0x000000FF0000FF00ull) == 0x0000003A00003A00ull);
  // The digits' values, the colons cleared. Each tens digit times ten plus
  // the units digit beside it puts the minutes in byte 2 and the seconds in
  // byte 5; no byte goes past 99, so none carries into the next.
  const std::uint64_t digits = word & 0x000F0F000F0F000Full;
  const std::uint64_t pairs = digits * 10 + (digits >> 8);
  const auto hours = static_cast<std::int32_t>(digits & 0x0F);
  const auto minutes = static_cast<std::int32_t>(pairs >> 16 & 0xFF);
  const auto seconds = static_cast<std::int32_t>(pairs >> 40 & 0xFF);
  return shaped ? hours * 3600 + minutes * 60 + seconds : -1;
}

// A call's length in seconds as DurationToSeconds gives it: "h:mm:ss" by its
// word, anything else through the general conversion.
inline std::int32_t SecondsOfCall(std::string_view duration) {
  if (duration.size() == 7) {
    if (const std::int32_t seconds = SecondsOfDurationWord(LoadBytes<7>(duration.data())); seconds >= 0) {
      return seconds;
    }
  }
  return DurationToSeconds(duration);
}

// The line number of a call as TextToInt16 converts the line field: one to
// three digits directly, anything else through the conversion (error 13 for
// a field that is not a number).
inline std::int16_t LineOfCall(std::string_view line) {
  const std::size_t n = line.size();
  if (n == 1 && IsDigit(line[0])) return static_cast<std::int16_t>(DigitValue(line[0]));
  if (n >= 1 && n <= 3 && IsDigit(line[0]) && (n < 2 || IsDigit(line[1])) && (n < 3 || IsDigit(line[2]))) {
    int value = 0;
    for (char c : line) value = value * 10 + DigitValue(c);
    return static_cast<std::int16_t>(value);
  }
  return TextToInt16(line);
}

// The same values read from a whole record. When the line holds a field whole
// and in the logging program's shape, its value comes straight from its
// columns; otherwise from the trimmed text, through the functions above, so
// the answers are those of the trimmed texts in every case. Cutting and
// trimming each field first would make every value wait for its trim before
// its bytes could even be read; over millions of records that wait, more than
// the work, is what a report's walk costs.
namespace matrix_detail {
// A line at least this long lets every field up to the duration be read as
// eight bytes from its first column. Nearly every line is: one test of its
// length, made once for all the fields a builder reads, settles them all.
inline constexpr std::size_t kWordReadableLength = column::kDuration.start - 1 + 8;

// The columns of field `where` as a word (the bytes past the field zero),
// when the line holds them all.
template <LogColumn where>
[[gnu::always_inline]] inline bool FieldWord(const CallRecord& record, std::uint64_t& word) {
  static_assert(where.length <= 8 && where.start - 1 + 8 <= kWordReadableLength);
  const std::string_view line = record.Text();
  const char* first = line.data() + where.start - 1;
  if (line.size() >= kWordReadableLength) [[likely]] {
    constexpr std::uint64_t kField = where.length == 8 ? ~std::uint64_t{0} : (std::uint64_t{1} << (8 * where.length)) - 1;
    word = LoadBytes<8>(first) & kField;
    return true;
  }
  if (line.size() < where.start - 1 + where.length) return false;
  word = LoadBytes<where.length>(first);
  return true;
}
}  // namespace matrix_detail

// The kind of a call by its three direction columns held as a word: "In"
// exactly when they hold "In " or " In", "Out" when they hold "Out".
inline int KindOfDirectionColumns(std::uint64_t word) {
  constexpr std::uint64_t kInLeft = 'I' | 'n' << 8 | static_cast<std::uint64_t>(' ') << 16;
  constexpr std::uint64_t kInRight = ' ' | 'I' << 8 | static_cast<std::uint64_t>('n') << 16;
  constexpr std::uint64_t kOut = 'O' | 'u' << 8 | static_cast<std::uint64_t>('t') << 16;
  int kind = static_cast<int>((word == kInLeft) | (word == kInRight)) + 2 * static_cast<int>(word == kOut);
  // Left to itself the compiler turns a later test of the kind (is it a
  // call in or out at all?) into a jump on which of the two it is, and that
  // jump goes the wrong way for about every other call. An empty asm
  // statement hides where the value came from.
  asm("" : "+r"(kind));
  return kind;
}

// DirectionKind of the record's direction.
inline int CallKind(const CallRecord& record) {
  std::uint64_t word;
  if (!matrix_detail::FieldWord<column::kDirection>(record, word)) return DirectionKind(record.Direction());
  return KindOfDirectionColumns(word);
}

// The hour of a time field's word, as HourOfTimeWord reads it: " h:mmAM"
// trims to "h:mmAM", read as "0h:mmAM", so a blank (0x20) in front becomes a
// "0" (0x30). The shape test looks at both ends of the field, so a blank
// anywhere else gives -1 (the general conversion's case).
inline int HourOfTimeColumns(std::uint64_t word) {
  return HourOfTimeWord(word | std::uint64_t{(word & 0xFF) == ' '} << 4);
}

// Whether the time field's word has the hour of `earlier`, a word that
// HourOfTimeColumns accepted: the same hour, ":" and AM/PM columns, and
// minutes that are minutes. Cheaper than reading the hour again, and the
// log, in time order, holds many calls an hour.
inline bool SameHourColumns(std::uint64_t word, std::uint64_t earlier) {
  constexpr std::uint64_t kHourColumns = 0x00FFFF0000FFFFFFull;  // bytes 0, 1, 2, 5 and 6
  return (((word ^ earlier) & kHourColumns) == 0) &
         matrix_detail::DigitsIn(word, 0x000000F0F0000000ull, 0x0000000004000000ull);
}

// The time field of a record as a word, when the line holds it whole.
inline bool TimeColumns(const CallRecord& record, std::uint64_t& word) {
  return matrix_detail::FieldWord<column::kTime>(record, word);
}

// HourOfCall of the record's time.
inline int CallHour(const CallRecord& record) {
  std::uint64_t word;
  if (TimeColumns(record, word)) {
    if (const int hour = HourOfTimeColumns(word); hour >= 0) return hour;
  }
  return HourOfCall(record.Time());
}

// SecondsOfCall of the record's duration.
inline std::int32_t CallSeconds(const CallRecord& record) {
  std::uint64_t word;
  // The shape test looks at both ends of the field: a field with blanks
  // goes to the general conversion.
  if (matrix_detail::FieldWord<column::kDuration>(record, word)) {
    if (const std::int32_t seconds = SecondsOfDurationWord(word); seconds >= 0) return seconds;
  }
  return SecondsOfCall(record.Duration());
}

// LineOfCall of the record's line field ("  3" is line 3).
inline std::int16_t CallLine(const CallRecord& record) {
  std::uint64_t word;
  if (matrix_detail::FieldWord<column::kLine>(record, word) && (word & 0xFFFF) == 0x2020 &&
      IsDigit(static_cast<char>(word >> 16))) {
    return static_cast<std::int16_t>(DigitValue(static_cast<char>(word >> 16)));
  }
  return LineOfCall(record.Line());
}

// The line, kind and length of a call as CallLine, CallKind and CallSeconds
// give them, read at once when the line holds the line number, the
// direction and the duration in the logging program's own shape ("  3 In
// 0:01:23", or " 12" for two-digit lines); false for any other line, whose
// fields are then read one by one. The line usage summary reads these three
// from every call, so they are read from the one stretch of columns that
// holds them (80 to 95): as two words, or, where the processor has 16-byte
// registers, as one.
struct LineCall {
  std::int16_t line = 0;
  int kind = 0;
  std::int32_t seconds = 0;
};

namespace matrix_detail {
static_assert(column::kLine.start + 4 == column::kDirection.start &&
              column::kDirection.start + 4 == column::kDuration.start &&
              column::kDuration.start + column::kDuration.length - column::kLine.start <= 16 &&
              column::kLine.start - 1 + 16 <= kWordReadableLength);
}  // namespace matrix_detail

inline bool ReadLineCallWords(const CallRecord& record, LineCall& call) {
  const std::string_view text = record.Text();
  if (text.size() < matrix_detail::kWordReadableLength) return false;
  const std::uint64_t head = LoadBytes<8>(text.data() + column::kLine.start - 1);  // line, blank, direction
  const std::uint64_t tail = LoadBytes<8>(text.data() + column::kDuration.start - 1);
  // The line field "  d" or " dd", a blank tens' place taken as "0"; then
  // the shape's characters taken away, which leaves the digits' values in
  // their bytes and zero in the blank's.
  std::uint64_t line = head & 0xFFFFFF;
  line |= std::uint64_t{(line >> 8 & 0xFF) == ' '} << 12;
  line ^= 0x303020;
  // The duration "h:mm:ss" in the same way: digits' values, colons zero.
  const std::uint64_t duration = (tail & 0x00FFFFFFFFFFFFFFull) ^ 0x0030303A30303A30ull;
  // Nothing else is left in a byte that held the right character, and a
  // digit's value goes past 9 exactly when adding 6 carries.
  const std::uint64_t wrong = (line & 0xF0F0FF) | ((line + 0x060600) & 0xF0F000) |
                              (duration & 0x00F0F0FFF0F0FFF0ull) |
                              ((duration + 0x0006060006060006ull) & 0x00F0F000F0F000F0ull);
  if (wrong != 0) return false;
  call.line = static_cast<std::int16_t>((line >> 8 & 0x0F) * 10 + (line >> 16 & 0x0F));
  // Each tens digit times ten plus the units digit beside it puts the
  // minutes in byte 2 and the seconds in byte 5; no byte goes past 99.
  const std::uint64_t pairs = duration * 10 + (duration >> 8);
  call.seconds = static_cast<std::int32_t>((duration & 0x0F) * 3600 + (pairs >> 16 & 0xFF) * 60 + (pairs >> 40 & 0xFF));
  call.kind = KindOfDirectionColumns(head >> 32 & 0xFFFFFF);
  return true;
}

#if defined(__SSE2__) && defined(__x86_64__)
// ReadLineCallWords with the sixteen columns in one register: the shape is
// one test of two byte masks, and the digits are weighed and summed
// together. About half the instructions of the two words.
inline bool ReadLineCallVector(const CallRecord& record, LineCall& call) {
  const std::string_view text = record.Text();
  if (text.size() < matrix_detail::kWordReadableLength) return false;
  // Bytes counted from 0: the line in 0 to 2, the direction in 4 to 6, the
  // duration in 8 to 14.
  const __m128i columns = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + column::kLine.start - 1));
  const __m128i values = _mm_sub_epi8(columns, _mm_set1_epi8('0'));
  const __m128i digits = _mm_cmpeq_epi8(_mm_min_epu8(values, _mm_set1_epi8(9)), values);
  const __m128i marks = _mm_cmpeq_epi8(columns, _mm_setr_epi8(' ', ' ', 0, 0, 0, 0, 0, 0, 0, ':', 0, 0, ':', 0, 0, 0));
  // Digits in 2, 8, 10, 11, 13 and 14; a blank in 0; ":" in 9 and 12; a
  // digit or a blank in 1.
  constexpr int kDigitBytes = 0b0110'1101'0000'0110;
  constexpr int kMarkBytes = 0b0001'0010'0000'0011;
  const int shape = (_mm_movemask_epi8(digits) & kDigitBytes) | (_mm_movemask_epi8(marks) & kMarkBytes);
  if (shape != (kDigitBytes | kMarkBytes)) return false;
  // The digits' values, every other byte zero, widened to 16 bits and
  // weighed: the line's tens and units, and the duration's hours, tens and
  // units of minutes and of seconds, each in its place.
  const __m128i digitValues = _mm_and_si128(values, digits);
  const __m128i zero = _mm_setzero_si128();
  const __m128i lineParts =
      _mm_madd_epi16(_mm_unpacklo_epi8(digitValues, zero), _mm_setr_epi16(0, 10, 1, 0, 0, 0, 0, 0));
  const __m128i secondParts =
      _mm_madd_epi16(_mm_unpackhi_epi8(digitValues, zero), _mm_setr_epi16(3600, 0, 600, 60, 0, 10, 1, 0));
  // Four parts of the seconds and two of the line, summed in two steps.
  const __m128i halves =
      _mm_add_epi32(_mm_unpacklo_epi64(secondParts, lineParts), _mm_unpackhi_epi64(secondParts, zero));
  const __m128i sums = _mm_add_epi32(halves, _mm_shuffle_epi32(halves, _MM_SHUFFLE(2, 3, 0, 1)));
  call.seconds = _mm_cvtsi128_si32(sums);
  call.line = static_cast<std::int16_t>(_mm_extract_epi16(sums, 4));
  call.kind = KindOfDirectionColumns(static_cast<std::uint64_t>(_mm_cvtsi128_si64(columns)) >> 32 & 0xFFFFFF);
  return true;
}
#endif

inline bool ReadLineCall(const CallRecord& record, LineCall& call) {
#if defined(__SSE2__) && defined(__x86_64__)
  return ReadLineCallVector(record, call);
#else
  return ReadLineCallWords(record, call);
#endif
}

}  // namespace cw
