#include "reports/seconds_to_text.h"

#include "support/date_format.h"

namespace cw {

std::string SecondsToText(std::int64_t seconds, bool shortMinutes) {
  constexpr std::int64_t kDay = 86400;
  if (seconds < 0) seconds += kDay;
  const std::int64_t minutes = seconds / 60;
  std::string text;
  if (minutes < 60) {
    text = FormatNumber(static_cast<double>(minutes), shortMinutes ? "#0" : "00");
  } else {
    text = FormatNumber(static_cast<double>(minutes / 60), "#0");
    text += ':';
    text += FormatNumber(static_cast<double>(minutes % 60), "00");
  }
  text += ':';
  text += FormatNumber(static_cast<double>(seconds % 60), "00");
  return text;
}

}  // namespace cw
