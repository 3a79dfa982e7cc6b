#include "data/record_decoder.h"

#include "data/log_conversions.h"
#include "support/time_text.h"
#include "support/whole_numbers.h"

namespace cw {

int DirectionKind(std::string_view direction) {
  if (direction == "In") return kInCall;
  if (direction == "Out") return kOutCall;
  return kNoKind;
}

int HourOfCall(std::string_view time) { return ParseTimeText(time) / 3600; }

std::int32_t SecondsOfCall(std::string_view duration) { return DurationToSeconds(duration); }

std::int16_t LineOfCall(std::string_view line) { return TextToInt16(line); }

}  // namespace cw
