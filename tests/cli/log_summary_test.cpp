// cwreport log-summary, run as the program itself.
#include <gtest/gtest.h>

#include <string>

#include "core/data/log_lines.h"
#include "run_cwreport.h"

namespace cw::testing {
namespace {

using LogSummary = CliTest;

// The lines are counted in numeric order; the log is found through the
// settings, or refused (the transcript).
TEST_F(LogSummary, CountsEveryRecordByLineFindsTheLogOrRefuses) {
  Write("CallLog.txt", LogOf({Call().Date("03/01/2026").Line(" 10"), Call().Date("03/01/2026").Line("  2"),
                              Call().Date("03/02/2026").Line("2"), Call().Date("03/02/2026").Line("   "),
                              Call().Date("03/03/2026").Line("x")}));
  Write("settings.ini", "[Reports]\nLogs=" + Write("old.txt", LogOf({Call().Date("12/31/2025").Line("1")})) + "\n");
  ExpectTranscript("log-summary.txt");
}

}  // namespace
}  // namespace cw::testing
