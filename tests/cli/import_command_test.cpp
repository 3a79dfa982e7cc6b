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

// What each command says is in the transcript; here, what it wrote. The
// sample settings name the CDR file relative to the checkout; --cdr
// overrides it.
TEST_F(Import, SamplesRefusalsAndMessages) {
  std::filesystem::create_directory_symlink(kSamples, Path("pbx"));
  for (const std::string folder : {"asterisk", "freeswitch", "csv"}) {  // their settings less the format
    Write(folder + ".ini", std::regex_replace(ReadFile(kSamples + "/" + folder + "/settings.ini"),
                                              std::regex("Format=[^\n]*\n"), ""));
  }
  Write("empty.ini", "");
  Write("Master.csv", Row("1.1") + Row("1.2", "2026-11-16 09:05:00", "SIP/other-00000009"));
  Write("unreadable.csv", "\"x\",\"y\"\n\"z\"\n");
  Write("earlier.txt", "11/20/2026 09:00AM 555-000-0000       EARLIER PROGRAM                            1 In  "
                       "0:00:10 Yes   1\r\n");
  Write("late.csv", Row("1.1") + Row("1.2", "2026-11-20 10:00:00"));
  ExpectTranscript("import.txt");

  for (const auto& [log, calls] : {std::pair{"asterisk.txt", 14u}, {"asterisk-detected.txt", 14u},
                                   {"freeswitch.txt", 5u}, {"custom.txt", 3u}, {"csv.txt", 3u}, {"earlier.txt", 2u}}) {
    EXPECT_EQ(WholeRecords(ReadFile(Path(log))), calls) << log;
  }
  EXPECT_THAT(ReadFile(Path("earlier.txt")), HasSubstr("11/20/2026 10:00AM"));
  EXPECT_EQ(ReadFile(Path("BusyLines.log")), "11/17/2026,09:30:00 AM,09:34:00 AM,240,1-2\r\n");
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

}  // namespace
}  // namespace cw::testing
