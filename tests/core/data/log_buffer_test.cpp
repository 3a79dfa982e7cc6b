#include "data/log_buffer.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "core/support/error_number.h"
#include "data/oldest_log_date.h"
#include "support/runtime_error.h"
#include "testing/expected_file.h"

namespace cw {
namespace {

TEST(LogBuffer, HoldsTheWholeFileByteForByte) {
  using namespace std::string_literals;
  const testing::TempFolder folder;
  const std::string bytes = "01/15/2024 line one\r\n\0\xff\x80 binary\r\nno line end"s;
  EXPECT_EQ(LogBuffer::Load(folder.Write("calls.log", bytes)).Text(), bytes);
  EXPECT_EQ(LogBuffer::Load(folder.Write("empty.log", "")).Size(), 0u);
}

TEST(LogBuffer, RotatingTheLogAfterLoadingChangesNothingRead) {
  // Log rotation rewrites or truncates the file while a report still walks
  // what it loaded. The buffer must keep the old bytes, at every size (a
  // buffer that read the file through a mapping would die here on its first
  // byte past the new end), and stay valid after the buffer is moved.
  const testing::TempFolder folder;
  for (const std::size_t size : {std::size_t{100}, std::size_t{5} << 20, std::size_t{9} << 20}) {
    std::string bytes;
    while (bytes.size() < size) bytes += "01/15/2024 9:05AM  5551234567 line " + std::to_string(bytes.size()) + "\r\n";
    const std::string file = folder.Write("calls.log", bytes);
    LogBuffer loaded = LogBuffer::Load(file);
    const LogBuffer buffer = std::move(loaded);
    {
      std::ofstream rewrite(file, std::ios::binary | std::ios::in | std::ios::out);
      rewrite << std::string(4096, 'X');
    }
    std::filesystem::resize_file(file, 0);
    ASSERT_EQ(buffer.Size(), bytes.size()) << size;
    EXPECT_TRUE(buffer.Text() == bytes) << size;
  }
}

TEST(LogBuffer, MissingOrUnreadableFileNamesTheFile) {
  const testing::TempFolder folder;
  const std::string pipe = folder.File("pipe");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  // A named pipe in place of the log is refused at once rather than waited on.
  for (const auto& [file, number] : {std::pair{folder.File("missing.log"), err::kFileNotFound},
                                     {folder.Path().string(), err::kPathFileAccess}, {pipe, err::kPathFileAccess}}) {
    const test::RaisedError error = test::ErrorOf([&] { LogBuffer::Load(file); });
    EXPECT_EQ(error.number, number) << file;
    EXPECT_NE(error.description.find(file), std::string::npos) << error.description;
  }
}

TEST(OldestLogDate, TakesTheFirstLinesDateOrTodayOrNone) {
  const CivilDate today = CivilDate::FromYmd(2024, 6, 7);
  const testing::TempFolder folder;
  testing::ExpectTableMatches("data/oldest-log-dates.txt", [&folder, today](const std::string& contents) {
    return OldestLogDate(folder.Write("calls.log", testing::Unescaped(contents)), today).value_or("none");
  });
  // No path or no file leaves the date alone.
  for (const std::string& none : {std::string(), folder.File("missing/calls.log"), folder.Path().string()}) {
    EXPECT_EQ(OldestLogDate(none, today), std::nullopt) << none;
  }
}

}  // namespace
}  // namespace cw
