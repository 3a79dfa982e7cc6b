// The options of every cwreport subcommand, read by one parser: both value
// forms, usage errors and the requests the form refuses, the same ranges in
// refusals and help, dates and periods as people write them, typed text in
// the log's character set, and settings that do not stand in the way of
// options.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "core/data/log_lines.h"
#include "run_cwreport.h"
#include "testing/case_table.h"

namespace cw::testing {
namespace {

namespace fs = std::filesystem;

// "JOSÉ GARCÍA" as the log holds it (Windows-1252) and as a UTF-8 shell types it.
const std::string kJoseWin1252 = "JOS\xC9 GARC\xCD" "A";
const std::string kJoseUtf8 = "JOS\xC3\x89 GARC\xC3\x8D" "A";

class Options : public ReportTest {
 protected:
  void SetUp() override {
    ReportTest::SetUp();
    UseLog(LogOf({Call().Date("01/05/2026").Name("SMITH JOHN").Number("(555) 123-4567").Line("1"),
                  Call().Date("01/06/2026").Name(kJoseWin1252).Number("555-884-3016").Line("2"),
                  Call().Date("01/07/2026").Name("MILLER SUSAN").Number("555-019-8841").Line("2")}));
    Write("Ringtally.ini", "[Setup]\r\nActiveLines=2\r\n");
  }
};

// Each form of every kind of option, in value-forms.txt.
TEST_F(Options, EveryValueMayFollowAnEqualsSignOrStandApart) { ExpectTranscript("value-forms.txt"); }

// The exact messages are in the transcript. A refused request changes no
// setting and leaves no output behind.
TEST_F(Options, MistakesAndRefusedRequestsAreStatusTwoAndSaySo) {
  const std::string settingsBefore = ReadFile(settings_);
  ExpectTranscript("refusals.txt", "CW_SETTINGS=settings.ini");
  EXPECT_EQ(ReadFile(settings_), settingsBefore);
}

TEST_F(Options, HelpComesFromTheSameTable) {
  ExpectTranscript("help.txt");
  for (const std::string subcommand : {"", " log-summary", " dump", " export", " import"}) {
    EXPECT_EQ(Cwreport("help" + subcommand).out, Cwreport(subcommand + " --help").out) << subcommand;
  }
}

TEST_F(Options, DatesAsPeopleWriteThemAndPeriodsFromTheDayGiven) {
  for (const std::vector<std::string>& c : TableCases("cli/periods.txt")) {
    SCOPED_TRACE(c[0]);
    const ProgramRun run = Report("--report history " + c[0]);
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(run.out.substr(0, 400), HasSubstr("Report Period: " + c[1]));
  }
  // The history of a number runs over the whole log up to the day given as
  // today; the number may be written as the reports print it (which calls
  // are the number's is GetHistory's).
  const ProgramRun history = Report("--history '(555) 019-8841' --today 02/01/2026");
  ExpectRun(history, 0);
  EXPECT_THAT(history.out, HasSubstr("Report Period: Jan 05, 2026 to Feb 01, 2026"));
  EXPECT_THAT(history.out, HasSubstr("MILLER SUSAN"));
}

// A text that the call log cannot hold is refused (refusals.txt).
TEST_F(Options, TypedNamesAreReadInTheLogsCharacterSet) {
  for (const std::string locale : {"C.UTF-8", "C"}) {
    for (const std::string& search : {kJoseUtf8, kJoseWin1252}) {
      SCOPED_TRACE(locale + " " + search);
      const ProgramRun run = RunCwreport(DataOptions() + "--report name" + kJanuary + "--search " + Quote(search),
                                         Path("stderr.txt"), "LC_ALL=" + locale + " ");
      ASSERT_EQ(run.status, 0) << run.err;
      EXPECT_THAT(run.out, HasSubstr(kJoseWin1252));
      EXPECT_THAT(run.out, Not(HasSubstr("MILLER")));
    }
  }
}

// The messages are in the transcript.
TEST_F(Options, OptionsWinOverBrokenSettingsWhichAreNamed) {
  Write("broken.ini", "[Reports]\r\nFromDate=banana\r\nToDate=01/31/2026\r\nLogs=" + log_ + "\r\n");
  Write("garbage.ini", std::string("\x7F" "ELF\0\0\x01", 7));
  ExpectTranscript("broken-settings.txt");
}

}  // namespace
}  // namespace cw::testing
