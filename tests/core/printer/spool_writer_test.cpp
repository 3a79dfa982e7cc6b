#include "printer/spool_writer.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <vector>

#include "core/support/error_number.h"
#include "spool_test_files.h"
#include "support/runtime_error.h"

namespace cw {
namespace {

using testing::Bytes;
using testing::DefaultHeader;
using testing::ReadBytes;
using testing::TempFolder;

TEST(SpoolWriter, AppendsRecordsAfterTheHeaderInOrder) {
  TempFolder folder;
  const std::string path = folder.File("spool.tmp");
  SpoolWriter writer(path, DefaultHeader());
  // Enough records to cross several write blocks.
  std::vector<SpoolRecord> records;
  for (int i = 0; i < 1500; ++i) records.push_back(MakeTextRecord(1, i, 0, "row " + std::to_string(i)));
  records.push_back(MakePageRecord(1, spool::kEndDoc));
  for (const SpoolRecord& record : records) writer.Append(record);
  EXPECT_EQ(writer.NextRecord(), 1503);
  writer.Close();
  EXPECT_TRUE(ReadBytes(path) == testing::SpoolBytes(DefaultHeader(), records)) << "the 1502 records differ";
}

// A deleted spool reopened under its name is checked through OrlPrinter's
// SetFont; a file replaced under the same name is not reopened: the old
// handle goes on writing where it was.
TEST(SpoolWriter, AFileReplacedUnderItsNameIsNotReopened) {
  TempFolder folder;
  const std::string other = folder.File("VPR3.tmp");
  SpoolWriter replaced(other, DefaultHeader());
  ASSERT_EQ(std::remove(other.c_str()), 0);
  testing::WriteBytes(other, "other");
  EXPECT_FALSE(replaced.ReopenIfVanished());
  replaced.Close();
  EXPECT_EQ(ReadBytes(other), "other");
}

TEST(SpoolWriter, AFailedWriteIsReportedWhenItHappensAndAgainByClose) {
  TempFolder folder;
  const std::string path = folder.File("VPR5.tmp");
  testing::FileSizeLimit fullDisk(100 * kSpoolRecordSize);
  SpoolWriter writer(path, DefaultHeader());
  const test::RaisedError error =
      test::ErrorOf([&] { for (int i = 0; i < 2000; ++i) writer.Append(MakeTextRecord(1, 0, 0, "row")); });
  EXPECT_EQ(error.number, err::kPathFileAccess);
  EXPECT_NE(error.description.find(path), std::string::npos) << error.description;
  // Later records are dropped quietly; Close tells again.
  writer.Append(MakeTextRecord(1, 0, 0, "dropped"));
  EXPECT_THROW(writer.Close(), RuntimeError);
  // Closed now: appending is a bad file number.
  EXPECT_EQ(test::ErrorNumberOf([&] { writer.Append(MakeTextRecord(1, 0, 0, "late")); }), err::kBadFile);

  // A file that cannot take even the header fails where it is opened.
  if (::access("/dev/full", W_OK) == 0) {
    EXPECT_THROW(SpoolWriter("/dev/full", DefaultHeader()), RuntimeError);
  }
}

TEST(SpoolWriter, CreatesItsFileInTheTemporaryFolderWithThePrefix) {
  TempFolder folder;
  ::setenv("TMPDIR", folder.Path().c_str(), 1);
  auto writer = SpoolWriter::CreateTemporary(DefaultHeader());
  ::unsetenv("TMPDIR");
  EXPECT_EQ(writer->Path().rfind(folder.File("VPR"), 0), 0u) << writer->Path();
  writer->Close();
  EXPECT_EQ(ReadBytes(writer->Path()), Bytes(DefaultHeader()));

  ::setenv("TMPDIR", folder.File("missing").c_str(), 1);
  EXPECT_THROW(SpoolWriter::CreateTemporary(DefaultHeader()), RuntimeError);
  ::unsetenv("TMPDIR");
}

}  // namespace
}  // namespace cw
