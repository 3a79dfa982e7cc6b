// The matrix builders read a record's values straight from its columns when
// the line is in the logging program's shape. Whatever the columns hold, the
// answers (and errors) must be those of the trimmed field texts.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "analysis_rig.h"
#include "core/data/log_lines.h"
#include "reports/matrix_cells.h"

namespace cw {
namespace {

using testing::Call;
using testing::Outcome;

// Raw column contents at full width, with blanks placed as a log may hold
// them, plus shapes that must go to the general conversions.
const std::vector<std::string> kTimes = {"06:02AM", " 9:05AM", "9:05AM ", "12:00AM", "12:59PM", "11:59pm", "00:05PM",
                                         "13:00PM", "12:60AM", " 9:05XM", "  9:05A", "9:05 PM", "14:05  ", "       ",
                                         "1:00:00", "09;05AM", "0a:05AM", "09:05AN", "/9:05AM", ":9:05AM", "09:0/AM"};
const std::vector<std::string> kDurations = {"0:04:09", "9:59:59", "0:75:00", " 0:04:0", "  04:09",
                                             "0:04:0x", "0:04:0\xB9", "x:04:09", "       ", "0;04:09",
                                             "0:04;09", "0:0/:09", "1:2:3  "};
const std::vector<std::string> kDirections = {"In ", " In", "Out", "in ", "IN ", "Ou ", "   ", "I n", "  I", "Oux"};
const std::vector<std::string> kLines = {"  1", "  9", "  0", " 12", "123", "1  ", " 1 ", "  x", "   ", " -1", "+3 "};

TEST(RecordReaders, AgreeWithTheTrimmedTextsWhateverTheColumnsHold) {
  for (const std::string& time : kTimes) {
    const std::string line = Call().Time(time).Text();
    const CallRecord record(line);
    EXPECT_EQ(Outcome([&] { return CallHour(record); }), Outcome([&] { return HourOfCall(record.Time()); }))
        << '"' << time << '"';
  }
  for (const std::string& duration : kDurations) {
    const std::string line = Call().Duration(duration).Text();
    const CallRecord record(line);
    EXPECT_EQ(CallSeconds(record), SecondsOfCall(record.Duration())) << '"' << duration << '"';
  }
  for (const std::string& direction : kDirections) {
    const std::string line = Call().Direction(direction).Text();
    const CallRecord record(line);
    EXPECT_EQ(CallKind(record), DirectionKind(record.Direction())) << '"' << direction << '"';
  }
  for (const std::string& field : kLines) {
    const std::string line = Call().Line(field).Text();
    const CallRecord record(line);
    EXPECT_EQ(Outcome([&] { return CallLine(record); }), Outcome([&] { return LineOfCall(record.Line()); }))
        << '"' << field << '"';
  }
}

// Each way of reading a call in one go that this build has.
const std::vector<std::pair<const char*, bool (*)(const CallRecord&, LineCall&)>> kLineCallReaders = {
    {"words", ReadLineCallWords},
#if defined(__SSE2__) && defined(__x86_64__)
    {"vector", ReadLineCallVector},
#endif
};

TEST(RecordReaders, LineCallsReadInOneGoAgreeWithTheFieldReaders) {
  // Whenever a one-go reader takes a call, its line, kind and length are
  // those of the readers field by field; it takes every ordinary call.
  for (const auto& [name, read] : kLineCallReaders) {
    int taken = 0;
    for (const std::string& field : kLines) {
      for (const std::string& direction : kDirections) {
        for (const std::string& duration : kDurations) {
          const std::string line = Call().Line(field).Direction(direction).Duration(duration).Text();
          const CallRecord record(line);
          LineCall call;
          if (!read(record, call)) continue;
          ++taken;
          const std::string shown = std::string(name) + " \"" + field + '|' + direction + '|' + duration + '"';
          EXPECT_EQ(Outcome([&] { return CallLine(record); }), (std::pair<int, int>{call.line, 0})) << shown;
          EXPECT_EQ(call.kind, CallKind(record)) << shown;
          EXPECT_EQ(call.seconds, CallSeconds(record)) << shown;
        }
      }
    }
    // Lines "  1", "  9", "  0" and " 12", every direction, and the durations
    // "0:04:09", "9:59:59" and "0:75:00".
    EXPECT_EQ(taken, 4 * 10 * 3) << name;
    // A line too short to hold the duration and the blank after it is read
    // field by field.
    const std::string full = Call().Line("  2").Direction("In").Duration("0:04:09").Text();
    LineCall call;
    EXPECT_FALSE(read(CallRecord(std::string_view(full).substr(0, 94)), call)) << name;
    EXPECT_TRUE(read(CallRecord(std::string_view(full).substr(0, 95)), call)) << name;
  }
}

TEST(RecordReaders, ShortLinesAndRepeatedDatesReadTheTrimmedTexts) {
  // A line that ends inside a field: the field is what the line holds of it.
  const std::string full = Call().Date("11/02/2026").Time("09:05AM").Direction("Out").Duration("0:04:09").Text();
  for (std::size_t length : {std::size_t{0}, std::size_t{5}, std::size_t{14}, std::size_t{84}, std::size_t{85},
                             std::size_t{90}, std::size_t{93}}) {
    const CallRecord record(std::string_view(full).substr(0, length));
    EXPECT_EQ(CallKind(record), DirectionKind(record.Direction())) << length;
    EXPECT_EQ(CallSeconds(record), SecondsOfCall(record.Duration())) << length;
    EXPECT_EQ(Outcome([&] { return CallHour(record); }), Outcome([&] { return HourOfCall(record.Time()); }))
        << length;
  }
}

}  // namespace
}  // namespace cw
