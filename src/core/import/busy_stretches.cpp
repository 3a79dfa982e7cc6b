#include "import/busy_stretches.h"

#include <algorithm>
#include <cstdio>
#include <map>

namespace cw {

namespace {

std::string Clock(LocalSeconds time) {
  const TimeOfDay seconds = TimeOfDayOf(time);
  const int hour24 = seconds / 3600;
  char text[16];
  std::snprintf(text, sizeof text, "%02d:%02d:%02d %s", hour24 % 12 == 0 ? 12 : hour24 % 12, seconds / 60 % 60,
                seconds % 60, hour24 < 12 ? "AM" : "PM");
  return text;
}

}  // namespace

std::vector<BusyStretch> AllLinesBusy(std::span<const LogCall> calls, std::span<const std::int32_t> lines) {
  std::vector<BusyStretch> stretches;
  if (lines.empty()) return stretches;
  struct Change {
    LocalSeconds at;
    int step;  // +1 a line taken, -1 freed
    std::int32_t line;
  };
  std::vector<Change> changes;
  for (const LogCall& call : calls) {
    if (std::find(lines.begin(), lines.end(), call.line) == lines.end() || call.end <= call.start) continue;
    changes.push_back({call.start, +1, call.line});
    changes.push_back({call.end, -1, call.line});
  }
  std::sort(changes.begin(), changes.end(), [](const Change& a, const Change& b) { return a.at < b.at; });
  // Every change of one moment is taken together: a line handed from one
  // call to the next at once never fell free.
  std::map<std::int32_t, int> callsOnLine;
  std::size_t busyLines = 0;
  bool allBusy = false;
  LocalSeconds since = 0;
  for (std::size_t i = 0; i < changes.size();) {
    const LocalSeconds moment = changes[i].at;
    for (; i < changes.size() && changes[i].at == moment; ++i) {
      int& count = callsOnLine[changes[i].line];
      if (changes[i].step > 0 && count++ == 0) ++busyLines;
      if (changes[i].step < 0 && --count == 0) --busyLines;
    }
    const bool nowAll = busyLines == lines.size();
    if (!allBusy && nowAll) since = moment;
    if (allBusy && !nowAll) stretches.push_back({since, moment});
    allBusy = nowAll;
  }
  return stretches;
}

std::string LinesText(std::span<const std::int32_t> lines) {
  std::vector<std::int32_t> sorted(lines.begin(), lines.end());
  std::sort(sorted.begin(), sorted.end());
  sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
  std::string text;
  for (std::size_t i = 0; i < sorted.size();) {
    std::size_t last = i;
    while (last + 1 < sorted.size() && sorted[last + 1] == sorted[last] + 1) ++last;
    if (!text.empty()) text += ',';
    text += std::to_string(sorted[i]);
    if (last > i) text += '-' + std::to_string(sorted[last]);
    i = last + 1;
  }
  return text;
}

std::string FormatBusyLine(const BusyStretch& stretch, const std::string& linesText) {
  const CivilDate date = DateOf(stretch.start);
  char day[16];
  std::snprintf(day, sizeof day, "%02d/%02d/%04d", date.Month(), date.Day(), date.Year());
  return std::string(day) + ',' + Clock(stretch.start) + ',' + Clock(stretch.end) + ',' +
         std::to_string(stretch.end - stretch.start) + ',' + linesText + "\r\n";
}

}  // namespace cw
