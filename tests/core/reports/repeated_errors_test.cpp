// Errors that come back on every record or every row: each is shown once in a
// request. A report that met bad records still ends in its document (with
// the outcome saying so); a document that cannot go on ends the report at
// once. Also what the reports tell besides errors: records dated with no
// calendar date, and calls on lines that are not counted.
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <limits>
#include <string>
#include <vector>

#include "analysis_rig.h"
#include "core/data/log_lines.h"

namespace cw::testing {
namespace {

constexpr std::int16_t kLastPage = std::numeric_limits<std::int16_t>::max();

// A call on line 0 and a time that is no time, forty times each before a
// good call: the box shown once and the report of the good call are in the
// expected file.
TEST(RepeatedErrors, ABuilderShowsItsErrorOnceAndTheDocumentIsStillProduced) {
  for (const auto& [kind, bad, expected] :
       {std::tuple{kind::kLineUsageStatistics, Call().Date("11/02/2026").Line("0"), "repeated-line-0.txt"},
        {kind::kDailyCallStatistics, Call().Date("11/02/2026").Time("25:00"), "repeated-time.txt"}}) {
    SCOPED_TRACE(expected);
    std::vector<Call> log(40, bad);
    log.push_back(Call().Date("11/03/2026").Line("2"));
    AnalysisRig rig(LogOf(log), kind, 2);
    rig.ExpectRun("11/01/2026", "11/30/2026", expected);
    EXPECT_EQ(rig.form->RepeatedErrors(), 39);

    // The next request shows its errors again, and a clean one is clean.
    EXPECT_EQ(rig.Run("11/01/2026", "11/30/2026"), RequestOutcome::kProducedWithErrors);
    EXPECT_EQ(rig.host.messages.size(), 1u);
    EXPECT_EQ(rig.Run("11/03/2026", "11/30/2026"), RequestOutcome::kProduced);
    EXPECT_EQ(rig.host.messages.size(), 1u);
    EXPECT_EQ(rig.form->RepeatedErrors(), 0);
  }
}

// A host that moves the new document close to the last page a 16-bit page
// number can reach, as a report of some years of calls would.
class NearTheLastPageHost : public SpoolCapturingHost {
 public:
  void SetBusy(bool on) override {
    if (on && form != nullptr && form->Document() != nullptr) form->Document()->SetPage(startPage);
    SpoolCapturingHost::SetBusy(on);
  }
  ReportForm* form = nullptr;
  std::int16_t startPage = 1;
};

TEST(RepeatedErrors, AListingPastThePageLimitShowsOneBoxAndEndsThere) {
  // More calls than one progress interval: a walk that went on after the
  // failure would report its progress.
  const std::vector<Call> log(5000, Call().Date("11/02/2026"));
  BasicRig<NearTheLastPageHost> rig(LogOf(log), kind::kCallHistory);
  NearTheLastPageHost& host = rig.host;
  ReportForm& form = *rig.form;
  host.startPage = kLastPage - 3;
  rig.ExpectRun("11/01/2026", "11/30/2026", "page-limit.txt");
  EXPECT_EQ(host.lastProgress, 0);
  EXPECT_EQ(form.Document()->Page(), kLastPage);
  EXPECT_TRUE(form.Document()->Failed());
  EXPECT_FALSE(host.busy);
  // Nothing of the document is left in the temporary folder.
  EXPECT_FALSE(std::filesystem::exists(form.Document()->PrintFile()));

  // A listing that fits before the limit is produced as ever.
  host.startPage = kLastPage - 200;
  EXPECT_EQ(form.cmdPrintQuery_Click(), RequestOutcome::kProduced);
  EXPECT_TRUE(host.messages.empty());
  ASSERT_EQ(host.previews.size(), 1u);
  EXPECT_LT(host.previews[0].totalPages, kLastPage);
}

TEST(RolledDates, ARecordDatedWithNoCalendarDateIsNamedAndTheReportEndsWithErrors) {
  // 10/32 is read as 11/01, after the period: the listing ends there, as
  // the reading rule has it, and the user is told why.
  AnalysisRig rig(LogOf({Call().Date("10/30/2026").Name("FIRST"), Call().Date("10/32/2026").Name("ROLLED"),
                         Call().Date("10/31/2026").Name("AFTER")}),
                  kind::kCallHistory);
  rig.ExpectRun("10/01/2026", "10/31/2026", "rolled-listing.txt");

  // Within the period the record is counted at the day it rolls to; only
  // the first such record of a request is named.
  AnalysisRig daily(LogOf({Call().Date("02/30/2026"), Call().Date("02/31/2026"), Call().Date("03/02/2026")}),
                    kind::kDailyCallStatistics);
  daily.ExpectRun("02/01/2026", "03/31/2026", "rolled-daily.txt");
}

TEST(LineUsage, CallsOnLinesAboveTheActiveCountAreLeftOutWithANote) {
  std::vector<Call> log;
  for (const char* line : {"1", "2", "3", "4", "4", "2"}) log.push_back(Call().Date("11/02/2026").Line(line));
  // With every line active there is nothing to say (LineUsage.PerLineSecondsAndCallsOverAMonth).
  AnalysisRig two(LogOf(log), kind::kLineUsageStatistics, 2);
  two.ExpectRun("11/01/2026", "11/30/2026", "line-usage-note.txt");
}

}  // namespace
}  // namespace cw::testing
