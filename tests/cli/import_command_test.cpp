// cwreport import, run as the program itself on the sample CDR files of
// examples/pbx and on files made here.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "run_cwreport.h"

namespace cw::testing {
namespace {

const std::string kSamples = CW_SOURCE_DIR "/examples/pbx";

using Import = CliTest;

std::size_t Count(const std::string& text, const std::string& what) {
  std::size_t count = 0;
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + what.size())) ++count;
  return count;
}

// Every record of a log is whole: 102 characters and CR LF, none empty.
void ExpectWholeRecords(const std::string& log) {
  ASSERT_FALSE(log.empty());
  EXPECT_TRUE(log.ends_with("\r\n"));
  std::size_t start = 0;
  for (std::size_t end; (end = log.find("\r\n", start)) != std::string::npos; start = end + 2) {
    EXPECT_EQ(end - start, 102u) << log.substr(start, end - start);
  }
  EXPECT_EQ(start, log.size());
}

// An Asterisk cdr_csv row of 21 columns: an inbound call on SIP/telco.
std::string Row(const std::string& linkedid, const std::string& start = "2026-11-16 09:02:10",
                const std::string& channel = "SIP/telco-00000001") {
  return "\"\",5551234567,201,\"from-pstn\",\"\"\"Smith John\"\" <5551234567>\",\"" + channel +
         "\",\"SIP/201-00000002\",\"Dial\",\"SIP/201,30\",\"" + start + "\",\"" + start + "\",\"" + start +
         "\",60,60,\"ANSWERED\",\"DOCUMENTATION\",\"" + linkedid + "\",\"\",\"\",\"" + linkedid + "\",1\n";
}

const std::string kTrunk = " --trunk SIP/telco=1 --inbound-context from-pstn";

TEST_F(Import, EverySampleImportsWithItsSettingsAndAgainAddsNothing) {
  struct Case {
    std::string folder;
    std::string cdr;
    std::string format;
    std::size_t calls;
    std::size_t badRows;
  };
  const Case cases[] = {
      {"asterisk", "Master.csv", "asterisk", 14, 2},
      {"freeswitch", "Master.csv", "freeswitch", 5, 1},
      {"custom", "Master.csv", "asterisk-custom", 3, 1},
      {"csv", "cdr-export.csv", "csv", 3, 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.folder);
    const std::string log = Path(c.folder + ".txt");
    // The settings name the CDR file relative to the checkout; --cdr overrides it.
    const std::string arguments = "import --settings " + Quote(kSamples + "/" + c.folder + "/settings.ini") +
                                  " --cdr " + Quote(kSamples + "/" + c.folder + "/" + c.cdr) + " --log " +
                                  Quote(log);
    const ProgramRun first = Cwreport(arguments);
    EXPECT_EQ(first.status, 0) << first.err;
    EXPECT_NE(first.out.find("Format: " + c.format + " (as given)\n"), std::string::npos) << first.out;
    EXPECT_NE(first.out.find("Imported " + std::to_string(c.calls) + " calls"), std::string::npos) << first.out;
    EXPECT_EQ(Count(first.err, "(row skipped)"), c.badRows) << first.err;
    const std::string written = ReadFile(log);
    ExpectWholeRecords(written);
    EXPECT_EQ(Count(written, "\r\n"), c.calls);

    const ProgramRun again = Cwreport(arguments);
    EXPECT_EQ(again.status, 0) << again.err;
    EXPECT_NE(again.out.find("Imported 0 calls"), std::string::npos) << again.out;
    EXPECT_NE(again.out.find(std::to_string(c.calls) + " imported before"), std::string::npos) << again.out;
    EXPECT_EQ(ReadFile(log), written);

    // Without the format, the layout is found from the first rows.
    const std::string detectedLog = Path(c.folder + "-detected.txt");
    std::string sampleSettings = ReadFile(kSamples + "/" + c.folder + "/settings.ini");
    sampleSettings.erase(sampleSettings.find("Format="), sampleSettings.find('\n', sampleSettings.find("Format=")) -
                                                             sampleSettings.find("Format=") + 1);
    const std::string settings = Write(c.folder + ".ini", sampleSettings);
    if (c.format == "asterisk-custom") continue;  // a custom layout cannot be told, only named
    const ProgramRun detected = Cwreport("import --settings " + Quote(settings) + " --cdr " +
                                         Quote(kSamples + "/" + c.folder + "/" + c.cdr) + " --log " +
                                         Quote(detectedLog));
    EXPECT_EQ(detected.status, 0) << detected.err;
    EXPECT_NE(detected.out.find("Format: " + c.format + " (detected from the first rows)\n"), std::string::npos)
        << detected.out;
  }
}

TEST_F(Import, TheAsteriskSampleGivesTheseRecords) {
  const std::string log = Path("CallLog.txt");
  const ProgramRun run = Cwreport("import --settings " + Quote(kSamples + "/asterisk/settings.ini") + " --cdr " +
                                  Quote(kSamples + "/asterisk/Master.csv") + " --log " + Quote(log));
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err,
            "cwreport import: " + kSamples + "/asterisk/Master.csv line 15: no start time (row skipped)\n"
            "cwreport import: " + kSamples + "/asterisk/Master.csv line 16: 11 columns; an Asterisk row has 16, 17, 18 "
            "or 21 (row skipped)\n");
  EXPECT_EQ(ReadFile(log),
            "11/16/2026 09:02AM (555) 123-4567     Smith John                                 1 In  0:03:05 Yes   2\r\n"
            "11/16/2026 09:15AM (555) 019-8841     JOHNSON MARY                               2 In  0:01:35 Yes   2\r\n"
            "11/16/2026 09:40AM                    Anonymous                                  1 In  0:00:00 No    5\r\n"
            "11/16/2026 10:05AM (555) 245-6678     BROWN LINDA                                1 In  0:00:00 No    8\r\n"
            "11/16/2026 10:30AM (555) 911-5021                                                2 Out 0:03:03 Yes   3\r\n"
            "11/16/2026 11:00AM (555) 900-4432     Lefevre Celine                             1 In  0:02:45 Yes   2\r\n"
            "11/16/2026 11:30AM (555) 330-7712     Caf\xE9 M ller                                1 In  0:01:00 Yes   1\r\n"
            "11/16/2026 11:45AM (555) 602-1187     Nu\xF1" "ez Mar\xED" "a                                2 In  0:01:00 Yes   3\r\n"
            "11/16/2026 12:10PM (555) 455-9967     Bob \"Jr\" Moore                             1 In  0:00:30 Yes   2\r\n"
            "11/16/2026 02:00PM (555) 201-3300                                                1 Out 0:00:00 No    2\r\n"
            "11/16/2026 03:20PM (555) 788-2290     RODRIGUEZ ANA                              1 In  0:03:57 Yes   3\r\n"
            "11/17/2026 08:55AM (555) 677-1043     TAYLOR JAMES                               2 In  0:00:00 No    5\r\n"
            "11/17/2026 09:20AM (800) 555-0199     FIRST NATL BANK                            2 In  1:05:00 Yes   4\r\n"
            "11/17/2026 09:30AM (555) 884-3016     MILLER SUSAN                               1 In  0:03:54 Yes   1\r\n");
  // The reports read what was written.
  const ProgramRun report =
      Cwreport("--log " + Quote(log) + " --path " + Quote(CW_SOURCE_DIR "/examples/demo") +
               " --report history --period all --today 11/17/2026 --direction InOut --text -");
  EXPECT_EQ(report.status, 0) << report.err;
  EXPECT_NE(report.out.find("FIRST NATL BANK"), std::string::npos);
}

TEST_F(Import, WritesTheStretchesWhenEveryLineWasBusy) {
  const std::string arguments = "import --settings " + Quote(kSamples + "/asterisk/settings.ini") + " --cdr " +
                                Quote(kSamples + "/asterisk/Master.csv") + " --log " + Quote(Path("CallLog.txt")) +
                                " --busy --path " + Quote(folder_.string());
  const ProgramRun run = Cwreport(arguments);
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find("Added 1 all-lines-busy stretch to"), std::string::npos) << run.out;
  EXPECT_EQ(ReadFile(Path("BusyLines.log")), "11/17/2026,09:30:00 AM,09:34:00 AM,240,1-2\r\n");
  // Nothing new, nothing more.
  EXPECT_EQ(Cwreport(arguments).status, 0);
  EXPECT_EQ(ReadFile(Path("BusyLines.log")), "11/17/2026,09:30:00 AM,09:34:00 AM,240,1-2\r\n");
  const ProgramRun report = Cwreport("--log " + Quote(Path("CallLog.txt")) + " --path " + Quote(folder_.string()) +
                                     " --report busy --variant Detailed --period all --today 11/17/2026 --text -");
  EXPECT_EQ(report.status, 0) << report.err;
  EXPECT_NE(report.out.find("9:30AM"), std::string::npos) << report.out;

  EXPECT_EQ(Cwreport("import --settings /dev/null --cdr " + Quote(kSamples + "/asterisk/Master.csv") + " --log " +
                     Quote(Path("Other.txt")) + kTrunk + " --busy")
                .status,
            2);
}

TEST_F(Import, RefusesWhatCannotBeImportedRight) {
  const std::string cdr = Write("Master.csv", Row("1.1") + Row("1.2", "2026-11-16 09:05:00", "SIP/other-00000009"));
  const std::string log = Path("CallLog.txt");
  struct Case {
    std::string arguments;
    int status;
    std::string message;
  };
  const Case cases[] = {
      {"--cdr " + Quote(cdr) + " --log " + Quote(log) + kTrunk, 2,
       "line 2: the trunk channel SIP/other is not listed; add it with --trunk SIP/other=LINE"},
      {"--cdr " + Quote(cdr) + " --log " + Quote(log), 2, "no trunks are named"},
      {"--cdr " + Quote(Path("none.csv")) + " --log " + Quote(log) + kTrunk, 2, "cannot find the CDR file"},
      {"--log " + Quote(log) + kTrunk, 2, "no CDR file is named"},
      {"--cdr " + Quote(cdr) + kTrunk, 2, "no call log is named"},
      {"--cdr " + Quote(cdr) + " --log " + Quote(log) + " --trunk SIP/telco", 2, "is not CHANNEL-PREFIX=LINE"},
      {"--cdr " + Quote(cdr) + " --log " + Quote(log) + kTrunk + " --format cdr", 2, "--format: the format must be"},
      {"--cdr " + Quote(cdr) + " --log " + Quote(log) + kTrunk + " --ring-seconds 0", 2, "--ring-seconds needs"},
      {"--cdr " + Quote(cdr) + " --log " + Quote(log) + " --format freeswitch --trunk a=1 --trunk b=2", 2,
       "layout has no channel names"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.arguments);
    const std::string settings = Write("empty.ini", "");
    const ProgramRun run = Cwreport("import --settings " + Quote(settings) + " " + c.arguments);
    EXPECT_EQ(run.status, c.status);
    EXPECT_NE(run.err.find(c.message), std::string::npos) << run.err;
    EXPECT_FALSE(std::filesystem::exists(log));
  }
}

TEST_F(Import, ExitsWithOneWhenNoRowCouldBeRead) {
  const std::string cdr = Write("Master.csv", "\"x\",\"y\"\n\"z\"\n");
  const ProgramRun run =
      Cwreport("import --settings /dev/null --cdr " + Quote(cdr) + " --log " + Quote(Path("CallLog.txt")) +
               " --format asterisk" + kTrunk);
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(Count(run.err, "(row skipped)"), 2u) << run.err;
  EXPECT_NE(run.out.find("2 bad rows"), std::string::npos) << run.out;
}

TEST_F(Import, AnInterruptedImportIsCutBackAndDoneAgainOnce) {
  const std::string log = Path("CallLog.txt");
  const std::string cdr = Write("Master.csv", Row("1.1"));
  const std::string import = "import --settings /dev/null --cdr " + Quote(cdr) + " --log " + Quote(log) + kTrunk;
  ASSERT_EQ(Cwreport(import).status, 0);
  const std::string first = ReadFile(log);
  const std::string state = ReadFile(log + ".import");

  // The PBX adds a call; the import of it is killed half-way through its
  // record. Its journal says the batch was begun.
  Write("Master.csv", Row("1.1") + Row("1.2", "2026-11-16 09:05:00"));
  const std::string heading = "callwarden-import 1\n";
  ASSERT_TRUE(state.starts_with(heading));
  Write("CallLog.txt.import", heading + "pending 104 208\npending-call 4003982700 00000000000000aa\n" +
                                  state.substr(heading.size()));
  Write("CallLog.txt", first + "11/16/2026 09:05AM (555) 123-4");

  const ProgramRun run = Cwreport(import);
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.err.find("cut off 30 bytes that an interrupted import left at the end of"), std::string::npos)
      << run.err;
  const std::string repaired = ReadFile(log);
  ExpectWholeRecords(repaired);
  EXPECT_EQ(Count(repaired, "\r\n"), 2u);
  EXPECT_TRUE(repaired.starts_with(first));
  EXPECT_NE(repaired.find("11/16/2026 09:05AM (555) 123-4567"), std::string::npos);
}

TEST_F(Import, AddsNothingBeforeTheLogsLastDay) {
  const std::string log = Write("CallLog.txt",
                                "11/20/2026 09:00AM 555-000-0000       EARLIER PROGRAM                            1 In  "
                                "0:00:10 Yes   1\r\n");
  const std::string cdr = Write("Master.csv", Row("1.1") + Row("1.2", "2026-11-20 10:00:00"));
  const ProgramRun run =
      Cwreport("import --settings /dev/null --cdr " + Quote(cdr) + " --log " + Quote(log) + kTrunk);
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.err.find("1 call fell before the last day of the log"), std::string::npos) << run.err;
  EXPECT_EQ(Count(ReadFile(log), "\r\n"), 2u);
  EXPECT_NE(ReadFile(log).find("11/20/2026 10:00AM"), std::string::npos);
}

}  // namespace
}  // namespace cw::testing
