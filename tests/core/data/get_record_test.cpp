#include "data/get_record.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "data/call_record.h"
#include "log_lines.h"
#include "support/runtime_error.h"

namespace cw {
namespace {

// Every line GetRecord hands out until "Done", from a fresh reader.
std::vector<std::string> ReadAll(std::string_view buffer) {
  ReaderState state;
  std::vector<std::string> lines;
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

using Lines = std::vector<std::string>;

TEST(GetRecord, HandsOutTrimmedLinesUntilAnEmptyOneOrTheEnd) {
  using namespace std::string_literals;
  struct Case {
    std::string buffer;
    Lines lines;
  };
  const Case cases[] = {
      {"", {}}, {"one\r\ntwo\r\n", {"one", "two"}}, {"  padded both   \r\n", {"padded both"}},
      // A last line without a line feed is never handed out.
      {"one\r\ntwo", {"one"}}, {"one\r\ntwo\r", {"one"}}, {"only line", {}},
      // An empty or blank line ends the reading; tabs are not blanks.
      {"one\r\n\r\nthree\r\n", {"one"}}, {"one\r\n     \r\nthree\r\n", {"one"}}, {"\r\none\r\n", {}},
      {"\t\r\none\r\n", {"\t", "one"}},
      // A file with bare LF line ends loses the last character of every
      // line, so a one-character line is left empty and ends the reading.
      {"abc\ndef\n", {"ab", "de"}}, {"abc\nx\ndef\n", {"ab"}}, {"abc\n\ndef\n", {"ab"}}, {"\n", {}},
      {"\n\n\n\n", {}},
      // Only the CR right before the LF goes; one elsewhere stays.
      {"a\rb\r\n", {"a\rb"}},
      // NUL bytes and bytes above 127 are ordinary characters.
      {"a\0b\r\n\xff\xfe\r\n"s, {"a\0b"s, "\xff\xfe"}},
  };
  for (const Case& c : cases) EXPECT_EQ(ReadAll(c.buffer), c.lines) << ::testing::PrintToString(c.buffer);
}

TEST(GetRecord, StartsOverAfterDoneOrWhenAskedToStop) {
  const std::string_view buffer = "one\r\ntwo\r\n";
  ReaderState state;
  EXPECT_EQ(GetRecord(buffer, false, state), "one");
  EXPECT_EQ(GetRecord(buffer, false, state), "two");
  EXPECT_EQ(GetRecord(buffer, false, state), kDone);
  EXPECT_EQ(GetRecord(buffer, false, state), "one");
  EXPECT_EQ(GetRecord(buffer, true, state), kDone);
  EXPECT_EQ(GetRecord(buffer, false, state), "one");
}

TEST(GetRecord, LongLinesAndNoiseNeverCrashOrHang) {
  // A one-megabyte line comes out whole.
  const std::string longLine(1 << 20, 'x');
  const Lines lines = ReadAll(longLine + "\r\nnext\r\n");
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0].size(), longLine.size());
  // Noise of every byte value: the reader comes to an end within one pass.
  std::string noise;
  for (int k = 0; k < 100000; ++k) noise += static_cast<char>((k * 7919 + k / 13) % 256);
  const Lines fromNoise = ReadAll(noise);
  EXPECT_LE(fromNoise.size(), noise.size());
}

TEST(CallRecord, CutsTrimmedFieldsByColumn) {
  // The record looks into the line, which must outlive it.
  const std::string line = testing::Call()
                               .Date("02/29/2024").Time("11:59PM").Number("(555) 123-4567").Name("O'NEIL PAT")
                               .Line("12").Direction("Out").Duration("1:02:03").Answered("No").Rings("10")
                               .Text();
  const CallRecord record(line);
  EXPECT_EQ((std::vector<std::string_view>{record.Date(), record.Time(), record.Number(), record.Name(),
                                           record.Line(), record.Direction(), record.Duration(),
                                           record.ShortDuration(), record.Answered(), record.Rings(),
                                           record.Dtmf(true)}),
            (std::vector<std::string_view>{"02/29/2024", "11:59PM", "(555) 123-4567", "O'NEIL PAT", "12", "Out",
                                           "1:02:03", "02:03", "No", "10", ""}));

  // Fields beyond the end of a short line are empty.
  const CallRecord shortRecord("01/02/2024 9:00AM");
  EXPECT_EQ(shortRecord.Time(), "9:00AM");
  EXPECT_EQ(shortRecord.Number(), "");
  EXPECT_EQ(shortRecord.Rings(), "");
  EXPECT_EQ(CallRecord("").Date(), "");
}

TEST(CallRecord, TouchToneDigitsNeedALongLineAndTheOption) {
  std::string line(103, 'x');
  EXPECT_EQ(CallRecord(line).Dtmf(true), "");
  line += '7';
  EXPECT_EQ(CallRecord(line).Dtmf(true), "7");
  EXPECT_EQ(CallRecord(line).Dtmf(false), "");
  const std::string withDigits = testing::Call().Dtmf("1234#").Text();
  EXPECT_EQ(withDigits.size(), 108u);
  EXPECT_EQ(CallRecord(withDigits).Dtmf(true), "1234#");
}

}  // namespace
}  // namespace cw
