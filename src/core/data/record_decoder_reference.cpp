#include "data/record_decoder_reference.h"

#include "support/text.h"

namespace cw {

namespace {

// The columns of a field; the line is known to hold them all.
std::string_view Columns(std::string_view line, LogColumn where) { return line.substr(where.start - 1, where.length); }

bool IsDigitUpTo(char c, char highest) { return c >= '0' && c <= highest; }

// 12 AM is hour 0, 12 PM hour 12.
bool ReadHour(std::string_view time, int& hour) {
  const char tens = time[0];
  if (!(tens == ' ' || IsDigit(tens)) || !IsDigit(time[1]) || time[2] != ':' || !IsDigitUpTo(time[3], '5') ||
      !IsDigit(time[4])) {
    return false;
  }
  const bool am = time[5] == 'A' || time[5] == 'a';
  const bool pm = time[5] == 'P' || time[5] == 'p';
  if (!(am || pm) || !(time[6] == 'M' || time[6] == 'm')) return false;
  const int clockHour = (tens == ' ' ? 0 : DigitValue(tens)) * 10 + DigitValue(time[1]);
  if (clockHour > 12) return false;
  hour = clockHour % 12 + (pm ? 12 : 0);
  return true;
}

bool ReadLine(std::string_view line, std::int16_t& number) {
  if (line[0] != ' ' || !(line[1] == ' ' || IsDigit(line[1])) || !IsDigit(line[2])) return false;
  const int tens = line[1] == ' ' ? 0 : DigitValue(line[1]);
  number = static_cast<std::int16_t>(tens * 10 + DigitValue(line[2]));
  return true;
}

bool ReadSeconds(std::string_view duration, std::int32_t& seconds) {
  for (std::size_t k = 0; k < duration.size(); ++k) {
    const bool colon = k == 1 || k == 4;
    if (colon ? duration[k] != ':' : !IsDigit(duration[k])) return false;
  }
  auto number = [&](std::size_t at, std::size_t digits) {
    int value = 0;
    for (std::size_t k = at; k < at + digits; ++k) value = value * 10 + DigitValue(duration[k]);
    return value;
  };
  seconds = number(0, 1) * 3600 + number(2, 2) * 60 + number(5, 2);
  return true;
}

int ReadKind(std::string_view direction) {
  if (direction == "In " || direction == " In") return kInCall;
  if (direction == "Out") return kOutCall;
  return kNoKind;
}

}  // namespace

bool DecodeCommonCallPlainly(std::string_view line, DecodedCall& call) {
  if (line.size() < kCommonShapeLength) return false;
  DecodedCall decoded;
  if (!ReadHour(Columns(line, column::kTime), decoded.hour)) return false;
  if (!ReadLine(Columns(line, column::kLine), decoded.line)) return false;
  if (!ReadSeconds(Columns(line, column::kDuration), decoded.seconds)) return false;
  decoded.kind = ReadKind(Columns(line, column::kDirection));
  call = decoded;
  return true;
}

}  // namespace cw
