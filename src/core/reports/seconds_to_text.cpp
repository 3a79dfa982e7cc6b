#include "reports/seconds_to_text.h"

#include "support/date_format.h"

namespace cw {

std::string SecondsToText(std::int32_t seconds, bool shortMinutes) {
  constexpr std::int32_t kDay = 86400;
  if (seconds < 0) seconds += kDay;
  const std::int32_t minutes = seconds / 60;
  std::string text;
  if (minutes < 60) {
    text = FormatNumber(minutes, shortMinutes ? "#0" : "00");
  } else {
    text = FormatNumber(minutes / 60, "#0");
    text += ':';
    text += FormatNumber(minutes % 60, "00");
  }
  text += ':';
  text += FormatNumber(seconds % 60, "00");
  return text;
}

}  // namespace cw
