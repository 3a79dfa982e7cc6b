// cwreport report requests, run as the program itself: exit status, the
// messages on stderr, the outputs and what is left of them after an error.
// The requests refused are with the usage errors (Options).
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "core/data/log_lines.h"
#include "run_cwreport.h"

namespace cw::testing {
namespace {

namespace fs = std::filesystem;

// Three calls in January 2026 by two callers; one unanswered.
std::string JanuaryLog() {
  return LogOf({Call().Date("01/05/2026").Name("SMITH JOHN").Number("(555) 123-4567"),
                Call().Date("01/06/2026").Name("MILLER SUSAN").Number("555-884-3016").Answered("No").Rings("4"),
                Call().Date("01/07/2026").Name("Smith John").Number("555-123-4567").Direction("Out")});
}

class ReportCommand : public ReportTest {
 protected:
  void SetUp() override {
    ReportTest::SetUp();
    UseLog(JanuaryLog());
  }
};

// The filter options reach the request, which stores them (which keys, and
// the figures of the report, are Dispatch's and DetailReports').
TEST_F(ReportCommand, AnAbandonedCallsRequestStoresItsFilter) {
  const ProgramRun run = Report("--report abandoned --direction In --unanswered --rings 4" + kJanuary);
  ExpectRun(run, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_THAT(run.out, HasSubstr("MILLER SUSAN"));
  for (const char* line : {"Select Seconds=0", "Abandoned Rings=4", "Select Rings=1", "Select Answered=1"}) {
    EXPECT_THAT(ReadFile(settings_), HasSubstr(line));
  }
}

// The messages are in the transcript, whose list of files shows that no
// output was left.
TEST_F(ReportCommand, ALogDateThatCannotBeBuiltIsAnErrorAndLeavesNoOutput) {
  std::string log = JanuaryLog();
  log.replace(log.find("01/06/2026"), 10, "01/xx/2026");
  log.replace(log.find("MILLER SUSAN"), 12, "MILLER \x1b[2J\a");
  Write("CallLog.txt", log);
  ExpectRun(Report("--report history" + kJanuary + "--pdf " + Quote(Path("new.pdf")) + " --text " +
                   Quote(Path("new.txt")) + " --spool " + Quote(Path("new.spl"))),
            1, "\nProcedure Name: Print_Detail.\n");
  ExpectTranscript("bad-log-date.txt", "CW_SETTINGS=settings.ini");
}

TEST_F(ReportCommand, OutputsOfOneDocumentAgree) {
  const ProgramRun run = Report("--report history" + kJanuary + "--spool " + Quote(Path("kept.spl")) + " --pdf " +
                                Quote(Path("report.pdf")) + " --text " + Quote(Path("report.txt")) + " --png " +
                                Quote(Path("pages")));
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, "");  // outputs were named: nothing goes to stdout

  // The spool outlives the report and replays into the same text (its
  // records are the spool writer's).
  const ProgramRun exported = Cwreport("export " + Quote(Path("kept.spl")) + " --text -");
  ExpectRun(exported, 0);
  EXPECT_EQ(exported.out, ReadFile(Path("report.txt")));

  // The PDF holds the same report.
  int status = -1;
  const std::string fromPdf = RunShell("pdftotext -layout " + Quote(Path("report.pdf")) + " -", &status);
  ASSERT_EQ(status, 0);
  for (const char* expected : {"LOGGED CALLS DETAIL REPORT", "Jan 01, 2026 to Jan 31, 2026", "MILLER SUSAN"}) {
    EXPECT_THAT(fromPdf, HasSubstr(expected));
    EXPECT_THAT(exported.out, HasSubstr(expected));
  }
  EXPECT_TRUE(fs::exists(Path("pages/page-0001.png")));
  EXPECT_FALSE(fs::exists(Path("pages/page-0002.png")));
}

}  // namespace
}  // namespace cw::testing
