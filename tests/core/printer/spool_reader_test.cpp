#include "printer/spool_reader.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "core/support/error_number.h"
#include "spool_test_files.h"
#include "support/runtime_error.h"
#include "testing/expected_file.h"

namespace cw {
namespace {

using testing::Bytes;
using testing::DefaultHeader;
using testing::SpoolBytes;
using testing::TempFolder;
using testing::WriteBytes;

// The problems a reader lists for the file, then the records it hands out
// as usable.
std::string ReadAll(const std::string& path) {
  SpoolReader reader(path);
  SpoolCommand command;
  std::string usable = "usable records:";
  while (reader.Next(command)) {
    if (command.usable) usable += " " + std::to_string(command.recordNumber);
  }
  std::vector<std::string> lines = reader.Problems().Lines();
  lines.push_back(usable);
  return testing::Section(std::filesystem::path(path).filename().string(), lines);
}

TEST(SpoolReader, DamagedFilesAreReadAsFarAsTheyGoAndTheirFaultsListed) {
  TempFolder folder;
  // A header with a unit and an orientation no document has.
  SpoolRecord header = DefaultHeader();
  PutInt16(header.data(), spool::kScaleMode, 9);
  PutInt16(header.data(), spool::kOrientation, 7);
  const std::pair<std::string, std::string> files[] = {
      // Cut short in the middle of a record, without ENDDOC.
      {"cut-short.spl", SpoolBytes(DefaultHeader(), {MakeTextRecord(1, 1, 1, "whole")}) +
                            Bytes(MakeTextRecord(1, 2, 2, "partial")).substr(0, 100)},
      {"strange-records.spl", testing::SpoolFromText("strange-records")},
      {"no-header.spl", "VPR"},  // less than a header
      {"unknown-unit.spl", SpoolBytes(header, {MakePageRecord(1, spool::kEndDoc)})}};
  std::string read;
  for (const auto& [name, bytes] : files) {
    WriteBytes(folder.File(name), bytes);
    read += ReadAll(folder.File(name));
  }
  testing::ExpectMatchesFile(read, "printer/damaged-spools.txt");
  EXPECT_FALSE(SpoolReader(folder.File("no-header.spl")).HasHeader());
  EXPECT_EQ(SpoolReader(folder.File("unknown-unit.spl")).TwipsPerUnit(), 1.0);
}

TEST(SpoolReader, KeepsOnlyTheFirstThousandProblemsWordForWord) {
  TempFolder folder;
  std::vector<SpoolRecord> records(1500, MakePageRecord(1, "JUNK"));
  const std::string path = folder.File("junk.spl");
  WriteBytes(path, SpoolBytes(DefaultHeader(), records));
  SpoolReader reader(path);
  SpoolCommand command;
  while (reader.Next(command)) {
  }
  EXPECT_EQ(reader.Problems().Count(), 1501);  // and the missing ENDDOC
  const std::vector<std::string> lines = reader.Problems().Lines();
  ASSERT_EQ(lines.size(), 1001u);
  EXPECT_EQ(lines.back(), "... and 501 more problems");
}

TEST(SpoolReader, MissingOrUnreadableFilesAreErrors) {
  TempFolder folder;
  EXPECT_EQ(test::ErrorNumberOf([&] { SpoolReader reader(folder.File("absent.spl")); }), err::kFileNotFound);
  EXPECT_EQ(test::ErrorNumberOf([&] { SpoolReader reader(folder.Path()); }), err::kPathFileAccess);
  // A named pipe is refused at once, not waited on for a writer.
  const std::string pipe = folder.File("pipe.spl");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(test::ErrorNumberOf([&] { SpoolReader reader(pipe); }), err::kPathFileAccess);
}

}  // namespace
}  // namespace cw
