#include "reports/report_request.h"

#include <gtest/gtest.h>

#include <optional>
#include <sstream>
#include <string>

#include "data/log_conversions.h"
#include "testing/expected_file.h"

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
  // 32767 is the most a 16-bit count holds: the list must still end there.
  for (const std::int16_t activeLines : {0, 1, 4, 32767}) {
    const std::vector<std::int16_t> lines = all.Chosen(activeLines);
    ASSERT_EQ(lines.size(), static_cast<std::size_t>(activeLines)) << activeLines;
    for (std::size_t k = 0; k < lines.size(); ++k) ASSERT_EQ(lines[k], static_cast<std::int16_t>(k + 1));
  }
  // Chosen lines are kept as they were picked, whatever the active count.
  LineChoice some;
  some.lines = {3, 1, 7};
  EXPECT_EQ(some.Chosen(2), (std::vector<std::int16_t>{3, 1, 7}));
}

// The cases of time-periods.txt: the period, today and the log's first date.
TEST(ReportRequestTest, TimePeriodsFromAnInjectedToday) {
  testing::ExpectTableMatches("reports/time-periods.txt", [](const std::string& input) {
    std::istringstream in(input);
    int period = 0;
    std::string today;
    std::string first;
    in >> period >> today >> first;
    const PeriodCaptions after = ApplyTimePeriod(static_cast<TimePeriod>(period), ParseLogDate(today),
                                                 first == "-" ? std::nullopt : std::optional(first),
                                                 PeriodCaptions{"01/01/2020", "02/02/2020"});
    return after.fromDate + " to " + after.toDate;
  });
}

}  // namespace
}  // namespace cw
