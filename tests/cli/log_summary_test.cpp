// cwreport log-summary, run as the program itself.
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include "run_cwreport.h"

namespace {

using cw::testing::ProgramRun;
using cw::testing::RunCwreport;

class LogSummary : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (std::filesystem::temp_directory_path() / "cw-summary-XXXXXX").string();
    ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
    folder_ = pattern;
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }
  std::string Write(const std::string& name, const std::string& bytes) {
    const std::string path = (folder_ / name).string();
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
  }
  std::filesystem::path folder_;
};

// A record with the line number in columns 80-82.
std::string Record(const std::string& date, const std::string& line) {
  std::string text = date + " 09:05AM 555-123-4567       SMITH JOHN";
  text.resize(79, ' ');
  text += line;
  text.resize(82, ' ');
  return text + " In  0:01:02 Yes   2\r\n";
}

TEST_F(LogSummary, CountsEveryRecordByLineInNumericOrder) {
  const std::string log = Write("CallLog.txt", Record("03/01/2026", " 10") + Record("03/01/2026", "  2") +
                                                   Record("03/02/2026", "2") + Record("03/02/2026", "   ") +
                                                   Record("03/03/2026", "x"));
  const ProgramRun run = RunCwreport("log-summary --log '" + log + "'");
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_EQ(run.out, "Call log: " + log +
                         "\nOldest date: 03/01/2026\nCalls per line:\n  Line 2: 2\n  Line 10: 1\n"
                         "  Line (blank): 1\n  Line x: 1\nTotal calls: 5\n");
}

TEST_F(LogSummary, FindsTheLogThroughTheSettingsOrRefuses) {
  const std::string log = Write("CallLog.txt", Record("12/31/2025", "1"));
  const std::string settings =
      Write("settings.ini", "[Reports]\nLogs=" + log + "\n");
  const ProgramRun viaSettings =
      RunCwreport("log-summary --settings '" + settings + "' --edition 'Callwarden MultiLine'");
  EXPECT_EQ(viaSettings.status, 0) << viaSettings.out;
  EXPECT_NE(viaSettings.out.find("Oldest date: 12/31/2025\n"), std::string::npos) << viaSettings.out;

  const ProgramRun missing = RunCwreport("log-summary --log '" + (folder_ / "none.txt").string() + "'");
  EXPECT_EQ(missing.status, 2);
  EXPECT_NE(missing.out.find("Cannot Find the Call Logs File"), std::string::npos) << missing.out;

  EXPECT_EQ(RunCwreport("log-summary --log").status, 2);
  EXPECT_EQ(RunCwreport("log-summary --today 13/45/x --log '" + log + "'").status, 2);
}

}  // namespace
