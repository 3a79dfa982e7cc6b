#include "printer/spool_writer.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <vector>

#include "core/support/error_number.h"
#include "spool_test_files.h"
#include "support/runtime_error.h"

namespace cw {
namespace {

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

}  // namespace
}  // namespace cw
