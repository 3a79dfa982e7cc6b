#pragma once
// The report form's error boxes shown through the host: the date and time the
// newer box lists, and the output GetOptions and SaveOptions show their boxes
// through.

#include <functional>
#include <string>

#include "reports/report_host.h"
#include "settings/settings_store.h"
#include "support/civil_date.h"

namespace cw {

// "11/22/2026 9:05:00 AM", the way the runtime writes the current moment.
std::string ErrorBoxDateTime(CivilDate date, TimeOfDay time);

// Boxes titled as given, critical icon and OK, dated by the host's clock.
// onShown runs after each box (the form notes that the request met an error).
ErrorBoxOutput HostErrorBoxOutput(ReportHost& host, std::function<void()> onShown = {});

}  // namespace cw
