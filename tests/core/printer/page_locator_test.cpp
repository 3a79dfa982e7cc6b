#include "printer/page_locator.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "printer/spool_reader.h"
#include "spool_test_files.h"
#include "testing/case_table.h"

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

  for (const std::vector<std::string>& row : testing::TableCases("printer/page-locator.txt")) {
    const auto number = [&](std::size_t column) { return std::stoi(row.at(column)); };
    EXPECT_EQ(locator.LocatePageRecord(number(0), number(1), number(2)), number(3)) << row.at(4);
  }
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
