#include "printer/spool_reader.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cmath>
#include <limits>

#include "core/support/error_number.h"
#include "spool_test_files.h"
#include "support/runtime_error.h"

namespace cw {
namespace {

using testing::Bytes;
using testing::DefaultHeader;
using testing::SpoolBytes;
using testing::TempFolder;
using testing::WriteBytes;

std::vector<std::string> ReadAll(const std::string& path, std::vector<std::int64_t>* usable = nullptr) {
  SpoolReader reader(path);
  SpoolCommand command;
  while (reader.Next(command)) {
    if (usable != nullptr && command.usable) usable->push_back(command.recordNumber);
  }
  return reader.Problems().Lines();
}

TEST(SpoolReader, DamagedFilesAreReadAsFarAsTheyGoAndTheirFaultsListed) {
  TempFolder folder;
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();

  // A file cut short in the middle of a record, without ENDDOC.
  const std::string cut = folder.File("cut-short.spl");
  WriteBytes(cut, SpoolBytes(DefaultHeader(), {MakeTextRecord(1, 1, 1, "whole")}) +
                      Bytes(MakeTextRecord(1, 2, 2, "partial")).substr(0, 100));
  std::vector<std::int64_t> usable;
  EXPECT_EQ(ReadAll(cut, &usable),
            (std::vector<std::string>{"record 3: cut short: only 100 of 422 bytes; ignored",
                                      "no ENDDOC record: the file ends after record 2"}));
  EXPECT_EQ(usable, (std::vector<std::int64_t>{2}));

  // Unknown keywords, impossible pages, coordinates and font sizes.
  const std::string odd = folder.File("strange-records.spl");
  WriteBytes(odd, SpoolBytes(DefaultHeader(), {MakePageRecord(1, "CIRCLE"),
                                               MakePageRecord(1, ""),
                                               MakeTextRecord(0, 1, 1, "page zero"),
                                               MakeTextRecord(1, nan, 1, "nan"),
                                               MakeGraphicsRecord(1, spool::kLineOut, 0, inf, 1, 1),
                                               MakeImageRecord(1, "x.bmp", 1e300, 0, 1, 1),
                                               MakeFontRecord(1, "Arial", 0, false, false, false),
                                               MakeTextRecord(1, -2, 10.5, "fine"),
                                               MakePageRecord(1, spool::kEndDoc),
                                               MakeTextRecord(1, 0, 0, "after the end")}));
  usable.clear();
  EXPECT_EQ(ReadAll(odd, &usable),
            (std::vector<std::string>{
                "record 2: unknown keyword \"CIRCLE\"; skipped",
                "record 3: no keyword; skipped",
                "record 4: page number 0 is not a page; skipped",
                "record 5: text position (nan, 1) is off any page; skipped",
                "record 6: LINEOUT coordinates (0, inf, 1, 1) are off any page; skipped",
                "record 7: IMAGEOUT coordinates (1e+300, 0, 1, 1) are off any page; skipped",
                "record 8: font size 0 is not a usable size; skipped",
                "record 11: follows the ENDDOC of record 10",
            }));
  EXPECT_EQ(usable, (std::vector<std::int64_t>{9, 10, 11}));

  // Less than a header.
  const std::string tiny = folder.File("no-header.spl");
  WriteBytes(tiny, "VPR");
  SpoolReader reader(tiny);
  EXPECT_FALSE(reader.HasHeader());
  SpoolCommand command;
  EXPECT_FALSE(reader.Next(command));
  EXPECT_EQ(reader.Problems().Lines(),
            (std::vector<std::string>{"the file holds no header record (3 bytes)"}));

  // A header with a unit and an orientation no document has.
  SpoolRecord header = DefaultHeader();
  PutInt16(header.data(), spool::kScaleMode, 9);
  PutInt16(header.data(), spool::kOrientation, 7);
  const std::string units = folder.File("unknown-unit.spl");
  WriteBytes(units, SpoolBytes(header, {MakePageRecord(1, spool::kEndDoc)}));
  SpoolReader unitReader(units);
  EXPECT_EQ(unitReader.TwipsPerUnit(), 1.0);
  EXPECT_EQ(unitReader.Problems().Lines(),
            (std::vector<std::string>{
                "record 1: ScaleMode 9 is not a known unit; coordinates are read as twips",
                "record 1: Orientation 7 is neither portrait (1) nor landscape (2); read as portrait"}));
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
