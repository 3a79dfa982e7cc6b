// The options of every cwreport subcommand, read by one parser: both value
// forms, the same ranges in refusals and help, dates and periods as people
// write them, typed text in the log's character set, and settings that do
// not stand in the way of options.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <string>

#include "core/data/log_lines.h"
#include "run_cwreport.h"

namespace cw::testing {
namespace {

namespace fs = std::filesystem;

// "JOSÉ GARCÍA" as the log holds it (Windows-1252) and as a UTF-8 shell types it.
const std::string kJoseWin1252 = "JOS\xC9 GARC\xCD" "A";
const std::string kJoseUtf8 = "JOS\xC3\x89 GARC\xC3\x8D" "A";

std::string JanuaryLog() {
  return Call().Date("01/05/2026").Name("SMITH JOHN").Number("(555) 123-4567").Line("1").Text() + "\r\n" +
         Call().Date("01/06/2026").Name(kJoseWin1252).Number("555-884-3016").Line("2").Text() + "\r\n" +
         Call().Date("01/07/2026").Name("MILLER SUSAN").Number("555-019-8841").Line("2").Text() + "\r\n";
}

class Options : public CliTest {
 protected:
  void SetUp() override {
    CliTest::SetUp();
    log_ = Write("CallLog.txt", JanuaryLog());
    settings_ = Write("settings.ini", "[Reports]\r\nCallType=InOut\r\n");
    Write("Ringtally.ini", "[Setup]\r\nActiveLines=2\r\n");
  }
  void TearDown() override {
    ::unsetenv("LC_ALL");
    CliTest::TearDown();
  }

  ProgramRun Report(const std::string& arguments) {
    return Cwreport("--settings " + Quote(settings_) + " --path " + Quote(folder_.string()) + " --log " +
                    Quote(log_) + " " + arguments);
  }

  std::string log_;
  std::string settings_;
};

TEST_F(Options, EveryValueMayFollowAnEqualsSignOrStandApart) {
  for (const std::string& form : {std::string("--log=") + "LOG", std::string("--log ") + "LOG"}) {
    std::string arguments = form;
    arguments.replace(arguments.find("LOG"), 3, Quote(log_));
    SCOPED_TRACE(arguments);
    const ProgramRun summary = Cwreport("log-summary --path=" + Quote(folder_.string()) + " " + arguments);
    EXPECT_EQ(summary.status, 0) << summary.err;
    EXPECT_NE(summary.out.find("Active lines: 2"), std::string::npos) << summary.out;
    const ProgramRun report = Cwreport("--settings=" + Quote(settings_) + " --report=name --search=smith --partial " +
                                       arguments + " --from=01/01/2026 --to 01/31/2026");
    EXPECT_EQ(report.status, 0) << report.err;
    EXPECT_NE(report.out.find("SMITH JOHN"), std::string::npos);
  }
  const std::string spool = Path("kept.spl");
  ASSERT_EQ(Report("--report history --from 01/01/2026 --to 01/31/2026 --spool " + Quote(spool)).status, 0);
  const ProgramRun exported = Cwreport("export --text=- --paper=a4 " + Quote(spool));
  EXPECT_EQ(exported.status, 0) << exported.err;
  EXPECT_NE(exported.out.find("LOGGED CALLS DETAIL REPORT"), std::string::npos);
}

TEST_F(Options, MistakesAreUsageErrorsThatNameTheOption) {
  struct Case {
    std::string arguments;
    std::string err;  // a part of the message
  };
  const Case cases[] = {
      {"--report abandoned --rings 99999999999 --from 01/01/2026 --to 01/31/2026",
       "--rings needs a whole number from 0 to 2147483647, not \"99999999999\""},
      {"--report abandoned --not-lasting 2147483648 --from 01/01/2026 --to 01/31/2026",
       "--not-lasting needs a whole number from 0 to 2147483647"},
      {"--report daily --from 01/01/2026 --png x --dpi 0", "--dpi needs a whole number from 10 to 600, not \"0\""},
      {"--report daily --print --copies 40000", "--copies needs a whole number from 1 to 32767"},
      {"--report line --lines 1,,2", "--lines needs line numbers such as 2, 1,3-5 or all, not \"1,,2\": an empty item"},
      {"--report line --lines 2,", "an empty item"},
      {"--report daily --from 13/01/2026", "--from needs a date as m/d/yyyy or yyyy-mm-dd, not \"13/01/2026\""},
      {"--report daily --to 02/30/2026", "--to: \"02/30/2026\" is no calendar day"},
      {"--report daily --from 2026-02-29", "--from: \"2026-02-29\" is no calendar day"},
      {"--report daily --from 1/5/26", "--from needs a date"},
      {"--report daily --from 01/31/2026 --to 2026-01-01", "--from 01/31/2026 comes after --to 01/01/2026"},
      {"--report daily --period week --to 01/03/2026 --today 01/08/2026",
       "the first day of --period, 01/04/2026 comes after --to 01/03/2026"},
      {"--report daily --period fortnight", "--period must be today, week, month, all, yesterday"},
      {"--report line --lines 3 --from 01/01/2026 --to 01/31/2026",
       "--lines names line 3, but the logging program has 2 active lines"},
      {"--report daily --report line", "--report given twice"},
      {"--report daily --chart=yes", "--chart takes no value"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.arguments);
    const ProgramRun run = Report(c.arguments);
    EXPECT_EQ(run.status, 2);
    EXPECT_TRUE(run.err.starts_with("cwreport: ")) << run.err;
    EXPECT_NE(run.err.find(c.err), std::string::npos) << run.err;
    EXPECT_EQ(run.out, "");
  }
  // The subcommands read their options the same way.
  const Case subcommands[] = {
      {"log-summary --edition Bogus", "--edition must be"},
      {"log-summary --today 02/30/2026", "--today: \"02/30/2026\" is no calendar day"},
      {"log-summary --log", "--log needs a value"},
      {"export x.spl --dpi=0 --png d", "--dpi needs a whole number from 10 to 600"},
      {"export x.spl y.spl", "one file only"},
      {"dump", "no spool file given"},
      {"help bogus", "no help for \"bogus\""},
  };
  for (const Case& c : subcommands) {
    SCOPED_TRACE(c.arguments);
    const ProgramRun run = Cwreport(c.arguments);
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(run.err.find(c.err), std::string::npos) << run.err;
  }
}

TEST_F(Options, HelpComesFromTheSameTable) {
  const ProgramRun help = Cwreport("help");
  EXPECT_EQ(help.status, 0);
  EXPECT_EQ(help.out, Cwreport("--help").out);
  // The range a refusal names is the one the help shows.
  EXPECT_NE(help.out.find("resolution of the page images, 10 to 600"), std::string::npos) << help.out;
  EXPECT_NE(help.out.find("--copies N"), std::string::npos);
  EXPECT_NE(help.out.find("N copies (1 to 32767)"), std::string::npos);
  EXPECT_NE(help.out.find("last-month"), std::string::npos);
  EXPECT_NE(help.out.find("--encoding E"), std::string::npos);
  EXPECT_NE(help.out.find("3 the document was produced"), std::string::npos);
  struct Case {
    const char* subcommand;
    const char* expected;
  };
  for (const Case& c : {Case{"log-summary", "--path DIR"}, Case{"dump", "usage: cwreport dump SPOOL"},
                        Case{"export", "--dpi N"}}) {
    SCOPED_TRACE(c.subcommand);
    const ProgramRun viaHelp = Cwreport(std::string("help ") + c.subcommand);
    EXPECT_EQ(viaHelp.status, 0);
    EXPECT_NE(viaHelp.out.find(c.expected), std::string::npos) << viaHelp.out;
    EXPECT_EQ(viaHelp.out, Cwreport(std::string(c.subcommand) + " --help").out);
  }
  // One text names the settings file everywhere.
  const std::string settingsHelp = "CONFIG is\n                        $XDG_CONFIG_HOME, or ~/.config without it";
  EXPECT_NE(help.out.find(settingsHelp), std::string::npos) << help.out;
  EXPECT_NE(Cwreport("help log-summary").out.find(settingsHelp), std::string::npos);
}

TEST_F(Options, DatesAsPeopleWriteThemAndClosedPeriods) {
  struct Case {
    std::string dates;
    std::string period;  // as the report's subtitle shows it
  };
  // 01/08/2026 is a Thursday: its week began on Sunday 01/04.
  const Case cases[] = {
      {"--from 1/5/2026 --to 2026-01-06", "Jan 05, 2026 to Jan 06, 2026"},
      {"--from 2026-1-5 --to 01/06/2026", "Jan 05, 2026 to Jan 06, 2026"},
      {"--period yesterday --today 01/08/2026", "Jan 07, 2026 to Jan 07, 2026"},
      {"--period last-week --today 01/08/2026", "Dec 28, 2025 to Jan 03, 2026"},
      {"--period last-week --today 01/04/2026", "Dec 28, 2025 to Jan 03, 2026"},
      {"--period last-week --today 01/03/2026", "Dec 21, 2025 to Dec 27, 2025"},
      {"--period last-month --today 03/31/2024", "Feb 01, 2024 to Feb 29, 2024"},
      {"--period last-month --today 01/08/2026", "Dec 01, 2025 to Dec 31, 2025"},
      {"--period last-year --today 2026-01-08", "Jan 01, 2025 to Dec 31, 2025"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.dates);
    const ProgramRun run = Report("--report history " + c.dates);
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find("Report Period: " + c.period), std::string::npos) << run.out.substr(0, 400);
  }
}

TEST_F(Options, TypedNamesAreReadInTheLogsCharacterSet) {
  struct Case {
    const char* locale;
    std::string search;
  };
  for (const Case& c : {Case{"C.UTF-8", kJoseUtf8}, Case{"C", kJoseUtf8}, Case{"C.UTF-8", kJoseWin1252},
                        Case{"C", kJoseWin1252}}) {
    SCOPED_TRACE(std::string(c.locale) + " " + c.search);
    ::setenv("LC_ALL", c.locale, 1);
    const ProgramRun run = Report("--report name --from 01/01/2026 --to 01/31/2026 --search " + Quote(c.search));
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find(kJoseWin1252), std::string::npos) << run.out;
    EXPECT_EQ(run.out.find("MILLER"), std::string::npos);
  }
  ::setenv("LC_ALL", "C.UTF-8", 1);
  const ProgramRun refused = Report("--report name --from 01/01/2026 --search 'JOS\xE2\x86\x92'");  // an arrow
  EXPECT_EQ(refused.status, 2);
  EXPECT_NE(refused.err.find("--search holds \"\xE2\x86\x92\", which the call log cannot hold"), std::string::npos)
      << refused.err;
}

TEST_F(Options, NumbersAsTheReportsPrintThemFindTheirCalls) {
  for (const char* number : {"5550198841", "555-019-8841", "(555) 019-8841"}) {
    SCOPED_TRACE(number);
    const ProgramRun history = Report(std::string("--history ") + Quote(number) + " --today 02/01/2026");
    ASSERT_EQ(history.status, 0) << history.err;
    EXPECT_NE(history.out.find("MILLER SUSAN"), std::string::npos) << history.out;
    EXPECT_EQ(history.out.find("SMITH JOHN"), std::string::npos);
  }
}

TEST_F(Options, OptionsWinOverBrokenSettingsWhichAreNamed) {
  Write("settings.ini", "[Reports]\r\nFromDate=banana\r\nToDate=01/31/2026\r\n");
  const ProgramRun overridden = Report("--report history --from 01/01/2026");
  EXPECT_EQ(overridden.status, 0) << overridden.err;
  EXPECT_EQ(overridden.err, "");
  const ProgramRun byPeriod = Report("--report history --period month --today 01/20/2026");
  EXPECT_EQ(byPeriod.status, 0) << byPeriod.err;

  const ProgramRun stored = Report("--report history");
  EXPECT_EQ(stored.status, 2);
  EXPECT_EQ(stored.err, "cwreport: the setting \"FromDate\" in " + settings_ +
                            " is \"banana\", not a date mm/dd/yyyy: give --from or correct the setting\n");

  // A settings "file" that cannot hold settings is said to be ignored.
  fs::create_directory(Path("folder.ini"));
  Write("garbage.ini", std::string("\x7F" "ELF\0\0\x01", 7));
  for (const std::string name : {"folder.ini", "garbage.ini"}) {
    SCOPED_TRACE(name);
    const std::string request =
        " --log " + Quote(log_) + " --path " + Quote(folder_.string()) + " --report history --from 01/01/2026";
    const ProgramRun run = Cwreport("--settings " + Quote(Path(name)) + request);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_TRUE(run.err.starts_with("cwreport: the settings file \"" + Path(name) + "\" ")) << run.err;
    ::setenv("CW_SETTINGS", Path(name).c_str(), 1);
    const ProgramRun viaEnvironment = Cwreport(request);
    ::unsetenv("CW_SETTINGS");
    EXPECT_EQ(viaEnvironment.err, run.err);
  }
}

}  // namespace
}  // namespace cw::testing
