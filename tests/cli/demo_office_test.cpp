// The bundled demo office: its files are what the generator writes, and every
// record and busy stretch in them is one the reports can read.
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "data/call_record.h"
#include "data/get_record.h"
#include "data/log_buffer.h"
#include "data/log_conversions.h"
#include "settings/edition.h"
#include "settings/logging_ini.h"
#include "support/time_text.h"
#include "support/whole_numbers.h"

namespace cw {
namespace {

const std::string kDemo = CW_SOURCE_DIR "/examples/demo";
const std::string kGenerator = CW_BINARY_DIR "/examples/demo/cw_make_demo";

std::string ReadAll(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

int Generate(const std::string& arguments) {
  const std::string command = "'" + kGenerator + "' " + arguments + " 2>/dev/null";
  const int status = std::system(command.c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

class DemoOffice : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (std::filesystem::temp_directory_path() / "cw-demo-XXXXXX").string();
    ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
    folder_ = pattern;
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }
  std::string In(const std::string& name) const { return (folder_ / name).string(); }
  std::filesystem::path folder_;
};

std::vector<std::string_view> SplitAtCommas(std::string_view text) {
  std::vector<std::string_view> parts;
  for (std::size_t start = 0;;) {
    const std::size_t comma = text.find(',', start);
    parts.push_back(text.substr(start, comma == std::string_view::npos ? comma : comma - start));
    if (comma == std::string_view::npos) return parts;
    start = comma + 1;
  }
}

TEST_F(DemoOffice, CommittedFilesAreWhatTheReadmeCommandWrites) {
  ASSERT_EQ(Generate("--calls 4000 --lines 4 --start 08/17/2026 --days 91 --seed 1 --log '" +
                     In("CallLog.txt") + "' --busy '" + In("BusyLines.log") + "' --ini-dir '" +
                     folder_.string() + "'"),
            0);
  for (const char* name : {"CallLog.txt", "BusyLines.log", "Callwarden.ini", "Ringtally.ini"}) {
    EXPECT_TRUE(ReadAll(In(name)) == ReadAll(kDemo + "/" + name)) << name << " differs from the generator's";
  }
}

TEST_F(DemoOffice, EveryRecordReadsBackThroughTheColumns) {
  const std::int32_t lines = ReadActiveLines(LoggingIniPath(kDemo, kEditionCallwarden));
  EXPECT_EQ(lines, 4);
  EXPECT_EQ(ReadActiveLines(LoggingIniPath(kDemo, kEditionRingtally)), 4);
  EXPECT_EQ(ReadHardwareType(LoggingIniPath(kDemo, kEditionRingtally)), 3);

  const LogBuffer log = LogBuffer::Load(kDemo + "/CallLog.txt");
  ReaderState reader;
  std::int32_t count = 0, in = 0, unanswered = 0, dtmf = 0, overAnHour = 0;
  std::int64_t previous = 0;
  for (std::string_view text = GetRecord(log.Text(), false, reader); text != kDone;
       text = GetRecord(log.Text(), false, reader)) {
    const CallRecord record(text);
    ++count;
    SCOPED_TRACE(std::string(text));
    const std::int64_t when =
        static_cast<std::int64_t>(ParseLogDate(record.Date()).Serial()) * 86400 + ParseTimeText(record.Time());
    EXPECT_GE(when, previous);
    previous = when;
    const std::int32_t line = TextToInt32(record.Line());
    EXPECT_TRUE(line >= 1 && line <= lines);
    EXPECT_TRUE(record.Direction() == "In" || record.Direction() == "Out");
    in += record.Direction() == "In";
    // h:mm:ss with the hour in column 88.
    EXPECT_EQ(text.substr(88, 1), ":");
    EXPECT_EQ(text.substr(91, 1), ":");
    const std::int32_t seconds = DurationToSeconds(record.Duration());
    overAnHour += seconds >= 3600;
    EXPECT_TRUE(record.Answered() == "Yes" || record.Answered() == "No");
    if (record.Answered() == "No") {
      ++unanswered;
      EXPECT_EQ(seconds, 0);
    }
    TextToInt32(record.Rings());
    if (text.size() > 103) {
      ++dtmf;
      EXPECT_EQ(text.substr(102, 1), " ");
      EXPECT_FALSE(record.Dtmf(true).empty());
    } else {
      EXPECT_LE(text.size(), 102u);
    }
  }
  EXPECT_EQ(count, 4000);
  // The mix the reports need to show something on every tab.
  EXPECT_GT(in, count / 2);
  EXPECT_LT(in, count);
  EXPECT_GT(unanswered, 100);
  EXPECT_GT(dtmf, 100);
  EXPECT_GT(overAnHour, 0);
}

TEST_F(DemoOffice, BusyStretchesAreConsistent) {
  const LogBuffer busy = LogBuffer::Load(kDemo + "/BusyLines.log");
  ReaderState reader;
  std::int32_t count = 0;
  for (std::string_view text = GetRecord(busy.Text(), false, reader); text != kDone;
       text = GetRecord(busy.Text(), false, reader)) {
    ++count;
    SCOPED_TRACE(std::string(text));
    const std::vector<std::string_view> fields = SplitAtCommas(text);
    ASSERT_EQ(fields.size(), 5u);
    ParseLogDate(fields[0]);
    EXPECT_EQ(ParseTimeText(fields[2]) - ParseTimeText(fields[1]), TextToInt32(fields[3]));
    EXPECT_EQ(fields[4], "1-4");
  }
  EXPECT_GT(count, 20);
}

TEST_F(DemoOffice, GeneratorIsDeterministicAndExact) {
  const auto make = [&](const std::string& name, const std::string& options) {
    EXPECT_EQ(Generate(options + " --log '" + In(name) + "' --ini-dir '" + folder_.string() + "'"), 0);
    return ReadAll(In(name));
  };
  const std::string a = make("a.txt", "--calls 300 --seed 7 --lines 2");
  EXPECT_EQ(a, make("b.txt", "--calls 300 --seed 7 --lines 2"));
  EXPECT_NE(a, make("c.txt", "--calls 300 --seed 8 --lines 2"));
  EXPECT_EQ(std::count(a.begin(), a.end(), '\n'), 300);
  EXPECT_EQ(ReadActiveLines(In("Callwarden.ini")), 2);

  // A benchmark log: at least the size asked for, and nothing beside it.
  std::filesystem::create_directory(In("big"));
  EXPECT_EQ(Generate("--size-mb 1 --days 30 --log '" + In("big/s.txt") + "'"), 0);
  const std::string sized = ReadAll(In("big/s.txt"));
  EXPECT_GE(sized.size(), 1u << 20);
  EXPECT_LT(sized.size(), (1u << 20) + 200);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(In("big")), {}), 1);

  for (const char* bad : {"--calls 0", "--calls x", "--start 13/01/2026", "--start 1/5/2026", "--lines 0",
                          "--size-mb 5 --calls 5", "--size-mb 5 --busy x.log", "--unknown 1", "--days"}) {
    EXPECT_EQ(Generate(std::string(bad) + " --log '" + In("bad.txt") + "'"), 2) << bad;
  }
}

}  // namespace
}  // namespace cw
