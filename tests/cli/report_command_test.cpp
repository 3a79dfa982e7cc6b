// cwreport report requests, run as the program itself: exit status, the exact
// messages on stderr, the outputs and what is left of them after an error.
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
  return Call().Date("01/05/2026").Name("SMITH JOHN").Number("(555) 123-4567").Text() + "\r\n" +
         Call().Date("01/06/2026").Name("MILLER SUSAN").Number("555-884-3016").Answered("No").Rings("4").Text() +
         "\r\n" + Call().Date("01/07/2026").Name("Smith John").Number("555-123-4567").Direction("Out").Text() + "\r\n";
}

class ReportCommand : public CliTest {
 protected:
  void SetUp() override {
    CliTest::SetUp();
    log_ = Write("CallLog.txt", JanuaryLog());
    settings_ = Write("settings.ini", "[Reports]\r\nCallType=InOut\r\n");
  }

  // The data options every request here shares; the arguments follow.
  ProgramRun Report(const std::string& arguments) {
    return Cwreport("--settings " + Quote(settings_) + " --path " + Quote(folder_.string()) + " --log " +
                    Quote(log_) + " " + arguments);
  }

  std::string log_;
  std::string settings_;
};

constexpr const char* kJanuary = "--from 01/01/2026 --to 01/31/2026";

TEST_F(ReportCommand, RefusedRequestsExitWithTwoAndTheMessageOfTheForm) {
  struct Case {
    std::string arguments;
    std::string err;
  };
  const std::string kMissingLog =
      "Cannot Find the Call Logs File: If you are using a shared log then please make sure the file exists and "
      "reset the path to the proper log folder.\n";
  // The log is looked for first: a missing From is not mentioned. The box is
  // the form's; the line after it says where the log was looked for and how
  // to name it.
  const std::string kGiveLog = "): give it with --log FILE, and the logging program's folder with --path DIR\n";
  const Case logCases[] = {
      {" --log " + Quote(Path("missing.txt")),
       kMissingLog + "cwreport: there is no call log at \"" + Path("missing.txt") + "\" (from --log" + kGiveLog},
      {"", kMissingLog + "cwreport: no call log is named (no --log, and the setting \"Logs\" in " + settings_ +
               " is empty" + kGiveLog},
  };
  for (const Case& c : logCases) {
    SCOPED_TRACE(c.arguments);
    const ProgramRun run = Cwreport("--settings " + Quote(settings_) + " --report daily" + c.arguments);
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.err, c.err);
  }
  const std::string kNoFrom = "Missing Start Date\ncwreport: give the first day with --from DATE, or a --period\n";
  const std::string kNoFilter =
      "cwreport: choose the calls with --unanswered, --rings N and/or --not-lasting SECONDS\n";
  const Case cases[] = {
      // Nothing in the settings and no --from.
      {"--report daily --to 01/31/2026", kNoFrom},
      {"--report daily --from '  ' --to 01/31/2026", kNoFrom},
      {"--report name " + std::string(kJanuary),
       "Missing Search Criteria: Please Enter a Name\n"
       "cwreport: give the name or number to look for with --search TEXT\n"},
      {"--report number --search ' ' " + std::string(kJanuary),
       "Missing Search Criteria: Please Enter a Number\n"
       "cwreport: give the name or number to look for with --search TEXT\n"},
      {"--report abandoned " + std::string(kJanuary),
       "Missing Filter: Please Choose One or More Options\n" + kNoFilter},
      {"--report abandoned --not-lasting 12a " + std::string(kJanuary),
       "Missing Filter (Time In Seconds): Please Enter a Valid Numberic Time In Seconds\n"
       "cwreport: --not-lasting needs a whole number of seconds\n"},
      {"--report abandoned --unanswered --rings '' " + std::string(kJanuary),
       "Missing Filter (Rings): Please Enter a Valid Numberic Ring Count\n"
       "cwreport: --rings needs a whole number of rings\n"},
      {"--report line " + std::string(kJanuary),
       "Callwarden Reports: No line # was selected.\nChoose a line # or check the \"All Lines\" option.\n"
       "cwreport: choose lines with --lines LIST, or every line with --lines all\n"},
  };
  const std::string settingsBefore = ReadFile(settings_);
  for (const Case& c : cases) {
    SCOPED_TRACE(c.arguments);
    const ProgramRun run = Report(c.arguments + " --pdf " + Quote(Path("refused.pdf")));
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.err, c.err);
    EXPECT_EQ(run.out, "");
    EXPECT_FALSE(fs::exists(Path("refused.pdf")));
  }
  // A refused request changes no setting.
  EXPECT_EQ(ReadFile(settings_), settingsBefore);
}

TEST_F(ReportCommand, AnAbandonedCallsRequestStoresItsFilter) {
  const ProgramRun run = Report("--report abandoned --direction In --unanswered --rings 4 " + std::string(kJanuary));
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  EXPECT_NE(run.out.find("MILLER SUSAN"), std::string::npos);
  EXPECT_EQ(run.out.find("SMITH JOHN"), std::string::npos);
  EXPECT_NE(run.out.find("1 of 2  (50%)"), std::string::npos) << run.out;
  const std::string settings = ReadFile(settings_);
  for (const char* line : {"Select Seconds=0", "Abandoned Seconds=", "Abandoned Rings=4", "Select Rings=1",
                           "Select Answered=1"}) {
    EXPECT_NE(settings.find(line), std::string::npos) << line << " in\n" << settings;
  }
}

TEST_F(ReportCommand, ALogDateThatCannotBeBuiltIsAnErrorAndLeavesNoOutput) {
  std::string log = JanuaryLog();
  log.replace(log.find("01/06/2026"), 10, "01/xx/2026");
  // The box echoes the record; its control bytes must not reach a terminal.
  log.replace(log.find("MILLER SUSAN"), 12, "MILLER \x1b[2J\a");
  Write("CallLog.txt", log);
  Write("kept.txt", "an earlier report\r\n");
  struct Case {
    std::string report;
    std::string box;  // where the error box names the procedure
  };
  for (const Case& c : {Case{"daily", "in Form fReport procedure Process_DailySummary."},
                        Case{"line-usage", "in Form fReport procedure Process_LineUsage."},
                        Case{"history", "Procedure Name: Print_Detail."}}) {
    SCOPED_TRACE(c.report);
    const ProgramRun run = Report("--report " + c.report + " " + kJanuary + " --pdf " + Quote(Path("new.pdf")) +
                                  " --text " + Quote(Path("new.txt")) + " --spool " + Quote(Path("new.spl")));
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.err.starts_with("Error: ")) << run.err;
    EXPECT_NE(run.err.find("13"), std::string::npos) << run.err;
    EXPECT_NE(run.err.find(c.box), std::string::npos) << run.err;
    EXPECT_EQ(run.err.find('\x1b'), std::string::npos) << run.err;
    EXPECT_EQ(run.err.find('\a'), std::string::npos) << run.err;
    if (c.report != "history") {
      EXPECT_NE(run.err.find("MILLER \\x1b[2J\\x07"), std::string::npos) << run.err;
    }
    for (const char* name : {"new.pdf", "new.txt", "new.spl"}) EXPECT_FALSE(fs::exists(Path(name))) << name;
  }
  EXPECT_EQ(ReadFile(Path("kept.txt")), "an earlier report\r\n");
  // An empty To is not checked: it fails in the request's conversion.
  const ProgramRun run = Report("--report history --from 01/01/2026 --to ''");
  EXPECT_EQ(run.status, 1);
  EXPECT_TRUE(run.err.starts_with("Error: Error 13 Type mismatch\nin Form fReport procedure cmdPrintQuery_Click.\n"
                                  "The error Occurred at line: "))
      << run.err;
}

TEST_F(ReportCommand, AnOutputThatCannotBeWrittenTakesTheOthersWithIt) {
  const ProgramRun run = Report("--report history " + std::string(kJanuary) + " --text " + Quote(Path("first.txt")) +
                                " --pdf " + Quote(Path("no-such-folder/report.pdf")));
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.err.find("Print_Detail"), std::string::npos) << run.err;
  EXPECT_FALSE(fs::exists(Path("first.txt")));
  EXPECT_FALSE(fs::exists(Path("no-such-folder")));
}

TEST_F(ReportCommand, OutputsOfOneDocumentAgree) {
  const ProgramRun run = Report("--report history " + std::string(kJanuary) + " --spool " + Quote(Path("kept.spl")) +
                                " --pdf " + Quote(Path("report.pdf")) + " --text " + Quote(Path("report.txt")) +
                                " --png " + Quote(Path("pages")));
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, "");  // outputs were named: nothing goes to stdout

  // The spool outlives the report, whole records only.
  const auto spoolSize = fs::file_size(Path("kept.spl"));
  EXPECT_GT(spoolSize, 422u);
  EXPECT_EQ(spoolSize % 422, 0u);
  // The kept spool replays into the same text.
  const ProgramRun exported = Cwreport("export " + Quote(Path("kept.spl")) + " --text -");
  EXPECT_EQ(exported.status, 0) << exported.err;
  const std::string text = ReadFile(Path("report.txt"));
  EXPECT_EQ(exported.out, text);
  EXPECT_NE(text.find("LOGGED CALLS DETAIL REPORT"), std::string::npos);
  EXPECT_NE(text.find("Report Period: Jan 01, 2026 to Jan 31, 2026"), std::string::npos);

  // The PDF holds the same report.
  const std::string pdfText = Path("report.txt.pdf");
  ASSERT_EQ(std::system(("pdftotext -layout " + Quote(Path("report.pdf")) + " " + Quote(pdfText)).c_str()), 0);
  const std::string fromPdf = ReadFile(pdfText);
  for (const char* expected : {"LOGGED CALLS DETAIL REPORT", "Report Period: Jan 01, 2026 to Jan 31, 2026",
                               "SMITH JOHN", "MILLER SUSAN", "Smith John", "Total Calls", "Page: 1"}) {
    EXPECT_NE(fromPdf.find(expected), std::string::npos) << expected << " in\n" << fromPdf;
  }
  EXPECT_TRUE(fs::exists(Path("pages/page-0001.png")));
  EXPECT_FALSE(fs::exists(Path("pages/page-0002.png")));
}

TEST_F(ReportCommand, TextGoesToStandardOutputByDefault) {
  const ProgramRun run = Report("--report name --search 'smith john' " + std::string(kJanuary));
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  EXPECT_NE(run.out.find("CALLER DETAIL REPORT"), std::string::npos);
  // An exact name match ignores case: both spellings, not the other caller.
  EXPECT_NE(run.out.find("SMITH JOHN"), std::string::npos);
  EXPECT_NE(run.out.find("Smith John"), std::string::npos);
  EXPECT_EQ(run.out.find("MILLER"), std::string::npos);
}

TEST_F(ReportCommand, HistoryOfANumberAndPeriodsFromTheClockGiven) {
  // The history runs over the whole log up to the day given as today.
  ProgramRun run = Report("--history 5551234567 --today 02/01/2026");
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find("CALLER DETAIL REPORT"), std::string::npos);
  EXPECT_NE(run.out.find("Report Period: Jan 05, 2026 to Feb 01, 2026"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("(555) 123-4567"), std::string::npos);
  EXPECT_NE(run.out.find("555-123-4567"), std::string::npos);
  EXPECT_EQ(run.out.find("555-884-3016"), std::string::npos);

  struct Case {
    std::string period;
    std::string subtitle;
  };
  for (const Case& c : {Case{"all", "Jan 05, 2026 to Jan 08, 2026"}, Case{"month", "Jan 01, 2026 to Jan 08, 2026"},
                        Case{"today", "Jan 08, 2026 to Jan 08, 2026"},
                        Case{"week", "Jan 04, 2026 to Jan 31, 2026"}}) {
    SCOPED_TRACE(c.period);
    // A week runs from Sunday to the To date, which --to may give.
    const std::string to = c.period == "week" ? " --to 01/31/2026" : "";
    run = Report("--report history --today 01/08/2026 --period " + c.period + to);
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find("Report Period: " + c.subtitle), std::string::npos) << run.out.substr(0, 400);
  }
}

TEST_F(ReportCommand, UsageErrorsAndHelp) {
  for (const char* arguments : {"--report 10 --from 01/01/2026", "--report daily --bogus", "--from 01/01/2026",
                                "--report daily --today 02/30/2026", "--report line --lines 1,x",
                                "--history 555 --report daily", "--report daily --period all --from 01/01/2026",
                                "--report busy --variant Weekly", "--report daily --dpi 150"}) {
    SCOPED_TRACE(arguments);
    const ProgramRun run = Report(arguments);
    EXPECT_EQ(run.status, 2);
    EXPECT_TRUE(run.err.starts_with("cwreport: ")) << run.err;
    EXPECT_EQ(run.out, "");
  }
  const ProgramRun help = Cwreport("--help");
  EXPECT_EQ(help.status, 0);
  EXPECT_EQ(help.err, "");
  for (const char* option : {"--edition", "--settings", "--log", "--path", "--report", "--from", "--to", "--period",
                             "--direction", "--variant", "--search", "--partial", "--chart", "--not-lasting",
                             "--rings", "--unanswered", "--lines", "--window", "--dtmf", "--history", "--today",
                             "--paper", "--csv", "--csv-separator",
                             "--text", "--pdf", "--png", "--spool", "--print", "--copies", "--from-page", "--to-page",
                             "log-summary", "dump", "export", "Exit status"}) {
    EXPECT_NE(help.out.find(option), std::string::npos) << option;
  }
}

}  // namespace
}  // namespace cw::testing
