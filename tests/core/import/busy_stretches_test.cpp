#include "import/busy_stretches.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "testing/expected_file.h"

namespace cw {
namespace {

const LocalSeconds kDay = LocalSecondsOf(CivilDate::FromYmd(2026, 11, 17), 0);

LogCall On(std::int32_t line, int from, int to) {
  LogCall call;
  call.line = line;
  call.start = kDay + from;
  call.end = kDay + to;
  return call;
}

TEST(BusyStretches, EveryLineCarryingACall) {
  testing::ExpectTableMatches("import/busy-stretches.txt", [](const std::string& row) {
    const std::size_t slash = row.find(" / ");
    std::vector<LogCall> calls;
    std::istringstream callText(row.substr(0, slash));
    for (int line = 0, from = 0, to = 0; callText >> line && callText.ignore() >> from && callText.ignore() >> to;) {
      calls.push_back(On(line, from, to));
    }
    std::vector<std::int32_t> lines;
    std::istringstream lineText(row.substr(slash + 3));
    for (std::int32_t line = 0; lineText >> line;) lines.push_back(line);
    std::string shown;
    for (const BusyStretch& stretch : AllLinesBusy(calls, lines)) {
      shown += (shown.empty() ? "" : " ") + std::to_string(stretch.start - kDay) + "-" + std::to_string(stretch.end - kDay);
    }
    return shown.empty() ? "none" : shown;
  });
}

TEST(BusyStretches, WrittenAsTheBusyLogHoldsThem) {
  EXPECT_EQ(LinesText(std::vector<std::int32_t>{2, 1, 3, 4}), "1-4");
  EXPECT_EQ(LinesText(std::vector<std::int32_t>{1, 3, 5, 6, 7}), "1,3,5-7");
  EXPECT_EQ(LinesText(std::vector<std::int32_t>{2}), "2");
  EXPECT_EQ(FormatBusyLine({kDay + 9 * 3600 + 30 * 60, kDay + 13 * 3600 + 4}, "1-2"),
            "11/17/2026,09:30:00 AM,01:00:04 PM,12604,1-2\r\n");
  EXPECT_EQ(FormatBusyLine({kDay + 5, kDay + 65}, "1"), "11/17/2026,12:00:05 AM,12:01:05 AM,60,1\r\n");
}

}  // namespace
}  // namespace cw
