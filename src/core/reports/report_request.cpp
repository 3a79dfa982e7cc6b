#include "reports/report_request.h"

#include "support/date_format.h"

namespace cw {

std::string_view TabCaption(std::int16_t reportKind, std::string_view edition) {
  switch (reportKind) {
    case kind::kDailyCallStatistics: return "Daily Call Statistics";
    case kind::kLineUsageStatistics: return "Line Usage Statistics";
    case kind::kAllLinesBusy: return "All Lines Busy";
    case kind::kAbandonedCalls:
      return edition == kEditionRingtally ? "Unanswered Calls" : "Abandoned Calls";
    case kind::kByName: return "By Name";
    case kind::kByTelNumber: return "By Tel Number";
    case kind::kCallHistory: return "Call History";
    case kind::kByLineNumber: return "By Line Number";
    case kind::kCallBacks: return "Call Backs";
    default: return {};
  }
}

std::vector<std::int16_t> LineChoice::Chosen(std::int16_t activeLines) const {
  if (!allLines) return lines;
  // Counted wider than the line numbers: 32767 active lines is allowed, and
  // a 16-bit counter would wrap there instead of ending.
  std::vector<std::int16_t> all;
  for (int line = 1; line <= activeLines; ++line) all.push_back(static_cast<std::int16_t>(line));
  return all;
}

DetailColumns DetailColumnPositions(bool dtmf) {
  // Each column starts a fixed distance after the one before; the name column
  // gives up three quarters of an inch when the touch-tone digits need room.
  const std::array<double, 10> steps{0.5, 0.5, dtmf ? 2.5 : 3.25, 0.25, 1.2,
                                     0.15, 0.85, 0.25, 0.55, 0.15};
  DetailColumns columns{};
  double x = 0;
  for (std::size_t i = 0; i < steps.size(); ++i) {
    x += steps[i];
    columns[i] = x;
  }
  return columns;
}

PeriodCaptions ApplyTimePeriod(TimePeriod period, CivilDate today,
                               const std::optional<std::string>& oldestCaption,
                               const PeriodCaptions& current) {
  const std::string todayCaption = FormatDate(today, "mm/dd/yyyy");
  PeriodCaptions result = current;
  switch (period) {
    case TimePeriod::kToday:
      result = {todayCaption, todayCaption};
      break;
    case TimePeriod::kCurrentWeek:
      // Weeks start on Sunday; To stays where the user had it.
      result.fromDate = FormatDate(today.AddDays(-(today.Weekday() - 1)), "mm/dd/yyyy");
      break;
    case TimePeriod::kCurrentMonth:
      result = {FormatDate(CivilDate::FromYmd(today.Year(), today.Month(), 1), "mm/dd/yyyy"),
                todayCaption};
      break;
    case TimePeriod::kAllLogEntries:
      if (oldestCaption) result.fromDate = *oldestCaption;
      result.toDate = todayCaption;
      break;
  }
  return result;
}

}  // namespace cw
