// The options of every cwreport subcommand, read by one parser: both value
// forms, usage errors, the same ranges in refusals and help, dates and
// periods as people write them, typed text in the log's character set, and
// settings that do not stand in the way of options.
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

class Options : public ReportTest {
 protected:
  void SetUp() override {
    ReportTest::SetUp();
    UseLog(LogOf({Call().Date("01/05/2026").Name("SMITH JOHN").Number("(555) 123-4567").Line("1"),
                  Call().Date("01/06/2026").Name(kJoseWin1252).Number("555-884-3016").Line("2"),
                  Call().Date("01/07/2026").Name("MILLER SUSAN").Number("555-019-8841").Line("2")}));
    Write("Ringtally.ini", "[Setup]\r\nActiveLines=2\r\n");
  }
  void TearDown() override {
    ::unsetenv("LC_ALL");
    ReportTest::TearDown();
  }
};

TEST_F(Options, EveryValueMayFollowAnEqualsSignOrStandApart) {
  for (const std::string& log : {"--log=" + Quote(log_), "--log " + Quote(log_)}) {
    SCOPED_TRACE(log);
    const ProgramRun summary = Cwreport("log-summary --path=" + Quote(folder_.string()) + " " + log);
    ExpectRun(summary, 0);
    EXPECT_THAT(summary.out, HasSubstr("Active lines: 2"));
    const ProgramRun report = Cwreport("--settings=" + Quote(settings_) + " --report=name --search=smith --partial " +
                                       log + " --from=01/01/2026 --to 01/31/2026");
    ExpectRun(report, 0);
    EXPECT_THAT(report.out, HasSubstr("SMITH JOHN"));
  }
  ASSERT_EQ(Report("--report history" + kJanuary + "--spool " + Quote(Path("kept.spl"))).status, 0);
  const ProgramRun exported = Cwreport("export --text=- --paper=a4 " + Quote(Path("kept.spl")));
  ExpectRun(exported, 0);
  EXPECT_THAT(exported.out, HasSubstr("LOGGED CALLS DETAIL REPORT"));
}

// Table: a usage error (status 2, nothing on standard output) and a part of
// its message; subcommands are run as given, requests on the test's log.
// Usage errors come before any file is read: the spools named need not be.
TEST_F(Options, MistakesAreUsageErrorsThatNameTheOption) {
  const std::string print = "--report history" + kJanuary + "--print ";
  const std::pair<std::string, std::string> requests[] = {
      {"--report abandoned --rings 99999999999" + kJanuary,
       "--rings needs a whole number from 0 to 2147483647, not \"99999999999\""},
      {"--report abandoned --not-lasting 2147483648" + kJanuary,
       "--not-lasting needs a whole number from 0 to 2147483647"},
      {"--report daily --from 01/01/2026 --png x --dpi 0", "--dpi needs a whole number from 10 to 600, not \"0\""},
      {"--report daily --print --copies 40000", "--copies needs a whole number from 1 to 32767"},
      {"--report line --lines 1,,2", "--lines needs line numbers such as 2, 1,3-5 or all, not \"1,,2\": an empty item"},
      {"--report line --lines 2,", "an empty item"}, {"--report line --lines 1,x", "--lines"},
      {"--report daily --from 13/01/2026", "--from needs a date as m/d/yyyy or yyyy-mm-dd, not \"13/01/2026\""},
      {"--report daily --to 02/30/2026", "--to: \"02/30/2026\" is no calendar day"},
      {"--report daily --from 2026-02-29", "--from: \"2026-02-29\" is no calendar day"},
      {"--report daily --from 1/5/26", "--from needs a date"}, {"--report daily --today 02/30/2026", "--today"},
      {"--report daily --from 01/31/2026 --to 2026-01-01", "--from 01/31/2026 comes after --to 01/01/2026"},
      {"--report daily --period week --to 01/03/2026 --today 01/08/2026",
       "the first day of --period, 01/04/2026 comes after --to 01/03/2026"},
      {"--report daily --period fortnight", "--period must be today, week, month, all, yesterday"},
      {"--report daily --period all --from 01/01/2026", "--period"},
      {"--report line --lines 3" + kJanuary, "--lines names line 3, but the logging program has 2 active lines"},
      {"--report daily --report line", "--report given twice"},
      {"--report 10 --from 01/01/2026", "--report"}, {"--from 01/01/2026", ""},
      {"--history 555 --report daily", ""}, {"--report busy --variant Weekly", "--variant"},
      {"--report daily --bogus", "--bogus"}, {"--report daily --dpi 150", "--dpi"},
      {"--report daily --chart=yes", "--chart takes no value"},
      {print + "--copies 0", "cwreport: --copies needs a whole number from 1 to 32767, not \"0\"\n"},
      {print + "--copies -2", "cwreport: --copies needs a whole number from 1 to 32767, not \"-2\"\n"},
      {print + "--from-page 0", "cwreport: --from-page needs a whole number from 1 to 32767, not \"0\"\n"},
      {print + "--to-page 2x", "cwreport: --to-page needs a whole number from 1 to 32767, not \"2x\"\n"},
      {print + "--from-page 3 --to-page 2", "cwreport: --from-page 3 comes after --to-page 2\n"},
      {print + "--copies", "cwreport: --copies needs a value\n"},
      {"--report history" + kJanuary + "--copies 2 --pdf " + Quote(Path("report.pdf")),
       "cwreport: --copies, --from-page and --to-page apply to --print only\n"},
      {print + "A --print B", "cwreport: --print given twice\n"},
  };
  for (const auto& [arguments, err] : requests) {
    SCOPED_TRACE(arguments);
    const ProgramRun run = Report(arguments);
    ExpectRun(run, 2, err);
    EXPECT_TRUE(run.err.starts_with("cwreport: ")) << run.err;
    EXPECT_EQ(run.out, "");
  }
  EXPECT_FALSE(fs::exists(Path("report.pdf")));
  const std::pair<std::string, std::string> subcommands[] = {
      {"log-summary --edition Bogus", "--edition must be"},
      {"log-summary --today 02/30/2026", "--today: \"02/30/2026\" is no calendar day"},
      {"log-summary --log", "--log needs a value"}, {"dump", "no spool file given"},
      {"dump a b", "one file only"}, {"dump --verbose a", "unknown option --verbose"},
      {"export", "no spool file given"}, {"export x.spl y.spl", "one file only"},
      {"export x.spl --pdf", "--pdf needs a value"}, {"export x.spl --png p --dpi 72x", "not \"72x\""},
      {"export x.spl --dpi=0 --png d", "--dpi needs a whole number from 10 to 600"},
      {"export x.spl --png p --dpi 5000", "--dpi needs a whole number from 10 to 600, not \"5000\""},
      {"export x.spl --dpi 72", "--dpi applies to --png only"}, {"export x.spl --paper legal", "--paper must be"},
      {"export x.spl --pdf a.pdf --pdf b.pdf", "--pdf given twice"}, {"export x.spl --colour", "--colour"},
      {"help bogus", "no help for \"bogus\""},
  };
  for (const auto& [arguments, err] : subcommands) {
    SCOPED_TRACE(arguments);
    const ProgramRun run = Cwreport(arguments);
    ExpectRun(run, 2, err);
    EXPECT_EQ(run.out, "");
  }
}

TEST_F(Options, HelpComesFromTheSameTable) {
  const ProgramRun help = Cwreport("help");
  ExpectRun(help, 0);
  EXPECT_EQ(help.err, "");
  EXPECT_EQ(help.out, Cwreport("--help").out);
  // The range a refusal names is the one the help shows; one text names the
  // settings file everywhere.
  const std::string settingsHelp = "CONFIG is\n                        $XDG_CONFIG_HOME, or ~/.config without it";
  for (const std::string& part : {std::string("resolution of the page images, 10 to 600"),
                                 std::string("N copies (1 to 32767)"),
                                 std::string("\n3 the document was produced, but records raised errors"), settingsHelp}) {
    EXPECT_THAT(help.out, HasSubstr(part));
  }
  EXPECT_THAT(Cwreport("help log-summary").out, HasSubstr(settingsHelp));
  // What each subcommand's help says is compared with the manual (ManPage).
  for (const std::string subcommand : {"log-summary", "dump", "export"}) {
    const ProgramRun viaHelp = Cwreport("help " + subcommand);
    ExpectRun(viaHelp, 0);
    EXPECT_THAT(viaHelp.out, HasSubstr("usage: cwreport " + subcommand));
    EXPECT_EQ(viaHelp.out, Cwreport(subcommand + " --help").out) << subcommand;
  }
}

// Table: the dates as typed, and the period the report's subtitle shows.
// 01/08/2026 is a Thursday: its week began on Sunday 01/04. The log runs from
// 01/05 to 01/07.
TEST_F(Options, DatesAsPeopleWriteThemAndPeriodsFromTheDayGiven) {
  for (const auto& [dates, period] : {
           std::pair{"--from 1/5/2026 --to 2026-01-06", "Jan 05, 2026 to Jan 06, 2026"},
           std::pair{"--from 2026-1-5 --to 01/06/2026", "Jan 05, 2026 to Jan 06, 2026"},
           std::pair{"--period all --today 01/08/2026", "Jan 05, 2026 to Jan 08, 2026"},
           std::pair{"--period month --today 01/08/2026", "Jan 01, 2026 to Jan 08, 2026"},
           std::pair{"--period today --today 01/08/2026", "Jan 08, 2026 to Jan 08, 2026"},
           std::pair{"--period week --to 01/31/2026 --today 01/08/2026", "Jan 04, 2026 to Jan 31, 2026"},
           std::pair{"--period yesterday --today 01/08/2026", "Jan 07, 2026 to Jan 07, 2026"},
           std::pair{"--period last-week --today 01/08/2026", "Dec 28, 2025 to Jan 03, 2026"},
           std::pair{"--period last-week --today 01/04/2026", "Dec 28, 2025 to Jan 03, 2026"},
           std::pair{"--period last-week --today 01/03/2026", "Dec 21, 2025 to Dec 27, 2025"},
           std::pair{"--period last-month --today 03/31/2024", "Feb 01, 2024 to Feb 29, 2024"},
           std::pair{"--period last-month --today 01/08/2026", "Dec 01, 2025 to Dec 31, 2025"},
           std::pair{"--period last-year --today 2026-01-08", "Jan 01, 2025 to Dec 31, 2025"},
       }) {
    SCOPED_TRACE(dates);
    const ProgramRun run = Report(std::string("--report history ") + dates);
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(run.out.substr(0, 400), HasSubstr(std::string("Report Period: ") + period));
  }
  // The history of a number runs over the whole log up to the day given as
  // today; the number may be written as the reports print it.
  const ProgramRun history = Report("--history '(555) 019-8841' --today 02/01/2026");
  ExpectRun(history, 0);
  EXPECT_THAT(history.out, HasSubstr("Report Period: Jan 05, 2026 to Feb 01, 2026"));
  EXPECT_THAT(history.out, HasSubstr("MILLER SUSAN"));
  EXPECT_THAT(history.out, Not(HasSubstr("SMITH JOHN")));
}

TEST_F(Options, TypedNamesAreReadInTheLogsCharacterSet) {
  for (const char* locale : {"C.UTF-8", "C"}) {
    for (const std::string& search : {kJoseUtf8, kJoseWin1252}) {
      SCOPED_TRACE(std::string(locale) + " " + search);
      ::setenv("LC_ALL", locale, 1);
      const ProgramRun run = Report("--report name" + kJanuary + "--search " + Quote(search));
      ASSERT_EQ(run.status, 0) << run.err;
      EXPECT_THAT(run.out, HasSubstr(kJoseWin1252));
      EXPECT_THAT(run.out, Not(HasSubstr("MILLER")));
    }
  }
  ::setenv("LC_ALL", "C.UTF-8", 1);
  ExpectRun(Report("--report name --from 01/01/2026 --search 'JOS\xE2\x86\x92'"), 2,  // an arrow
            "--search holds \"\xE2\x86\x92\", which the call log cannot hold");
}

TEST_F(Options, OptionsWinOverBrokenSettingsWhichAreNamed) {
  Write("settings.ini", "[Reports]\r\nFromDate=banana\r\nToDate=01/31/2026\r\n");
  const ProgramRun overridden = Report("--report history --from 01/01/2026");
  ExpectRun(overridden, 0);
  EXPECT_EQ(overridden.err, "");
  ExpectRun(Report("--report history --period month --today 01/20/2026"), 0);
  const ProgramRun stored = Report("--report history");
  EXPECT_EQ(stored.status, 2);
  EXPECT_EQ(stored.err, "cwreport: the setting \"FromDate\" in " + settings_ +
                            " is \"banana\", not a date mm/dd/yyyy: give --from or correct the setting\n");

  // A settings file that cannot hold settings is said to be ignored, named
  // by --settings or by CW_SETTINGS (a folder is OutputSafety's).
  const std::string garbage = Write("garbage.ini", std::string("\x7F" "ELF\0\0\x01", 7));
  const std::string request =
      " --log " + Quote(log_) + " --path " + Quote(folder_.string()) + " --report history --from 01/01/2026";
  const ProgramRun run = Cwreport("--settings " + Quote(garbage) + request);
  ExpectRun(run, 0);
  EXPECT_TRUE(run.err.starts_with("cwreport: the settings file \"" + garbage + "\" ")) << run.err;
  ::setenv("CW_SETTINGS", garbage.c_str(), 1);
  EXPECT_EQ(Cwreport(request).err, run.err);
  ::unsetenv("CW_SETTINGS");
}

}  // namespace
}  // namespace cw::testing
