// cwreport import, run as the program itself on the sample CDR files of
// examples/pbx and on files made here. How rows become calls is the core
// import tests' (CdrImport, ImportRules, LogRecordWriter); here are the
// command's options, messages, exit statuses and what it does to the log.
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <string>

#include "run_cwreport.h"

namespace cw::testing {
namespace {

const std::string kSamples = CW_SOURCE_DIR "/examples/pbx";

using Import = CliTest;

// An Asterisk cdr_csv row of 21 columns: an inbound call on SIP/telco.
std::string Row(const std::string& linkedid, const std::string& start = "2026-11-16 09:02:10",
                const std::string& channel = "SIP/telco-00000001") {
  return "\"\",5551234567,201,\"from-pstn\",\"\"\"Smith John\"\" <5551234567>\",\"" + channel +
         "\",\"SIP/201-00000002\",\"Dial\",\"SIP/201,30\",\"" + start + "\",\"" + start + "\",\"" + start +
         "\",60,60,\"ANSWERED\",\"DOCUMENTATION\",\"" + linkedid + "\",\"\",\"\",\"" + linkedid + "\",1\n";
}

const std::string kTrunk = " --trunk SIP/telco=1 --inbound-context from-pstn";

// The settings name the CDR file relative to the checkout; --cdr overrides it.
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
    const std::string cdr = kSamples + "/" + c.folder + "/" + c.cdr;
    const std::string log = Path(c.folder + ".txt");
    const std::string import = "import --cdr " + Quote(cdr) + " --log " + Quote(log) + " --settings ";
    const ProgramRun first = Cwreport(import + Quote(kSamples + "/" + c.folder + "/settings.ini"));
    ExpectRun(first, 0);
    EXPECT_THAT(first.out, HasSubstr("Format: " + c.format + " (as given)\n"));
    EXPECT_THAT(first.out, HasSubstr("Imported " + std::to_string(c.calls) + " calls"));
    // One line for each row skipped, naming its file and line.
    EXPECT_EQ(Count(first.err, "\n"), c.badRows) << first.err;
    EXPECT_EQ(Count(first.err, "cwreport import: " + cdr + " line "), c.badRows) << first.err;
    EXPECT_EQ(Count(first.err, " (row skipped)\n"), c.badRows) << first.err;
    const std::string written = ReadFile(log);
    EXPECT_EQ(WholeRecords(written), c.calls);

    const ProgramRun again = Cwreport(import + Quote(kSamples + "/" + c.folder + "/settings.ini"));
    ExpectRun(again, 0);
    EXPECT_THAT(again.out, HasSubstr("Imported 0 calls"));
    EXPECT_THAT(again.out, HasSubstr(std::to_string(c.calls) + " imported before"));
    EXPECT_EQ(ReadFile(log), written);

    // Without the format, the layout is found from the first rows; a custom
    // layout cannot be told, only named.
    if (c.format == "asterisk-custom") continue;
    const std::string settings = Write(
        c.folder + ".ini",
        std::regex_replace(ReadFile(kSamples + "/" + c.folder + "/settings.ini"), std::regex("Format=[^\n]*\n"), ""));
    std::filesystem::remove(log);
    const ProgramRun detected = Cwreport(import + Quote(settings));
    ExpectRun(detected, 0);
    EXPECT_THAT(detected.out, HasSubstr("Format: " + c.format + " (detected from the first rows)\n"));
  }
}

// The stretches go to the busy log in the folder --path names, once.
TEST_F(Import, WritesTheStretchesWhenEveryLineWasBusy) {
  const std::string import = "import --settings " + Quote(kSamples + "/asterisk/settings.ini") + " --cdr " +
                             Quote(kSamples + "/asterisk/Master.csv") + " --log " + Quote(Path("CallLog.txt")) +
                             " --busy";
  const ProgramRun run = Cwreport(import + " --path " + Quote(folder_.string()));
  ExpectRun(run, 0);
  EXPECT_THAT(run.out, HasSubstr("Added 1 all-lines-busy stretch to"));
  const std::string stretch = "11/17/2026,09:30:00 AM,09:34:00 AM,240,1-2\r\n";
  EXPECT_EQ(ReadFile(Path("BusyLines.log")), stretch);
  ExpectRun(Cwreport(import + " --path " + Quote(folder_.string())), 0);
  EXPECT_EQ(ReadFile(Path("BusyLines.log")), stretch);
  // No folder for it.
  ExpectRun(Cwreport("import --settings /dev/null --cdr " + Quote(kSamples + "/asterisk/Master.csv") + " --log " +
                     Quote(Path("Other.txt")) + kTrunk + " --busy"),
            2);
}

// Table: the arguments after "import" and a part of the message; status 2
// and no log written.
TEST_F(Import, RefusesWhatCannotBeImportedRight) {
  const std::string cdr = Write("Master.csv", Row("1.1") + Row("1.2", "2026-11-16 09:05:00", "SIP/other-00000009"));
  const std::string log = Path("CallLog.txt");
  const std::string both = " --cdr " + Quote(cdr) + " --log " + Quote(log);
  const std::pair<std::string, std::string> cases[] = {
      {both + kTrunk, "line 2: the trunk channel SIP/other is not listed; add it with --trunk SIP/other=LINE"},
      {both, "no trunks are named"},
      {" --cdr " + Quote(Path("none.csv")) + " --log " + Quote(log) + kTrunk, "cannot find the CDR file"},
      {" --log " + Quote(log) + kTrunk, "no CDR file is named"},
      {" --cdr " + Quote(cdr) + kTrunk, "no call log is named"},
      {both + " --trunk SIP/telco", "is not CHANNEL-PREFIX=LINE"},
      {both + kTrunk + " --format cdr", "--format: the format must be"},
      {both + kTrunk + " --ring-seconds 0", "--ring-seconds needs"},
      {both + " --format freeswitch --trunk a=1 --trunk b=2", "layout has no channel names"},
  };
  const std::string settings = Write("empty.ini", "");
  for (const auto& [arguments, message] : cases) {
    SCOPED_TRACE(arguments);
    ExpectRun(Cwreport("import --settings " + Quote(settings) + arguments), 2, message);
    EXPECT_FALSE(std::filesystem::exists(log));
  }
}

TEST_F(Import, ExitsWithOneWhenNoRowCouldBeRead) {
  const std::string cdr = Write("Master.csv", "\"x\",\"y\"\n\"z\"\n");
  const ProgramRun run = Cwreport("import --settings /dev/null --cdr " + Quote(cdr) + " --log " +
                                  Quote(Path("CallLog.txt")) + " --format asterisk" + kTrunk);
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(Count(run.err, "(row skipped)"), 2u) << run.err;
  EXPECT_THAT(run.out, HasSubstr("2 bad rows"));
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
  ExpectRun(run, 0, "cut off 30 bytes that an interrupted import left at the end of");
  const std::string repaired = ReadFile(log);
  EXPECT_EQ(WholeRecords(repaired), 2u);
  EXPECT_TRUE(repaired.starts_with(first));
  EXPECT_THAT(repaired, HasSubstr("11/16/2026 09:05AM (555) 123-4567"));
}

TEST_F(Import, AddsNothingBeforeTheLogsLastDay) {
  const std::string log = Write("CallLog.txt",
                                "11/20/2026 09:00AM 555-000-0000       EARLIER PROGRAM                            1 In  "
                                "0:00:10 Yes   1\r\n");
  const std::string cdr = Write("Master.csv", Row("1.1") + Row("1.2", "2026-11-20 10:00:00"));
  ExpectRun(Cwreport("import --settings /dev/null --cdr " + Quote(cdr) + " --log " + Quote(log) + kTrunk), 0,
            "1 call fell before the last day of the log");
  EXPECT_EQ(WholeRecords(ReadFile(log)), 2u);
  EXPECT_THAT(ReadFile(log), HasSubstr("11/20/2026 10:00AM"));
}

}  // namespace
}  // namespace cw::testing
