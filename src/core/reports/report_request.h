#pragma once
// The report request: what the report form hands to the dispatcher, and the
// small rules that fill it (tab captions, time periods, detail columns).

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "settings/edition.h"
#include "support/civil_date.h"

namespace cw {

// Report kind = 1-based tab index.
namespace kind {
inline constexpr std::int16_t kDailyCallStatistics = 1;
inline constexpr std::int16_t kLineUsageStatistics = 2;
inline constexpr std::int16_t kAllLinesBusy = 3;
inline constexpr std::int16_t kAbandonedCalls = 4;
inline constexpr std::int16_t kByName = 5;
inline constexpr std::int16_t kByTelNumber = 6;
inline constexpr std::int16_t kCallHistory = 7;
inline constexpr std::int16_t kByLineNumber = 8;
inline constexpr std::int16_t kCallBacks = 9;
}  // namespace kind

// Tab caption of a kind in an edition ("Unanswered Calls" for kind 4 in
// "Vorn Ringtally"); empty outside 1..9.
std::string_view TabCaption(std::int16_t reportKind, std::string_view edition);

// Abandoned-call filter of tab 4, as the form's boxes hold it.
struct AbandonedFilter {
  bool notLasting = false;   // chkNotLasting
  std::string seconds;       // txtSeconds
  bool ringCount = false;    // chkRingCount
  std::string rings;         // txtRings
  bool unanswered = false;   // chkUnanswered
  std::int16_t inOutIndex = 0;
};

// Line choice of tab 8: all lines, or the chosen lines listed first to last.
struct LineChoice {
  bool allLines = false;
  std::vector<std::int16_t> lines;

  // The lines to list: 1 to activeLines with all lines, else those chosen.
  std::vector<std::int16_t> Chosen(std::int16_t activeLines) const;
};

// The ten column positions of the detail listing, in inches.
using DetailColumns = std::array<double, 10>;
DetailColumns DetailColumnPositions(bool dtmf);

struct ReportRequest {
  std::int16_t kind = kind::kDailyCallStatistics;
  std::string variant = "Detailed";   // "Detailed" or "Summary" (tab 3)
  std::string direction = "In";       // "In", "Out" or "InOut"
  std::string fromDate;               // lFromDate caption, "mm/dd/yyyy"
  std::string toDate;                 // lToDate caption
  std::string searchText;             // tNameNumber
  bool partial = false;               // chkPartial
  bool chart = false;                 // chkChart ("Include Graph"; condensed listing on tab 7)
  bool condensed = false;             // the condensed-version box (kept in the settings)
  AbandonedFilter abandoned;
  LineChoice lines;
  bool dtmf = false;                  // setting "DTMF"
  std::int32_t callBackWindowDays = 7;  // how long after a missed call a call back counts
  DetailColumns columns = DetailColumnPositions(false);
};

// Time periods of the form (option index 0..3).
enum class TimePeriod { kToday = 0, kCurrentWeek = 1, kCurrentMonth = 2, kAllLogEntries = 3 };

struct PeriodCaptions {
  std::string fromDate;
  std::string toDate;
};

// The From/To captions a period sets, from an injected today. "Current Week"
// leaves To as it was; "All Log Entries" starts at oldestCaption, the log's
// oldest date as the oldest-date test gives it (today's caption for an
// undated first line; nullopt when there is no log, which leaves From as it was).
PeriodCaptions ApplyTimePeriod(TimePeriod period, CivilDate today,
                               const std::optional<std::string>& oldestCaption,
                               const PeriodCaptions& current);

}  // namespace cw
