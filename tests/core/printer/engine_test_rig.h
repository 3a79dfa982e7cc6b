#pragma once
// An OrlPrinter environment for tests: fixed-pitch metrics, a fixed date, a
// US Letter page, and error boxes written down instead of shown.

#include <string>
#include <vector>

#include "printer/fixed_pitch_metrics.h"
#include "printer/orl_printer.h"
#include "support/civil_date.h"

namespace cw::testing {

struct EngineTestRig {
  FixedPitchMetrics metrics;
  CivilDate today = CivilDate::FromYmd(2026, 11, 22);
  PageSetup page;  // US Letter portrait
  std::vector<std::string> errors;

  OrlPrinterEnvironment Environment() {
    OrlPrinterEnvironment environment;
    environment.metrics = &metrics;
    environment.measurePrinter = [this] { return page; };
    environment.today = [this] { return today; };
    environment.showError = [this](const std::string& text) { errors.push_back(text); };
    return environment;
  }
};

}  // namespace cw::testing
