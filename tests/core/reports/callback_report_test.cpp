// The call-back report: which missed calls were returned, by which call and
// after how long, through the matching rules and through the whole report.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "analysis_rig.h"
#include "core/data/log_lines.h"
#include "data/log_conversions.h"
#include "reports/callback_rules.h"

namespace cw {
namespace {

using testing::Call;

// An unanswered inbound call, and the two kinds of call that return one.
Call Missed(std::string date, std::string time, std::string number) {
  return Call().Date(std::move(date)).Time(std::move(time)).Number(std::move(number)).Direction("In")
      .Answered("No").Duration("0:00:00");
}
Call Out(std::string date, std::string time, std::string number) {
  return Call().Date(std::move(date)).Time(std::move(time)).Number(std::move(number)).Direction("Out").Line("2");
}
Call Answered(std::string date, std::string time, std::string number) {
  return Call().Date(std::move(date)).Time(std::move(time)).Number(std::move(number)).Direction("In").Line("3");
}

// The cases of callback-matching.txt: the calls of a log and the abandoned
// filter, and what became of each missed call.
TEST(CallBackMatching, FindsTheFirstLaterCallToTheSameNumberWithinTheWindow) {
  for (const std::vector<std::string>& c : testing::TableCases("reports/callback-matching.txt")) {
    SCOPED_TRACE(c[0]);
    std::vector<std::string> lines;
    for (const std::string& call : testing::Split(c[4], ';')) {
      const std::vector<std::string> f = testing::Split(call, ',');
      Call made = f[0] == "missed" ? Missed(f[1], f[2], f[3]) : f[0] == "out" ? Out(f[1], f[2], f[3]) : Answered(f[1], f[2], f[3]);
      lines.push_back((f.size() > 4 ? made.Duration(f[4]) : made).Text());
    }
    AbandonedFilter filter;
    filter.notLasting = !c[3].empty();
    filter.seconds = c[3];
    CallBackMatcher matcher(std::stoi(c[1]), filter);
    const CivilDate end = ParseLogDate(c[2]);
    for (const std::string& line : lines) {
      const CallRecord record(line);
      const CivilDate date = ParseLogDate(record.Date());
      matcher.Add(record, date, date <= end);
    }
    std::vector<std::string> found;
    for (const MissedCall& missed : matcher.Missed()) {
      const auto by = std::ranges::find_if(lines, [&](const std::string& line) { return missed.returnedBy.Text().data() == line.data(); });
      found.push_back(std::string(CallBackWaitText(missed.Wait())) + " by " + (by == lines.end() ? "none" : std::to_string(by - lines.begin())));
    }
    EXPECT_EQ(found, testing::Split(c[5], ';'));
  }
}

TEST(CallBackReport, ListsEachMissedCallWithItsCallBackAndSumsUpTheWaits) {
  testing::AnalysisRig rig(testing::LogOf({Missed("11/02/2026", "9:00AM", "(555) 100-0001").Name("QUICK"),
                                           Missed("11/02/2026", "9:10AM", "5551000002").Name("SLOW"),
                                           Missed("11/02/2026", "9:20AM", "5551000003").Name("NOBODY"),
                                           Out("11/02/2026", "9:30AM", "555-100-0001"),
                                           Out("11/02/2026", "3:00PM", "555-100-0002"),
                                           Missed("11/03/2026", "4:00PM", "5551000004").Name("LAST DAY"),
                                           Answered("11/04/2026", "8:00AM", "5551000004"),
                                           Missed("11/04/2026", "9:00AM", "5551000005").Name("AFTER THE PERIOD")}),
                           kind::kCallBacks);
  rig.form->Request().callBackWindowDays = 7;
  ASSERT_EQ(rig.Run("11/02/2026", "11/03/2026", true), RequestOutcome::kProduced);
  // One wait of each kind, and the call back of the last day's call after
  // the period; the call missed after the period is not listed.
  testing::ExpectMatchesFixture(rig.Text(), "callback-report.txt");
  ASSERT_EQ(rig.host.charts.size(), 1u);
  EXPECT_EQ(rig.host.charts[0].values, (std::vector<std::int32_t>{1, 1, 1, 1}));
  EXPECT_EQ(rig.host.charts[0].colLabels, (std::vector<std::string>{"1 Hour", "Same Day", "Later", "Never"}));
}

}  // namespace
}  // namespace cw
