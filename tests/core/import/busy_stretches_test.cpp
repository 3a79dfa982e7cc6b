#include "import/busy_stretches.h"

#include <gtest/gtest.h>

#include <vector>

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
  struct Case {
    std::string name;
    std::vector<LogCall> calls;
    std::vector<std::int32_t> lines;
    std::vector<std::pair<int, int>> stretches;
  };
  const Case cases[] = {
      {"overlap", {On(1, 100, 400), On(2, 200, 300)}, {1, 2}, {{200, 300}}},
      {"one line free throughout", {On(1, 100, 400), On(1, 200, 300)}, {1, 2}, {}},
      {"a line handed from call to call stays busy", {On(1, 0, 100), On(1, 100, 200), On(2, 50, 150)}, {1, 2},
       {{50, 150}}},
      {"touching calls on different lines do not overlap", {On(1, 0, 100), On(2, 100, 200)}, {1, 2}, {}},
      {"two stretches", {On(1, 0, 1000), On(2, 100, 200), On(2, 300, 350)}, {1, 2}, {{100, 200}, {300, 350}}},
      {"a line not counted", {On(1, 0, 100), On(7, 0, 100)}, {1}, {{0, 100}}},
      {"no lines", {On(1, 0, 100)}, {}, {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    std::vector<std::pair<int, int>> found;
    for (const BusyStretch& stretch : AllLinesBusy(c.calls, c.lines)) {
      found.emplace_back(static_cast<int>(stretch.start - kDay), static_cast<int>(stretch.end - kDay));
    }
    EXPECT_EQ(found, c.stretches);
  }
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
