// Records written by the import must read back through the reports' own
// reader exactly as the call was.
#include "import/log_record_writer.h"

#include <gtest/gtest.h>

#include "data/call_record.h"
#include "data/get_record.h"
#include "data/log_conversions.h"
#include "support/date_format.h"
#include "support/time_text.h"

namespace cw {
namespace {

LocalSeconds At(int month, int day, int hour, int minute, int second = 0) {
  return LocalSecondsOf(CivilDate::FromYmd(2026, month, day), hour * 3600 + minute * 60 + second);
}

TEST(LogRecordWriter, RecordsReadBackThroughTheReportsReader) {
  const std::vector<LogCall> calls = {
      {.start = At(8, 17, 9, 5, 42), .line = 1, .number = "(555) 123-4567", .name = "Smith John", .answered = true,
       .talkSeconds = 3723, .rings = 3},
      // Number and name longer than their columns, a talk time past 9:59:59.
      {.start = At(12, 31, 23, 59, 59), .inbound = false, .line = 120, .number = "915559876543210987654",
       .name = std::string(45, 'N'), .talkSeconds = 40000, .rings = 0},
      {.start = At(1, 2, 12, 0), .line = 7, .number = "", .name = "", .rings = 999},
  };
  std::string log;
  for (const LogCall& call : calls) AppendLogRecord(log, call);
  ReaderState reader;
  for (const LogCall& call : calls) {
    SCOPED_TRACE(call.name);
    const std::string_view line = GetRecord(log, false, reader);
    ASSERT_NE(line, kDone);
    const CallRecord record(line);
    EXPECT_EQ(ParseLogDate(record.Date()), DateOf(call.start));
    EXPECT_EQ(ParseTimeText(record.Time()), TimeOfDayOf(call.start) / 60 * 60);
    EXPECT_EQ(FormatTime(ParseTimeText(record.Time()), "h:mmampm"), FormatTime(TimeOfDayOf(call.start), "h:mmampm"));
    EXPECT_EQ(record.Number(), call.number.substr(0, 18));
    EXPECT_EQ(record.Name(), call.name.substr(0, 40));
    EXPECT_EQ(record.Line(), std::to_string(call.line));
    EXPECT_EQ(record.Direction(), call.inbound ? "In" : "Out");
    EXPECT_EQ(DurationToSeconds(record.Duration()), std::min(call.talkSeconds, 35999));
    EXPECT_EQ(record.Answered(), call.answered ? "Yes" : "No");
    EXPECT_EQ(record.Rings(), std::to_string(call.rings));
    EXPECT_EQ(record.Dtmf(true), "");
    EXPECT_EQ(RecordMoment(line), call.start / 60 * 60);
  }
  EXPECT_EQ(GetRecord(log, false, reader), kDone);
}

TEST(LogRecordWriter, WritesTheExactColumns) {
  LogCall call{.start = At(8, 17, 7, 52), .line = 1, .number = "(555) 019-8841", .name = "JOHNSON MARY",
               .answered = true, .talkSeconds = 41, .rings = 3};
  // The same bytes as a record of the logging program.
  EXPECT_EQ(FormatLogRecord(call),
            "08/17/2026 07:52AM (555) 019-8841     JOHNSON MARY                               1 In  0:00:41 Yes   3\r\n");
  call.inbound = false;
  call.answered = false;
  call.talkSeconds = 0;
  call.rings = 12;
  call.line = 10;
  call.name.clear();
  call.start = At(8, 17, 0, 0);
  EXPECT_EQ(FormatLogRecord(call),
            "08/17/2026 12:00AM (555) 019-8841                                               10 Out 0:00:00 No   12\r\n");
}

}  // namespace
}  // namespace cw
