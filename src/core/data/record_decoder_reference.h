#pragma once
// The common shape of a call log line, and its values, in plain code: the
// rule that the fast decoder of record_decoder.h must follow on every line.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "data/call_record.h"

namespace cw {

// Kinds of call by direction.
inline constexpr int kNoKind = 0;
inline constexpr int kInCall = 1;
inline constexpr int kOutCall = 2;

// The values the reports read from a call.
struct DecodedCall {
  int hour = 0;             // 0..23
  std::int16_t line = 0;    // the telephone line
  int kind = kNoKind;       // kInCall, kOutCall or kNoKind
  std::int32_t seconds = 0; // the call's length
  friend bool operator==(const DecodedCall&, const DecodedCall&) = default;
};

// A line of the common shape runs at least to this column, one past the
// duration's.
inline constexpr std::size_t kCommonShapeLength = column::kLine.start - 1 + 16;

// Whether line has the common shape, as the logging program writes it:
//   time      "hh:mmAM" or " h:mmAM", AM or PM in either case, hours up to
//             12, minutes up to 59;
//   line      "  d" or " dd";
//   duration  "h:mm:ss", any digits;
// and the line runs on past the duration; the direction columns may hold
// anything ("In " or " In" is in, "Out" out, anything else no kind). When it
// has, call gets the values the general conversions give those fields.
bool DecodeCommonCallPlainly(std::string_view line, DecodedCall& call);

}  // namespace cw
