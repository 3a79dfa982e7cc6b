#include "data/log_buffer.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "core/support/error_number.h"
#include "data/oldest_log_date.h"
#include "log_lines.h"
#include "support/runtime_error.h"

namespace cw {
namespace {

using testing::ScratchFile;

TEST(LogBuffer, HoldsTheWholeFileByteForByte) {
  using namespace std::string_literals;
  const std::string bytes = "01/15/2024 line one\r\n\0\xff\x80 binary\r\nno line end"s;
  ScratchFile file(bytes);
  const LogBuffer buffer = LogBuffer::Load(file.Path());
  EXPECT_EQ(buffer.Text(), bytes);

  ScratchFile empty("");
  EXPECT_EQ(LogBuffer::Load(empty.Path()).Size(), 0u);
  EXPECT_EQ(LogBuffer().Text(), "");

  // A log of several megabytes reads the same, up to its last byte, and
  // stays valid after the buffer is moved.
  std::string large;
  for (int i = 0; large.size() < (std::size_t{5} << 20); ++i) large += "line " + std::to_string(i) + "\r\n";
  large += "tail";
  ScratchFile largeFile(large);
  LogBuffer loaded = LogBuffer::Load(largeFile.Path());
  const LogBuffer moved = std::move(loaded);
  EXPECT_EQ(moved.Size(), large.size());
  EXPECT_TRUE(moved.Text() == large);
}

TEST(LogBuffer, RotatingTheLogAfterLoadingChangesNothingRead) {
  // Log rotation rewrites or truncates the file while a report still walks
  // what it loaded. The buffer must keep the old bytes, at every size (a
  // buffer that read the file through a mapping would die here on its first
  // byte past the new end).
  for (const std::size_t size : {std::size_t{100}, std::size_t{5} << 20, std::size_t{9} << 20}) {
    std::string bytes;
    while (bytes.size() < size) bytes += "01/15/2024 9:05AM  5551234567 line " + std::to_string(bytes.size()) + "\r\n";
    ScratchFile file(bytes);
    const LogBuffer buffer = LogBuffer::Load(file.Path());
    {
      std::ofstream rewrite(file.Path(), std::ios::binary | std::ios::in | std::ios::out);
      rewrite << std::string(4096, 'X');
    }
    std::filesystem::resize_file(file.Path(), 0);
    ASSERT_EQ(buffer.Size(), bytes.size()) << size;
    EXPECT_TRUE(buffer.Text() == bytes) << size;
  }
}

TEST(LogBuffer, MissingOrUnreadableFileNamesTheFile) {
  const std::string missing = (std::filesystem::temp_directory_path() / "cw_no_such_log.log").string();
  const std::string folder = std::filesystem::temp_directory_path().string();
  for (const auto& [file, number] : {std::pair{missing, err::kFileNotFound}, {folder, err::kPathFileAccess}}) {
    const test::RaisedError error = test::ErrorOf([&] { LogBuffer::Load(file); });
    EXPECT_EQ(error.number, number) << file;
    EXPECT_NE(error.description.find(file), std::string::npos) << error.description;
  }

  // A named pipe in place of the log is refused at once rather than waited on.
  const std::string pipe = (std::filesystem::temp_directory_path() / "cw_data_test_pipe").string();
  std::filesystem::remove(pipe);
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(test::ErrorNumberOf([&] { LogBuffer::Load(pipe); }), err::kPathFileAccess);
  std::filesystem::remove(pipe);
}

TEST(OldestLogDate, TakesTheFirstLinesDateOrToday) {
  const CivilDate today = CivilDate::FromYmd(2024, 6, 7);
  // Undated (today) only when neither character 3 nor character 6 is "/";
  // a first line shorter than ten characters is taken as it is.
  for (const auto& [contents, date] : {std::pair{"03/01/2024 9:05AM rest of the first call\r\n04/01/2024 later\r\n",
                                                 "03/01/2024"},
                                       {"Call log started\r\n03/01/2024 ...\r\n", "06/07/2024"},
                                       {"03-01/2024 ...\r\n", "03-01/2024"}, {"ab/cd-efgh ...\r\n", "ab/cd-efgh"},
                                       {"1/2/\r\n", "06/07/2024"}, {"12/4/24\r\n", "12/4/24"}, {"", "06/07/2024"}}) {
    ScratchFile file(contents);
    EXPECT_EQ(OldestLogDate(file.Path(), today), date) << contents;
  }
}

TEST(OldestLogDate, NoPathOrNoFileLeavesTheDateAlone) {
  const CivilDate today = CivilDate::FromYmd(2024, 6, 7);
  EXPECT_EQ(OldestLogDate("", today), std::nullopt);
  EXPECT_EQ(OldestLogDate("/nonexistent/folder/calls.log", today), std::nullopt);
  EXPECT_EQ(OldestLogDate(std::filesystem::temp_directory_path().string(), today), std::nullopt);
}

}  // namespace
}  // namespace cw
