#include "reports/hour_labels.h"

#include "support/date_format.h"
#include "support/runtime_error.h"

namespace cw {

std::string HourLabel(int hour) {
  if (hour < 0 || hour > 23) throw RuntimeError(err::kInvalidCall);
  if (hour == 0) return "12:00 - 1:00 AM";
  if (hour == 11) return "11:00 - 12:00 AM";
  if (hour == 23) return "11:00 - 12:00 PM";
  // The start hour on a 12-hour clock without its half of the day; the next
  // hour carries it.
  const int startHour = hour > 12 ? hour - 12 : hour;
  std::string label = FormatTime(startHour * 3600, "h:Nn");
  label += " - ";
  label += FormatTime((hour + 1) * 3600, "h:Nn AM/PM");
  return label;
}

std::vector<std::string> HourChartLabels() {
  std::vector<std::string> labels;
  labels.reserve(24);
  for (int hour = 0; hour < 24; ++hour) {
    if (hour % 2 == 0) {
      labels.emplace_back(" ");
    } else {
      labels.push_back(std::to_string(hour % 12 == 0 ? 12 : hour % 12) + (hour < 12 ? "AM" : "PM"));
    }
  }
  return labels;
}

}  // namespace cw
