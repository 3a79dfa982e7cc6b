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

// The lines are counted in numeric order; the log is found through the
// settings, or refused (the transcript).
TEST_F(LogSummary, CountsEveryRecordByLineFindsTheLogOrRefuses) {
  Write("CallLog.txt", Record("03/01/2026", " 10") + Record("03/01/2026", "  2") + Record("03/02/2026", "2") +
                           Record("03/02/2026", "   ") + Record("03/03/2026", "x"));
  Write("settings.ini", "[Reports]\nLogs=" + Write("old.txt", Record("12/31/2025", "1")) + "\n");
  ExpectTranscript("log-summary.txt");
}

}  // namespace
}  // namespace cw::testing
