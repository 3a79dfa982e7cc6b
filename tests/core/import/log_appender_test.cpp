// The log only ever grows by whole records, once each.
#include "import/log_appender.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <optional>

#include "import/call_log_batch.h"

#include "core/support/error_number.h"
#include "testing/temp_folder.h"

namespace cw {
namespace {

using testing::ReadBytes;
using testing::WriteBytes;

class LogAppenderTest : public ::testing::Test {
 protected:
  testing::TempFolder folder_;
  const std::string log_ = folder_.File("CallLog.txt");
};

const std::string kFirst = "08/17/2026 07:52AM first\r\n";
const std::string kSecond = "08/17/2026 08:00AM second\r\n";

TEST_F(LogAppenderTest, RemembersWhatItWrote) {
  {
    LogAppender appender(log_);
    EXPECT_FALSE(appender.State().Knows("L:1", 100));
    appender.Append(kFirst, {ImportState::EntryOf("L:1", 100)});
  }
  LogAppender again(log_);
  EXPECT_TRUE(again.State().Knows("L:1", 100));
  EXPECT_FALSE(again.State().Knows("L:2", 100));
  // Far behind the newest call remembered, everything counts as imported.
  EXPECT_TRUE(again.State().Knows("L:3", 100 - ImportState::kRemembered - 1));
  EXPECT_EQ(again.LastRecord(), "08/17/2026 07:52AM first");
  EXPECT_EQ(ReadBytes(log_), kFirst);
}

TEST_F(LogAppenderTest, AFullDiskLeavesTheLogAsItWas) {
  WriteBytes(log_, kFirst);
  int calls = 0;
  LogAppender appender(log_, [&calls](int fd, const char* bytes, std::size_t size) -> long {
    if (++calls == 1) return static_cast<long>(::write(fd, bytes, size / 2));
    errno = ENOSPC;
    return -1;
  });
  const test::RaisedError error = test::ErrorOf([&] { appender.Append(kSecond, {ImportState::EntryOf("L:2", 200)}); });
  EXPECT_EQ(error.number, 75);
  EXPECT_NE(error.description.find("No space left on device"), std::string::npos) << error.description;
  EXPECT_EQ(ReadBytes(log_), kFirst);
  EXPECT_FALSE(LogAppender(log_).State().Knows("L:2", 200));
}

TEST_F(LogAppenderTest, AnImportKilledMidBatchIsCutBackToWholeRecords) {
  struct Case {
    std::string name;
    std::string logAfterCrash;
    std::string logAfterRecovery;
    bool remembered;
  };
  const Case cases[] = {
      {"died half-way through a record", kFirst + kSecond.substr(0, 11), kFirst, false},
      {"died before writing", kFirst, kFirst, false},
      {"died after writing all", kFirst + kSecond, kFirst + kSecond, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    WriteBytes(log_, c.logAfterCrash);
    ImportState state;
    state.BeginBatch({kFirst.size(), kFirst.size() + kSecond.size(), {ImportState::EntryOf("L:2", 200)}});
    state.Save(ImportState::PathFor(log_));

    LogAppender appender(log_);
    EXPECT_EQ(ReadBytes(log_), c.logAfterRecovery);
    EXPECT_EQ(appender.State().Knows("L:2", 200), c.remembered);
    EXPECT_FALSE(appender.State().Pending().has_value());
    EXPECT_EQ(appender.Repaired(), c.logAfterCrash.size() - c.logAfterRecovery.size());
  }
}

// The last record dates the log, whatever blank lines an editor left after
// it; a last line without its line end is no record and is never run on from.
TEST_F(LogAppenderTest, TheLastRecordIsAWholeLineAboveTrailingBlankLines) {
  WriteBytes(log_, kFirst + kSecond + "\r\n   \r\n");
  EXPECT_EQ(LogAppender(log_).LastRecord(), "08/17/2026 08:00AM second");
  WriteBytes(log_, "08/17/2026 07:52AM someone else's");
  LogAppender appender(log_);
  EXPECT_EQ(appender.LastRecord(), "");
  appender.Append(kSecond, {});
  EXPECT_EQ(ReadBytes(log_), "08/17/2026 07:52AM someone else's\r\n" + kSecond);
}

// A follower appends batch after batch; a call that comes in late, dated
// before what an earlier batch wrote, must not go after it.
TEST_F(LogAppenderTest, ABatchNeverGoesBeforeTheDayOfAnEarlierBatch) {
  LogAppender appender(log_);
  std::optional<CivilDate> lastDay;
  const auto callOn = [](const char* key, int day) {
    LogCall call;
    call.start = call.end = LocalSecondsOf(CivilDate::FromYmd(2026, 8, day), 9 * 3600);
    call.line = 1;
    return KeyedCall{key, call};
  };
  EXPECT_EQ(AppendCalls(appender, {callOn("L:1", 17)}, lastDay).written, 1);
  const BatchResult late = AppendCalls(appender, {callOn("L:2", 16), callOn("L:3", 18)}, lastDay);
  EXPECT_EQ(late.tooOld, 1);
  EXPECT_EQ(late.written, 1);
  EXPECT_EQ(lastDay, CivilDate::FromYmd(2026, 8, 18));
}

TEST_F(LogAppenderTest, RefusesAStateFileItDidNotWrite) {
  WriteBytes(ImportState::PathFor(log_), "some notes\n");
  EXPECT_EQ(test::ErrorNumberOf([&] { LogAppender appender(log_); }), 13);
  EXPECT_EQ(ReadBytes(ImportState::PathFor(log_)), "some notes\n");
}

}  // namespace
}  // namespace cw
