#pragma once
// The history of one telephone number: what the logging program asks for when
// it starts the report program with a number. The request is filled as if the
// user had chosen the in-and-out call history of that number over the whole
// log, then run once as the preview button runs it. The desktop's history
// mode and cwreport --history share it.

#include <string>
#include <string_view>

#include "reports/report_form.h"
#include "reports/report_host.h"
#include "settings/settings_store.h"

namespace cw {

// How the form's controls stand while the history runs.
struct HistoryControls {
  bool directionOptionsEnabled = true;  // false for hardware types 5 and 6
  bool partialEnabled = true;
  bool chartEnabled = false;
  std::string searchLabel = "Number";
};

// Fills `request` for the history of `number` (To today, the DTMF setting
// and the detail columns, From the oldest date of the log, direction "InOut",
// tab "By Tel Number", exact match, no chart, the number as the search text).
// A log that is not there leaves From as it was. Throws RuntimeError: 13 when
// the stored "DTMF" is not a truth value, 75 when the log cannot be read.
// Errors of the settings store are shown through `errors`.
HistoryControls BuildHistoryRequest(ReportRequest& request, std::string_view number,
                                    const ReportEnvironment& environment, SettingsStore& settings,
                                    CivilDate today, const ErrorBoxOutput& errors);

// GetHistory: builds the request on the form and runs it. An error while
// building it is shown as the form's error box naming GetHistory, and the
// request is not run (kFailed).
RequestOutcome GetHistory(ReportForm& form, ReportHost& host, SettingsStore& settings, std::string_view number);

}  // namespace cw
