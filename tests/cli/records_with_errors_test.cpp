// cwreport over logs with bad records: the document is written as the
// desktop would show it, each error is told once on standard error, and the
// exit status 3 says the report finished with errors.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "core/data/log_lines.h"
#include "run_cwreport.h"

namespace cw::testing {
namespace {

namespace fs = std::filesystem;

class RecordsWithErrors : public ReportTest {
 protected:
  ProgramRun Report(const std::vector<Call>& calls, const std::string& arguments) {
    UseLog(LogOf(calls));
    return ReportTest::Report(arguments + " --text " + Quote(Path("report.txt")));
  }
};

TEST_F(RecordsWithErrors, BadRecordsAreToldOnceAndTheDocumentIsWrittenWithStatusThree) {
  struct Case {
    std::string report;
    Call bad;
    std::string box;  // the first lines of the one error box
  };
  const Case cases[] = {
      {"line-usage", Call().Date("01/05/2026").Line("0"),
       "Error: Error 9 Subscript out of range\nin Form fReport procedure Build_LineMatrix.\n"},
      {"daily", Call().Date("01/05/2026").Time("25:00"),
       "Error: Error 13 Type mismatch\nin Form fReport procedure Build_CallMatrix.\n"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.report);
    std::vector<Call> calls(25, c.bad);
    calls.push_back(Call().Date("01/06/2026").Line("1"));
    const ProgramRun run = Report(calls, "--report " + c.report + kJanuary);
    EXPECT_EQ(run.status, 3) << run.err;
    EXPECT_TRUE(run.err.starts_with(c.box)) << run.err;
    EXPECT_EQ(Count(run.err, "Error: "), 1u) << run.err;
    EXPECT_TRUE(run.err.ends_with("\ncwreport: 24 more errors like those above were not shown\n")) << run.err;
    EXPECT_NE(ReadFile(Path("report.txt")).find("Total"), std::string::npos);
    fs::remove(Path("report.txt"));
  }
}

TEST_F(RecordsWithErrors, ADateWithNoCalendarDayIsAWarningWithStatusThree) {
  const std::vector<Call> calls{Call().Date("10/30/2026").Name("FIRST"), Call().Date("10/32/2026").Name("ROLLED"),
                                Call().Date("10/31/2026").Name("AFTER")};
  const ProgramRun run = Report(calls, "--report history --from 10/01/2026 --to 10/31/2026");
  EXPECT_EQ(run.status, 3) << run.err;
  EXPECT_EQ(run.err, "Warning: Record 2 of " + Path("CallLog.txt") +
                         " is dated 10/32/2026, which is not a calendar date; it was read as 11/01/2026.\n");
  const std::string text = ReadFile(Path("report.txt"));
  EXPECT_THAT(text, HasSubstr("FIRST"));
  EXPECT_THAT(text, Not(HasSubstr("AFTER")));
}

TEST_F(RecordsWithErrors, CallsOnLinesThatAreNotActiveAreANoteOnly) {
  // No logging-program INI in the folder: two active lines.
  const std::vector<Call> calls{Call().Date("01/05/2026").Line("1"), Call().Date("01/05/2026").Line("3"),
                                Call().Date("01/05/2026").Line("4")};
  const ProgramRun run = Report(calls, "--report line-usage" + kJanuary);
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err,
            "Note: 2 calls on lines above line 2 are not counted: the logging program's settings give 2 active "
            "lines.\n");
  EXPECT_TRUE(fs::exists(Path("report.txt")));
}

}  // namespace
}  // namespace cw::testing
