// The call-back report: which missed calls were returned, by which call and
// after how long, through the matching rules and through the whole report.

#include <gtest/gtest.h>

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

struct Outcome {
  CallBackWait wait;
  int returnedBy;  // index of the returning call in the log; -1: none
  friend bool operator==(const Outcome&, const Outcome&) = default;
};

std::ostream& operator<<(std::ostream& out, const Outcome& o) {
  return out << CallBackWaitText(o.wait) << " by " << o.returnedBy;
}

TEST(CallBackMatching, FindsTheFirstLaterCallToTheSameNumberWithinTheWindow) {
  using W = CallBackWait;
  const std::string day = "11/02/2026";
  const std::string next = "11/03/2026";
  struct Case {
    std::string what;
    std::vector<Call> log;
    std::int32_t windowDays;
    std::string periodEnd;  // calls after it can only return missed ones
    std::vector<Outcome> expected;
  };
  const std::vector<Case> cases{
      {"the same number written differently",
       {Missed(day, "9:00AM", "(555) 123-4567"), Out(day, "9:30AM", "555-123-4567")}, 7, day,
       {{W::kWithinHour, 1}}},
      {"a call back before the missed call is no call back",
       {Out(day, "8:00AM", "5551234567"), Missed(day, "9:00AM", "5551234567")}, 7, day,
       {{W::kNever, -1}}},
      {"another number does not return it",
       {Missed(day, "9:00AM", "5551234567"), Out(day, "9:10AM", "5551234568")}, 7, day,
       {{W::kNever, -1}}},
      {"an hour exactly is within the hour; a minute more the same day",
       {Missed(day, "9:00AM", "111"), Missed(day, "9:00AM", "222"), Out(day, "10:00AM", "111"),
        Out(day, "10:01AM", "222")},
       7, day, {{W::kWithinHour, 2}, {W::kSameDay, 3}}},
      {"the window's edge: a day exactly is in, a minute more is out",
       {Missed(day, "9:00AM", "111"), Missed(day, "9:00AM", "222"), Out(next, "9:00AM", "111"),
        Out(next, "9:01AM", "222")},
       1, next, {{W::kLater, 2}, {W::kNever, -1}}},
      {"the first later call decides, even when it comes too late",
       {Missed(day, "9:00AM", "111"), Out("11/05/2026", "9:00AM", "111"), Out("11/05/2026", "9:30AM", "111")},
       1, "11/05/2026", {{W::kNever, -1}}},
      {"one call back returns every missed call of its number, each with its own wait",
       {Missed(day, "9:00AM", "111"), Missed(day, "10:00AM", "(111)"), Out(day, "10:30AM", "1-1-1")}, 7, day,
       {{W::kSameDay, 2}, {W::kWithinHour, 2}}},
      {"an answered call from the number returns it; an unanswered one does not",
       {Missed(day, "9:00AM", "111"), Missed(day, "11:00AM", "111"), Answered(day, "2:00PM", "111")}, 7, day,
       {{W::kSameDay, 2}, {W::kSameDay, 2}}},
      {"a call missed on the period's last day is returned the next day",
       {Missed(day, "5:00PM", "111"), Out(next, "10:00AM", "111"), Missed(next, "11:00AM", "333")}, 7, day,
       {{W::kLater, 1}}},
      {"a number without digits cannot be returned",
       {Missed(day, "9:00AM", "PRIVATE"), Out(day, "9:05AM", "PRIVATE")}, 7, day, {{W::kNever, -1}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    std::vector<std::string> lines;
    for (const Call& call : c.log) lines.push_back(call.Text());
    CallBackMatcher matcher(c.windowDays, AbandonedFilter{});
    const CivilDate end = ParseLogDate(c.periodEnd);
    for (const std::string& line : lines) {
      const CallRecord record(line);
      const CivilDate date = ParseLogDate(record.Date());
      matcher.Add(record, date, date <= end);
    }
    std::vector<Outcome> found;
    for (const MissedCall& missed : matcher.Missed()) {
      int by = -1;
      for (std::size_t i = 0; i < lines.size(); ++i) {
        if (missed.returnedBy.Text().data() == lines[i].data()) by = static_cast<int>(i);
      }
      found.push_back({missed.Wait(), by});
    }
    EXPECT_EQ(found, c.expected);
  }
}

TEST(CallBackMatching, TheAbandonedFilterMakesShortAnsweredCallsMissed) {
  AbandonedFilter filter;
  filter.notLasting = true;
  filter.seconds = "10";
  const CallBackMatcher matcher(7, filter);
  const std::string shortCall = Answered("11/02/2026", "9:00AM", "111").Duration("0:00:05").Text();
  const std::string longCall = Answered("11/02/2026", "9:00AM", "111").Duration("0:00:10").Text();
  const std::string outCall = Out("11/02/2026", "9:00AM", "111").Duration("0:00:01").Text();
  EXPECT_TRUE(matcher.IsMissed(CallRecord(shortCall)));
  EXPECT_FALSE(matcher.IsMissed(CallRecord(longCall)));
  EXPECT_FALSE(matcher.IsMissed(CallRecord(outCall)));
  // With no box checked only unanswered calls are missed.
  const CallBackMatcher plain(7, AbandonedFilter{});
  EXPECT_FALSE(plain.IsMissed(CallRecord(shortCall)));
}

struct CallBackRig : testing::AnalysisRig {
  explicit CallBackRig(const std::vector<Call>& calls) : testing::AnalysisRig(testing::LogOf(calls), kind::kCallBacks) {}
};

TEST(CallBackReport, ListsEachMissedCallWithItsCallBackAndSumsUpTheWaits) {
  CallBackRig rig({Missed("11/02/2026", "9:00AM", "(555) 100-0001").Name("QUICK"),
                   Missed("11/02/2026", "9:10AM", "5551000002").Name("SLOW"),
                   Missed("11/02/2026", "9:20AM", "5551000003").Name("NOBODY"),
                   Out("11/02/2026", "9:30AM", "555-100-0001"),
                   Out("11/02/2026", "3:00PM", "555-100-0002"),
                   Missed("11/03/2026", "4:00PM", "5551000004").Name("LAST DAY"),
                   Answered("11/04/2026", "8:00AM", "5551000004"),
                   Missed("11/04/2026", "9:00AM", "5551000005").Name("AFTER THE PERIOD")});
  rig.form->Request().callBackWindowDays = 7;
  ASSERT_EQ(rig.Run("11/02/2026", "11/03/2026", true), RequestOutcome::kProduced);
  // One wait of each kind, and the call back of the last day's call after
  // the period; the call missed after the period is not listed.
  testing::ExpectMatchesFixture(rig.Text(), "callback-report.txt");
  ASSERT_EQ(rig.host.charts.size(), 1u);
  EXPECT_EQ(rig.host.charts[0].values, (std::vector<std::int32_t>{1, 1, 1, 1}));
  EXPECT_EQ(rig.host.charts[0].colLabels, (std::vector<std::string>{"1 Hour", "Same Day", "Later", "Never"}));
}

TEST(CallBackReport, RefusesAnAbandonedThresholdThatIsNoNumber) {
  CallBackRig rig({Missed("11/02/2026", "9:00AM", "111")});
  rig.form->Request().abandoned.ringCount = true;
  rig.form->Request().abandoned.rings = "x";
  EXPECT_EQ(rig.Run("11/02/2026", "11/02/2026"), RequestOutcome::kRefused);
  ASSERT_EQ(rig.host.messages.size(), 1u);
  EXPECT_EQ(rig.host.messages[0].title, "Missing Filter (Rings)");
}

}  // namespace
}  // namespace cw
