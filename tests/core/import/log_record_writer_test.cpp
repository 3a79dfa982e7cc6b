// Records written by the import must read back through the reports' own
// reader exactly as the call was.
#include "import/log_record_writer.h"

#include <gtest/gtest.h>

#include <sstream>

#include "data/call_record.h"
#include "data/get_record.h"
#include "data/log_conversions.h"
#include "support/date_format.h"
#include "support/time_text.h"
#include "testing/expected_file.h"

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
      {.start = At(1, 2, 0, 0), .inbound = false, .line = 10, .number = "5559876543", .name = "", .rings = 12},
  };
  std::string log;
  for (const LogCall& call : calls) AppendLogRecord(log, call);
  // Records of the logging program's width, each ended by CR LF; their
  // columns are the raw lines of the read-back file.
  EXPECT_EQ(log.size(), calls.size() * 104);
  for (std::size_t end = 102; end < log.size(); end += 104) EXPECT_EQ(log.substr(end, 2), "\r\n") << end;
  // Each record as written, then as the reports read it: date, time to the
  // minute, number, name, line, direction, talk seconds, answered, rings and
  // DTMF digits.
  std::ostringstream shown;
  ReaderState reader;
  for (const LogCall& call : calls) {
    const std::string_view line = GetRecord(log, false, reader);
    ASSERT_NE(line, kDone);
    const CallRecord record(line);
    shown << line << "\n";
    shown << FormatDate(ParseLogDate(record.Date()), "mm/dd/yyyy") << " " << FormatTime(ParseTimeText(record.Time()), "h:Nn")
          << " [" << record.Number() << "] [" << record.Name() << "] " << record.Line() << " " << record.Direction()
          << " " << DurationToSeconds(record.Duration()) << " " << record.Answered() << " " << record.Rings() << " ["
          << record.Dtmf(true) << "]\n";
    EXPECT_EQ(RecordMoment(line), call.start / 60 * 60) << call.name;
  }
  testing::ExpectMatchesFile(shown.str(), "import/log-records-read-back.txt");
  EXPECT_EQ(GetRecord(log, false, reader), kDone);
}

}  // namespace
}  // namespace cw
