#include "printer/page_locator.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>
#include <vector>

#include "engine_test_rig.h"
#include "printer/orl_printer.h"
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

// Five pages, page 3 empty; record numbers on the right.
std::string FivePages() {
  return SpoolBytes(DefaultHeader(), {
                                         MakeFontRecord(1, "Arial", 9, false, false, false),  // 2
                                         MakeTextRecord(1, 1, 1, "one"),                     // 3
                                         MakeTextRecord(1, 1, 2, "one more"),                // 4
                                         MakePageRecord(1, spool::kNewPage),                 // 5
                                         MakeTextRecord(2, 1, 1, "two"),                     // 6
                                         MakePageRecord(2, spool::kNewPage),                 // 7
                                         MakePageRecord(3, spool::kNewPage),                 // 8
                                         MakeTextRecord(4, 1, 1, "four"),                    // 9
                                         MakePageRecord(4, spool::kNewPage),                 // 10
                                         MakeTextRecord(5, 1, 1, "five"),                    // 11
                                         MakeTextRecord(5, 1, 2, "five more"),               // 12
                                         MakeTextRecord(5, 1, 3, "five again"),              // 13
                                         MakePageRecord(5, spool::kEndDoc),                  // 14
                                     });
}

TEST(PageLocatorTest, WalksForwardAndBackFromWhereTheFileStands) {
  TempFolder folder;
  const std::string path = folder.File("five.spl");
  WriteBytes(path, FivePages());
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
  EXPECT_EQ(cases, 14);
}

TEST(PageLocatorTest, HeaderOnlyFileStartsAtRecordTwo) {
  TempFolder folder;
  const std::string path = folder.File("header.spl");
  WriteBytes(path, SpoolBytes(DefaultHeader(), {}));
  const PageLocator locator = LocatorFor(path);
  EXPECT_EQ(locator.LocatePageRecord(1, 0, 2), 2);
  EXPECT_EQ(locator.LocatePageRecord(1, 3, 2), 2);
}

// Pages as the engine writes them: whichever page is shown and wherever
// drawing left the file, the answer is the wanted page's first record.
TEST(PageLocatorTest, EveryPageFromEveryPageOfAnEngineDocument) {
  TempFolder folder;
  ::setenv("TMPDIR", folder.Path().c_str(), 1);
  testing::EngineTestRig rig;
  OrlPrinter document(rig.Environment());
  document.BeginDoc();
  document.SetScaleMode(5);
  document.SetAutoHeadings(true);
  document.SetAutoNewPage(true);
  document.SetAutoHeadingsFontName("Arial");
  document.SetAutoHeadingsFontSize(10);
  document.SetFont("Arial", 10, 0);
  for (int row = 0; row < 300; ++row) {
    document.TextOut(0.5, "row " + std::to_string(row));
    document.NewLine();
  }
  document.EndDoc();
  ::unsetenv("TMPDIR");
  ASSERT_GE(document.TotalPages(), 5);

  const PageLocator locator = LocatorFor(document.PrintFile());
  const std::vector<SpoolCommand> commands = testing::ReadCommands(document.PrintFile());
  auto pageOf = [&](std::int64_t record) { return commands.at(static_cast<std::size_t>(record - 2)).page; };
  // Where drawing page `shown` leaves the file: just past its NEWPAGE record.
  auto after = [&](std::int16_t shown) {
    std::int64_t record = *locator.Index().FirstRecord(shown);
    while (commands.at(static_cast<std::size_t>(record - 2)).keyword != SpoolKeyword::kNewPage &&
           commands.at(static_cast<std::size_t>(record - 2)).keyword != SpoolKeyword::kEndDoc) {
      ++record;
    }
    return record + 1;
  };
  const std::int16_t last = document.TotalPages();
  for (std::int16_t shown = 1; shown <= last; ++shown) {
    for (std::int16_t wanted = 1; wanted <= last; ++wanted) {
      const std::int64_t record = locator.LocatePageRecord(wanted, shown, after(shown));
      EXPECT_EQ(pageOf(record), wanted) << "from page " << shown << " to " << wanted;
      if (record > 2) {
        EXPECT_LT(pageOf(record - 1), wanted) << "from page " << shown << " to " << wanted;
      }
    }
  }
  document.DestroyReport();
}

}  // namespace
}  // namespace cw
