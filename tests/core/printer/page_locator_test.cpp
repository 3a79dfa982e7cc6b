#include "printer/page_locator.h"

#include <gtest/gtest.h>

#include <sstream>

#include "printer/spool_reader.h"
#include "spool_test_files.h"
#include "testing/expected_file.h"

namespace cw {
namespace {

using testing::DefaultHeader;
using testing::SpoolBytes;
using testing::TempFolder;
using testing::WriteBytes;

PageLocator LocatorFor(const std::string& path) {
  SpoolReader reader(path);
  SpoolPageIndex index = SpoolPageIndex::Build(reader);
  return PageLocator(std::move(index), reader.RecordCount());
}

TEST(PageLocatorTest, WalksForwardAndBackFromWhereTheFileStands) {
  TempFolder folder;
  const std::string path = folder.File("five.spl");
  WriteBytes(path, testing::SpoolFromText("five-pages"));
  const PageLocator locator = LocatorFor(path);
  ASSERT_EQ(locator.RecordCount(), 14);

  std::istringstream rows(testing::ExpectedFile("printer/page-locator.txt"));
  int cases = 0;
  for (std::string row; std::getline(rows, row);) {
    if (row.starts_with("#")) continue;
    std::istringstream fields(row);
    std::int16_t wanted = 0, shown = 0;
    std::int64_t position = 0, expected = 0;
    fields >> wanted >> shown >> position >> expected;
    EXPECT_EQ(locator.LocatePageRecord(wanted, shown, position), expected) << row;
    ++cases;
  }
  EXPECT_EQ(cases, 15);
}

TEST(PageLocatorTest, ShortFilesStartAtRecordTwoAndEndPastTheirLastRecord) {
  TempFolder folder;
  const std::string path = folder.File("short.spl");
  WriteBytes(path, SpoolBytes(DefaultHeader(), {}));
  EXPECT_EQ(LocatorFor(path).LocatePageRecord(1, 0, 2), 2);
  EXPECT_EQ(LocatorFor(path).LocatePageRecord(1, 3, 2), 2);
  WriteBytes(path, SpoolBytes(DefaultHeader(), {MakePageRecord(1, spool::kEndDoc)}));
  EXPECT_EQ(LocatorFor(path).LocatePageRecord(2, 1, 2), 3);
}

}  // namespace
}  // namespace cw
