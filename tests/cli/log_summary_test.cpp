// cwreport log-summary, run as the program itself.
#include <gtest/gtest.h>

#include <string>

#include "run_cwreport.h"

namespace cw::testing {
namespace {

using LogSummary = CliTest;

// A record with the line number in columns 80-82.
std::string Record(const std::string& date, const std::string& line) {
  std::string text = date + " 09:05AM 555-123-4567       SMITH JOHN";
  text.resize(79, ' ');
  text += line;
  text.resize(82, ' ');
  return text + " In  0:01:02 Yes   2\r\n";
}

TEST_F(LogSummary, CountsEveryRecordByLineInNumericOrder) {
  const std::string log = Write("CallLog.txt", Record("03/01/2026", " 10") + Record("03/01/2026", "  2") +
                                                   Record("03/02/2026", "2") + Record("03/02/2026", "   ") +
                                                   Record("03/03/2026", "x"));
  const ProgramRun run = Cwreport("log-summary --log " + Quote(log));
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, "Call log: " + log +
                         "\nOldest date: 03/01/2026\nCalls per line:\n  Line 2: 2\n  Line 10: 1\n"
                         "  Line (blank): 1\n  Line x: 1\nTotal calls: 5\n");
}

TEST_F(LogSummary, FindsTheLogThroughTheSettingsOrRefuses) {
  const std::string log = Write("CallLog.txt", Record("12/31/2025", "1"));
  const std::string settings = Write("settings.ini", "[Reports]\nLogs=" + log + "\n");
  const ProgramRun viaSettings =
      Cwreport("log-summary --settings " + Quote(settings) + " --edition 'Callwarden MultiLine'");
  EXPECT_EQ(viaSettings.status, 0) << viaSettings.err;
  EXPECT_THAT(viaSettings.out, HasSubstr("Oldest date: 12/31/2025\n"));

  const ProgramRun missing = Cwreport("log-summary --log " + Quote(Path("none.txt")));
  EXPECT_EQ(missing.status, 2);
  EXPECT_THAT(missing.err, HasSubstr("Cannot Find the Call Logs File: " + Path("none.txt") + " (from --log)"));

  EXPECT_EQ(Cwreport("log-summary --log").status, 2);
  EXPECT_EQ(Cwreport("log-summary --today 13/45/x --log " + Quote(log)).status, 2);
}

}  // namespace
}  // namespace cw::testing
