// cwreport import --follow, run as the program itself: calls appear in the
// log as the PBX writes them, through both kinds of rotation, and a signal
// stops it between records. The waits are for a result, not for a time: a
// slow machine only makes them longer.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "run_cwreport.h"

namespace cw::testing {
namespace {

// A 21-column Asterisk row of a call whose linkedid is `call`.
std::string Leg(const std::string& call, const std::string& channel, const std::string& dstChannel,
                const std::string& context, bool answered, const std::string& start = "2026-11-16 09:00:00") {
  const std::string answer = answered ? "2026-11-16 09:00:12" : "";
  return "\"\",5551234567,600,\"" + context + "\",\"\"\"Caller " + call + "\"\" <5551234567>\",\"" + channel +
         "\",\"" + dstChannel + "\",\"Dial\",\"x\",\"" + start + "\",\"" + answer +
         "\",\"2026-11-16 09:01:12\",72," + (answered ? "60" : "0") + ",\"" + (answered ? "ANSWERED" : "NO ANSWER") +
         "\",\"DOCUMENTATION\",\"" + call + "\",\"\",\"\",\"" + call + "\",1\n";
}

std::string Inbound(const std::string& call) {
  return Leg(call, "SIP/telco-000" + call, "SIP/201-000" + call, "from-pstn", true);
}

class Follow : public CliTest {
 protected:
  void TearDown() override {
    if (child_ > 0) {
      ::kill(child_, SIGKILL);
      ::waitpid(child_, nullptr, 0);
    }
    CliTest::TearDown();
  }

  void Start(const std::string& cdr, const std::string& log) {
    child_ = Spawn("exec " + Quote(CwreportProgram()) + " import --follow --settings /dev/null --cdr " + Quote(cdr) +
                   " --log " + Quote(log) + " --trunk SIP/telco=1 --inbound-context from-pstn >" +
                   Quote(Path("out.txt")) + " 2>" + Quote(Path("err.txt")));
    ASSERT_GT(child_, 0);
  }

  // Waits until the log holds `records` records (or the follower ended).
  std::string WaitForRecords(const std::string& log, int records) {
    for (int i = 0; i < 600; ++i) {
      const std::string text = ReadFile(log);
      if (std::count(text.begin(), text.end(), '\n') >= records) return text;
      int status = 0;
      if (::waitpid(child_, &status, WNOHANG) == child_) {
        child_ = -1;
        ADD_FAILURE() << "the follower ended: " << ReadFile(Path("err.txt"));
        return text;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    ADD_FAILURE() << "no " << records << " records in the log:\n" << ReadFile(log) << ReadFile(Path("err.txt"));
    return ReadFile(log);
  }

  void Append(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary | std::ios::app) << bytes;
  }

  pid_t child_ = -1;
};

TEST_F(Follow, AddsCallsAsTheyComeThroughRotationsAndStopsOnASignal) {
  const std::string cdr = Write("Master.csv", Inbound("1"));
  const std::string log = Path("CallLog.txt");
  Start(cdr, log);
  EXPECT_NE(WaitForRecords(log, 1).find("Caller 1"), std::string::npos);

  // A half-written row waits for its line end.
  const std::string second = Inbound("2");
  Append(cdr, second.substr(0, 40));
  Append(cdr, second.substr(40));
  EXPECT_NE(WaitForRecords(log, 2).find("Caller 2"), std::string::npos);

  // The file is renamed and made again while a ring group's legs are split
  // across the two files. The follower is held still meanwhile, so that it
  // sees the rotation as it is, not a moment of it.
  ::kill(child_, SIGSTOP);
  Append(cdr, Leg("3", "Local/600@group-0001;2", "SIP/202-0003", "group", true) +
                  Leg("3", "Local/600@group-0002;2", "SIP/203-0004", "group", false));
  std::filesystem::rename(cdr, Path("Master.csv.1"));
  Write("Master.csv", Leg("3", "SIP/telco-0005", "Local/600@group-0001;1", "from-pstn", true));
  ::kill(child_, SIGCONT);
  const std::string afterRename = WaitForRecords(log, 3);
  EXPECT_NE(afterRename.find("Caller 3                                   1 In  0:01:00 Yes   2"), std::string::npos)
      << afterRename;

  // Cut back and written again, past where it had been read.
  ::kill(child_, SIGSTOP);
  Write("Master.csv", Inbound("4") + Inbound("5") + Inbound("6"));
  ::kill(child_, SIGCONT);
  const std::string afterTruncation = WaitForRecords(log, 6);
  for (const char* caller : {"Caller 4", "Caller 5", "Caller 6"}) {
    EXPECT_NE(afterTruncation.find(caller), std::string::npos) << caller;
  }

  ::kill(child_, SIGTERM);
  int status = -1;
  ASSERT_EQ(::waitpid(child_, &status, 0), child_);
  child_ = -1;
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0) << ReadFile(Path("err.txt"));
  EXPECT_NE(ReadFile(Path("out.txt")).find("Stopped; 6 calls added"), std::string::npos) << ReadFile(Path("out.txt"));

  EXPECT_EQ(WholeRecords(ReadFile(log)), 6u);
}

}  // namespace
}  // namespace cw::testing
