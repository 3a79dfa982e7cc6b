#include "reports/get_history.h"

#include "data/oldest_log_date.h"
#include "reports/form_error_box.h"
#include "settings/settings_keys.h"
#include "settings/settings_values.h"
#include "support/date_format.h"
#include "support/file_helpers.h"

namespace cw {

namespace {

// Hardware of these types cannot tell incoming from outgoing calls.
bool TellsDirections(std::int16_t hardwareType) { return hardwareType != 5 && hardwareType != 6; }

}  // namespace

HistoryControls BuildHistoryRequest(ReportRequest& request, std::string_view number,
                                    const ReportEnvironment& environment, SettingsStore& settings,
                                    CivilDate today, const ErrorBoxOutput& errors) {
  const std::string todayCaption = FormatDate(today, "mm/dd/yyyy");
  request.toDate = todayCaption;
  request.dtmf = SettingIsTrue(
      GetOptions(settings, environment.edition, kReportsSection, setting::kDtmf.name, setting::kDtmf.defaultValue, errors));
  request.columns = DetailColumnPositions(request.dtmf);
  if (FileExists(environment.logPath)) {
    if (const auto oldest = OldestLogDate(environment.logPath, today)) request.fromDate = *oldest;
    request.toDate = todayCaption;
  }

  HistoryControls controls;
  controls.directionOptionsEnabled = TellsDirections(environment.hardwareType);
  request.direction = "InOut";
  request.kind = kind::kByTelNumber;
  request.partial = false;
  request.chart = false;
  request.searchText = number;
  return controls;
}

RequestOutcome GetHistory(ReportForm& form, ReportHost& host, SettingsStore& settings, std::string_view number) {
  try {
    // A store that cannot be read shows its own box and gives an empty text,
    // which is no truth value: the history then stops with its error box.
    BuildHistoryRequest(form.Request(), number, form.Environment(), settings, host.Today(),
                        HostErrorBoxOutput(host));
  } catch (const RuntimeError& error) {
    form.ShowError(error, "GetHistory");
    return RequestOutcome::kFailed;
  }
  const RequestOutcome outcome = form.cmdPrintQuery_Click();
  // The program ends after the history; pending events run first so that the
  // preview is drawn.
  host.DoEvents();
  return outcome;
}

}  // namespace cw
