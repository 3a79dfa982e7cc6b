#include "data/get_record.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "data/call_record.h"
#include "log_lines.h"
#include "support/runtime_error.h"
#include "testing/expected_file.h"

namespace cw {
namespace {

using Lines = std::vector<std::string>;

// Every line GetRecord hands out until "Done", from a fresh reader.
Lines ReadAll(std::string_view buffer) {
  ReaderState state;
  Lines lines;
  for (std::string_view line = GetRecord(buffer, false, state); line != kDone;
       line = GetRecord(buffer, false, state)) {
    lines.emplace_back(line);
    if (lines.size() > buffer.size()) {
      ADD_FAILURE() << "the reader does not come to an end";
      break;
    }
  }
  return lines;
}

TEST(GetRecord, HandsOutTrimmedLinesUntilAnEmptyOneOrTheEnd) {
  testing::ExpectTableMatches("data/get-record.txt", [](const std::string& text) {
    std::string shown;
    for (const std::string& line : ReadAll(testing::Unescaped(text))) shown += "[" + testing::Visible(line) + "]";
    return shown;
  });
  // NUL bytes and bytes above 127 are ordinary characters.
  using namespace std::string_literals;
  EXPECT_EQ(ReadAll("a\0b\r\n\xff\xfe\r\n"s), (Lines{"a\0b"s, "\xff\xfe"}));
  // A one-megabyte line comes out whole.
  const std::string longLine(1 << 20, 'x');
  EXPECT_TRUE(ReadAll(longLine + "\r\nnext\r\n") == (Lines{longLine, "next"}));
}

TEST(GetRecord, StartsOverAfterDoneOrWhenAskedToStop) {
  const std::string_view buffer = "one\r\ntwo\r\n";
  ReaderState state;
  // Whether each call asks the reader to stop, and what it hands out.
  const std::pair<bool, std::string_view> calls[] = {{false, "one"}, {false, "two"}, {false, kDone},
                                                     {false, "one"}, {true, kDone},  {false, "one"}};
  for (const auto& [stop, line] : calls) EXPECT_EQ(GetRecord(buffer, stop, state), line);
}

TEST(CallRecord, CutsTrimmedFieldsByColumn) {
  // The record looks into the line, which must outlive it.
  const std::string line = testing::Call()
                               .Date("02/29/2024").Time("11:59PM").Number("(555) 123-4567").Name("O'NEIL PAT")
                               .Line("12").Direction("Out").Duration("1:02:03").Answered("No").Rings("10").Dtmf("1234#")
                               .Text();
  const CallRecord record(line);
  EXPECT_EQ((std::vector<std::string_view>{record.Date(), record.Time(), record.Number(), record.Name(),
                                           record.Line(), record.Direction(), record.Duration(),
                                           record.ShortDuration(), record.Answered(), record.Rings(),
                                           record.Dtmf(true)}),
            (std::vector<std::string_view>{"02/29/2024", "11:59PM", "(555) 123-4567", "O'NEIL PAT", "12", "Out",
                                           "1:02:03", "02:03", "No", "10", "1234#"}));

  // Fields beyond the end of a short line are empty.
  const CallRecord shortRecord("01/02/2024 9:00AM");
  EXPECT_EQ((std::vector<std::string_view>{shortRecord.Time(), shortRecord.Number(), shortRecord.Rings(),
                                           CallRecord("").Date()}),
            (std::vector<std::string_view>{"9:00AM", "", "", ""}));
}

TEST(CallRecord, TouchToneDigitsNeedALongLineAndTheOption) {
  std::string line(103, 'x');
  EXPECT_EQ(CallRecord(line).Dtmf(true), "");
  line += '7';
  EXPECT_EQ(CallRecord(line).Dtmf(true), "7");
  EXPECT_EQ(CallRecord(line).Dtmf(false), "");
}

}  // namespace
}  // namespace cw
