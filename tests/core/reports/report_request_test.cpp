#include "reports/report_request.h"

#include <gtest/gtest.h>

namespace cw {
namespace {

TEST(ReportRequestTest, TabCaptionsFollowTheEdition) {
  EXPECT_EQ(TabCaption(4, kEditionRingtally), "Unanswered Calls");
  EXPECT_EQ(TabCaption(4, kEditionCallwarden), "Abandoned Calls");
  EXPECT_EQ(TabCaption(6, kEditionRingtally), "By Tel Number");
  EXPECT_EQ(TabCaption(0, kEditionRingtally), "");
  EXPECT_EQ(TabCaption(9, kEditionRingtally), "Call Backs");
  EXPECT_EQ(TabCaption(10, kEditionRingtally), "");
}

TEST(ReportRequestTest, LineChoiceListsEveryActiveLineUpToTheLargest) {
  LineChoice all;
  all.allLines = true;
  struct Case {
    std::int16_t activeLines;
    std::size_t count;
  };
  // 32767 is the most a 16-bit count holds: the list must still end there.
  for (const Case& c : {Case{0, 0}, Case{1, 1}, Case{4, 4}, Case{32767, 32767}}) {
    const std::vector<std::int16_t> lines = all.Chosen(c.activeLines);
    ASSERT_EQ(lines.size(), c.count) << c.activeLines;
    for (std::size_t k = 0; k < lines.size(); ++k) ASSERT_EQ(lines[k], static_cast<std::int16_t>(k + 1));
  }
  // Chosen lines are kept as they were picked, whatever the active count.
  LineChoice some;
  some.lines = {3, 1, 7};
  EXPECT_EQ(some.Chosen(2), (std::vector<std::int16_t>{3, 1, 7}));
}

TEST(ReportRequestTest, TimePeriodsFromAnInjectedToday) {
  const PeriodCaptions before{"01/01/2020", "02/02/2020"};
  const CivilDate wednesday = CivilDate::FromYmd(2026, 11, 18);
  const CivilDate sunday = CivilDate::FromYmd(2026, 11, 22);

  PeriodCaptions today = ApplyTimePeriod(TimePeriod::kToday, wednesday, std::nullopt, before);
  EXPECT_EQ(today.fromDate, "11/18/2026");
  EXPECT_EQ(today.toDate, "11/18/2026");

  PeriodCaptions week = ApplyTimePeriod(TimePeriod::kCurrentWeek, wednesday, std::nullopt, before);
  EXPECT_EQ(week.fromDate, "11/15/2026");
  EXPECT_EQ(week.toDate, "02/02/2020") << "the week leaves To alone";
  EXPECT_EQ(ApplyTimePeriod(TimePeriod::kCurrentWeek, sunday, std::nullopt, before).fromDate,
            "11/22/2026")
      << "on a Sunday the week starts that same day";

  PeriodCaptions month = ApplyTimePeriod(TimePeriod::kCurrentMonth, CivilDate::FromYmd(2024, 3, 1),
                                         std::nullopt, before);
  EXPECT_EQ(month.fromDate, "03/01/2024");
  EXPECT_EQ(month.toDate, "03/01/2024");

  PeriodCaptions all =
      ApplyTimePeriod(TimePeriod::kAllLogEntries, sunday, std::string("08/01/2026"), before);
  EXPECT_EQ(all.fromDate, "08/01/2026");
  EXPECT_EQ(all.toDate, "11/22/2026");
  PeriodCaptions noLog = ApplyTimePeriod(TimePeriod::kAllLogEntries, sunday, std::nullopt, before);
  EXPECT_EQ(noLog.fromDate, "01/01/2020") << "without a log From stays as it was";
  EXPECT_EQ(noLog.toDate, "11/22/2026");
}

}  // namespace
}  // namespace cw
