// The fast record decoder against the plain one: over lines of the common
// shape with every field varied, every fixture log, and random bytes, both
// must take the same lines as common, decode the same values, and leave the
// same lines (and errors) to the general conversions. On a common line the
// values must also be those the general conversions give its fields.

#include "data/record_decoder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "data/get_record.h"
#include "log_lines.h"
#include "support/runtime_error.h"

namespace cw {
namespace {

using testing::Call;

// A field's value, or the error that reading it raised.
struct Outcome {
  long value = 0;
  int error = 0;
  std::string description;
  std::string source;
  friend bool operator==(const Outcome&, const Outcome&) = default;
};

template <class Read>
Outcome OutcomeOf(Read&& read) {
  try {
    return {static_cast<long>(read()), 0, {}, {}};
  } catch (const RuntimeError& error) {
    return {-1, error.Number(), error.Description(), error.Source()};
  }
}

std::string Shown(std::string_view line) { return ::testing::PrintToString(std::string(line)); }

// Decodes line both ways and checks that they agree; returns whether the
// line was of the common shape.
bool ExpectSameDecoding(std::string_view line) {
  const CallRecord record(line);
  const DecodedRecord fast(record, CommonDecoder::kFast);
  const DecodedRecord plain(record, CommonDecoder::kPlain);
  EXPECT_EQ(fast.Common(), plain.Common()) << Shown(line);
  const auto fields = [](const DecodedRecord& call) {
    return std::vector<Outcome>{OutcomeOf([&] { return call.Kind(); }), OutcomeOf([&] { return call.Hour(); }),
                                OutcomeOf([&] { return call.Line(); }), OutcomeOf([&] { return call.Seconds(); })};
  };
  const std::vector<Outcome> decoded = fields(fast);
  EXPECT_EQ(decoded, fields(plain)) << Shown(line);
  // What the general conversions give every field of any line.
  const std::vector<Outcome> converted = {
      OutcomeOf([&] { return CallKind(record); }), OutcomeOf([&] { return CallHour(record); }),
      OutcomeOf([&] { return CallLine(record); }), OutcomeOf([&] { return CallSeconds(record); })};
  EXPECT_EQ(decoded, converted) << Shown(line);
  return fast.Common();
}

// Lines of the common shape, every field drawn from its whole range.
std::vector<std::string> CommonLines(std::mt19937& random, int count) {
  auto pick = [&random](int least, int most) { return std::uniform_int_distribution<int>(least, most)(random); };
  auto two = [](int value) { return std::string(1, static_cast<char>('0' + value / 10)) + char('0' + value % 10); };
  const std::vector<std::string> directions = {"In", " In", "Out", "in", "OUT", "", "??", "Ou"};
  std::vector<std::string> lines;
  // A number right-aligned in its columns; below 10 either after a blank or
  // with a leading zero.
  auto aligned = [&](int value, std::size_t width) {
    const std::string digits = value < 10 && pick(0, 1) == 0 ? std::to_string(value) : two(value);
    return std::string(width - digits.size(), ' ') + digits;
  };
  for (int n = 0; n < count; ++n) {
    const std::string time = aligned(pick(0, 12), 2) + ":" + two(pick(0, 59)) + "AaPp"[pick(0, 3)] + "Mm"[pick(0, 1)];
    const std::string duration = std::to_string(pick(0, 9)) + ":" + two(pick(0, 99)) + ":" + two(pick(0, 99));
    lines.push_back(Call().Time(time).Line(aligned(pick(0, 99), 3)).Duration(duration)
                        .Direction(directions[static_cast<std::size_t>(pick(0, 7))])
                        .Answered(pick(0, 1) == 0 ? "Yes" : "No").Text());
  }
  return lines;
}

TEST(RecordDecoder, CommonLinesAndEveryChangeOfOneByteDecodeAlike) {
  std::mt19937 random(20261125);
  // Bytes that sit at the edges of what each column accepts.
  std::string edges = " /0123456789:;@AaMmPpINnOut\x80\xFF";
  edges += '\0';
  int changedCommon = 0;
  for (const std::string& line : CommonLines(random, 60)) {
    ASSERT_TRUE(ExpectSameDecoding(line)) << Shown(line);
    // Every column up to the first past the duration, changed to each edge
    // byte; and the line cut short at every length.
    for (std::size_t at = 0; at < kCommonShapeLength; ++at) {
      for (char edge : edges) {
        std::string changed = line;
        changed[at] = edge;
        changedCommon += ExpectSameDecoding(changed);
      }
    }
    for (std::size_t length = 0; length < line.size(); ++length) ExpectSameDecoding(std::string_view(line).substr(0, length));
  }
  // Changes to the columns the shape does not look at (date, number, name
  // and the separators) leave a line common; changes to the others mostly not.
  EXPECT_GT(changedCommon, 60 * 60 * static_cast<int>(edges.size()));
  EXPECT_LT(changedCommon, 60 * 90 * static_cast<int>(edges.size()));
}

// Every log among the test data, and the report fuzzer's seeds (a log after
// a short header).
std::vector<std::string> FixtureLogs() {
  namespace fs = std::filesystem;
  std::vector<std::string> logs;
  const fs::path data = CW_TEST_DATA_DIR;
  auto add = [&logs](const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    logs.emplace_back(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  };
  for (const auto& entry : fs::recursive_directory_iterator(data)) {
    if (entry.path().extension() == ".log") add(entry.path());
  }
  const fs::path seeds = data.parent_path() / "fuzz" / "corpus" / "reports";
  if (fs::exists(seeds)) {
    for (const auto& entry : fs::directory_iterator(seeds)) add(entry.path());
  }
  return logs;
}

TEST(RecordDecoder, FixtureLogsDecodeAlike) {
  int records = 0;
  int common = 0;
  for (const std::string& log : FixtureLogs()) {
    // The records as a report's walk hands them out, then every raw line.
    ReaderState reader;
    for (std::string_view line; (line = GetRecord(log, false, reader)) != kDone; ++records) {
      common += ExpectSameDecoding(line);
    }
    for (std::size_t start = 0; start < log.size();) {
      const std::size_t end = std::min(log.find('\n', start), log.size());
      ExpectSameDecoding(std::string_view(log).substr(start, end - start));
      start = end + 1;
    }
  }
  // The fixtures hold calls of both kinds of line.
  EXPECT_GT(common, 20);
  EXPECT_GT(records - common, 20);
}

TEST(RecordDecoder, RandomBytesDecodeAlike) {
  std::mt19937 random(7);
  auto pick = [&random](int least, int most) { return std::uniform_int_distribution<int>(least, most)(random); };
  // Any byte at all, and bytes the shape is made of, so that lines come
  // close to it.
  const std::string near = " 0123456789:AaPpMmInOut";
  for (int n = 0; n < 5000; ++n) {
    std::string line(static_cast<std::size_t>(pick(0, 120)), ' ');
    const bool anyByte = n % 2 == 0;
    for (char& c : line) {
      c = anyByte ? static_cast<char>(pick(0, 255)) : near[static_cast<std::size_t>(pick(0, static_cast<int>(near.size()) - 1))];
    }
    ExpectSameDecoding(line);
  }
}

}  // namespace
}  // namespace cw
