#pragma once
// The values the reports read from every call (its hour, line, kind and
// length), decoded from the line's columns. This is the one place where a
// call log line is read fast: nearly every line of a log has the shape the
// logging program writes, and such a line is decoded at once from its
// columns with word and vector arithmetic. Any other line is decoded field
// by field through the general conversions, which decide, and raise their
// errors, exactly as the report rules say. DecodeCommonCallPlainly
// (record_decoder_reference.h) says in plain code what the common shape is;
// the two must agree on every line.
//
// The report builders read a call through DecodedRecord and never look at
// its bytes themselves.

#include <cstdint>
#include <string_view>

#if defined(__SSE2__) && defined(__x86_64__)
#include <emmintrin.h>
#endif

#include "data/call_record.h"
#include "data/record_decoder_reference.h"
#include "data/record_words.h"
#include "support/text.h"

namespace cw {

// The general conversions of single fields, for a line of any shape. Each
// takes the trimmed field text.
// 1 for "In", 2 for "Out", 0 for anything else (compared exactly, case included).
int DirectionKind(std::string_view direction);
// The hour (0..23) as the "h" format gives it from ParseTimeText (error 13
// for a text that is not a time).
int HourOfCall(std::string_view time);
// The seconds as DurationToSeconds gives them (error 6 beyond 32 bits).
std::int32_t SecondsOfCall(std::string_view duration);
// The line number as TextToInt16 gives it (error 13 for a field that is not
// a number, 6 beyond 16 bits).
std::int16_t LineOfCall(std::string_view line);

// The same, of a whole record.
inline int CallKind(const CallRecord& record) { return DirectionKind(record.Direction()); }
inline int CallHour(const CallRecord& record) { return HourOfCall(record.Time()); }
inline std::int32_t CallSeconds(const CallRecord& record) { return SecondsOfCall(record.Duration()); }
inline std::int16_t CallLine(const CallRecord& record) { return LineOfCall(record.Line()); }

// Whether two lines have the same date text, so that the date of the later
// one need not be converted again: the log holds many calls a day. A line too
// short to hold the whole date never counts as the same.
[[gnu::always_inline]] inline bool SameDateText(std::string_view line, std::string_view earlier) {
  constexpr std::size_t kEnd = column::kDate.start - 1 + column::kDate.length;
  if (line.size() < kEnd || earlier.size() < kEnd) return false;
  // Both ends of the ten columns as two overlapping words.
  static_assert(kEnd >= 8 && kEnd <= 16);
  return (LoadBytes<8>(line.data()) == LoadBytes<8>(earlier.data())) &
         (LoadBytes<8>(line.data() + kEnd - 8) == LoadBytes<8>(earlier.data() + kEnd - 8));
}

namespace decoder_detail {

// The digit in byte k (counted from 0) of a word checked by DigitsIn.
constexpr int DigitAt(std::uint64_t word, int k) { return static_cast<int>(word >> (8 * k) & 0x0F); }

// Whether every byte that mask selects (0xF0 in each) holds a digit no
// greater than 9 minus that byte of headroom: '0' to '9' for headroom 0, '0'
// to '5' for 4. All at once, as one test: once the high halves are 3, adding
// 6 (plus the headroom) carries into the high half exactly when the digit is
// too large, and no carry leaves the byte.
constexpr bool DigitsIn(std::uint64_t word, std::uint64_t mask, std::uint64_t headroom) {
  const std::uint64_t threes = mask & 0x3030303030303030ull;
  const std::uint64_t plus = mask / 0xF0 * 6 + headroom;
  return ((word & mask) == threes) & (((word + plus) & mask) == threes);
}

// The hour (0..23) of the seven time columns held as a word: "hh:mmAM" or
// " h:mmAM" (AM or PM in either case, minutes up to 59, hours up to 12);
// -1 for any other shape. Every test is made at once, in one branch.
inline int HourOfTimeColumns(std::uint64_t word) {
  // " h:mmAM" reads as "0h:mmAM": a blank (0x20) in front becomes "0" (0x30).
  word |= std::uint64_t{(word & 0xFF) == ' '} << 4;
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

// The kind of a call by its three direction columns held as a word: "In"
// exactly when they hold "In " or " In", "Out" when they hold "Out".
inline int KindOfDirectionColumns(std::uint64_t word) {
  constexpr std::uint64_t kInLeft = 'I' | 'n' << 8 | static_cast<std::uint64_t>(' ') << 16;
  constexpr std::uint64_t kInRight = ' ' | 'I' << 8 | static_cast<std::uint64_t>('n') << 16;
  constexpr std::uint64_t kOut = 'O' | 'u' << 8 | static_cast<std::uint64_t>('t') << 16;
  int kind = static_cast<int>((word == kInLeft) | (word == kInRight)) + 2 * static_cast<int>(word == kOut);
  // In and out calls come in no order. Left to itself the compiler turns a
  // later test of the kind into a jump on which of the two it is, and that
  // jump goes the wrong way for about every other call: an empty asm
  // statement hides where the value came from.
  asm("" : "+r"(kind));
  return kind;
}

#if defined(__SSE2__) && defined(__x86_64__)
// The line, kind and seconds from the sixteen columns that start at the line
// field, in one register: the shape is one test of two byte masks, and the
// digits are weighed and summed together.
inline bool DecodeLineColumns(const char* columns16, DecodedCall& call) {
  // Bytes counted from 0: the line in 0 to 2, the direction in 4 to 6, the
  // duration in 8 to 14.
  static_assert(column::kLine.start + 4 == column::kDirection.start &&
                column::kDirection.start + 4 == column::kDuration.start &&
                column::kDuration.start + column::kDuration.length - column::kLine.start <= 16);
  const __m128i columns = _mm_loadu_si128(reinterpret_cast<const __m128i*>(columns16));
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

}  // namespace decoder_detail

// DecodeCommonCallPlainly, fast: the same answer for every line.
[[gnu::always_inline]] inline bool DecodeCommonCall(std::string_view line, DecodedCall& call) {
#if defined(__SSE2__) && defined(__x86_64__)
  if (line.size() < kCommonShapeLength) return false;
  const std::uint64_t time = LoadBytes<8>(line.data() + column::kTime.start - 1) & 0x00FFFFFFFFFFFFFFull;
  const int hour = decoder_detail::HourOfTimeColumns(time);
  if (hour < 0) return false;
  call.hour = hour;
  return decoder_detail::DecodeLineColumns(line.data() + column::kLine.start - 1, call);
#else
  return DecodeCommonCallPlainly(line, call);
#endif
}

// Which decoder reads the common shape: the fast one, or the plain one that
// the fast one is checked against.
enum class CommonDecoder { kFast, kPlain };

// One call as the builders read it: each value decoded from the common shape
// when the line has it, else converted from its field when it is asked for,
// so that a report meets only the errors of the fields it reads.
class DecodedRecord {
 public:
  [[gnu::always_inline]] explicit DecodedRecord(const CallRecord& record,
                                                CommonDecoder decoder = CommonDecoder::kFast)
      : record_(record),
        common_(decoder == CommonDecoder::kFast ? DecodeCommonCall(record.Text(), call_)
                                                : DecodeCommonCallPlainly(record.Text(), call_)) {}

  const CallRecord& Record() const { return record_; }
  // Whether the line had the common shape.
  bool Common() const { return common_; }
  int Kind() const { return common_ ? call_.kind : CallKind(record_); }
  int Hour() const { return common_ ? call_.hour : CallHour(record_); }
  std::int16_t Line() const { return common_ ? call_.line : CallLine(record_); }
  std::int32_t Seconds() const { return common_ ? call_.seconds : CallSeconds(record_); }

 private:
  CallRecord record_;
  DecodedCall call_;
  bool common_;
};

}  // namespace cw
