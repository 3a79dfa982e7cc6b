#include "printer/text_export.h"

#include <gtest/gtest.h>


#include "core/support/error_number.h"
#include "spool_test_files.h"
#include "support/runtime_error.h"
#include "testing/expected_file.h"

namespace cw {
namespace {

using testing::Bytes;
using testing::DefaultHeader;
using testing::HeaderWithScaleMode;
using testing::ReadBytes;
using testing::SpoolBytes;
using testing::SpoolFromText;
using testing::TempFolder;
using testing::WriteBytes;

std::string Expected(const std::string& name) { return testing::ExpectedFile("printer/text-export/" + name); }

// Exports the spool made of `bytes` and returns the text file's bytes.
std::string Export(TempFolder& folder, const std::string& bytes, std::vector<std::string>* problems = nullptr) {
  const std::string spool = folder.File("case.spl");
  const std::string text = folder.File("case.txt");
  WriteBytes(spool, bytes);
  SpoolProblems found = ExportSpoolToTextFile(spool, text);
  if (problems != nullptr) *problems = found.Lines();
  return ReadBytes(text);
}

TEST(TextExport, WritesEachPageLineAtItsColumns) {
  TempFolder folder;
  const std::string spool = SpoolFromText("export-report");
  std::vector<std::string> problems;
  EXPECT_EQ(Export(folder, spool, &problems), Expected("report-three-pages.txt"));
  EXPECT_EQ(problems, (std::vector<std::string>{}));
}

TEST(TextExport, RoundsColumnsHalfToEvenAndTabsPastColumnsOntoTheNextLine) {
  TempFolder folder;
  EXPECT_EQ(Export(folder, SpoolFromText("columns-in-twips", HeaderWithScaleMode(1))),
            Expected("columns-half-to-even.txt"));
  // Pixels are 15 twips: 80 pixels are column 12.
  EXPECT_EQ(Export(folder, SpoolBytes(HeaderWithScaleMode(3),
                                      {MakeTextRecord(1, 80, 0, "x"), MakePageRecord(1, spool::kEndDoc)})),
            std::string(11, ' ') + "x");
}

TEST(TextExport, ExportsWhatIsValidInADamagedSpoolAndListsTheRest) {
  TempFolder folder;
  const std::string bytes = SpoolFromText("export-damaged") + Bytes(MakeTextRecord(1, 0, 2, "cut")).substr(0, 300);
  std::vector<std::string> problems;
  EXPECT_EQ(Export(folder, bytes, &problems), Expected("damaged-spool.txt"));
  testing::ExpectMatchesFile(testing::Section("problems", problems), "printer/text-export/damaged-spool-problems.txt");
}

TEST(TextExport, AFailedWriteLeavesNothingUnderTheTargetName) {
  TempFolder folder;
  std::vector<SpoolRecord> rows;
  for (int i = 0; i < 20000; ++i) rows.push_back(MakeTextRecord(1, 0, i + 1, "a row of the report"));
  const std::string spool = folder.File("big.spl");
  WriteBytes(spool, SpoolBytes(DefaultHeader(), rows));
  const std::string target = folder.File("report.txt");
  WriteBytes(target, "the previous report");

  {
    // Room for the spool, not for the text beside it.
    testing::FileSizeLimit fullDisk(100000);
    const test::RaisedError error = test::ErrorOf([&] { ExportSpoolToTextFile(spool, target); });
    EXPECT_EQ(error.number, err::kPathFileAccess);
    EXPECT_NE(error.description.find(target), std::string::npos) << error.description;
  }
  EXPECT_EQ(ReadBytes(target), "the previous report");
  EXPECT_EQ(folder.Names().size(), 2u);  // no temporary file left behind
}

TEST(TextExport, CountsProgressAgainstTheWholeRecordsOfTheFile) {
  TempFolder folder;
  const std::string spool = folder.File("p.spl");
  WriteBytes(spool, SpoolBytes(DefaultHeader(), {MakeTextRecord(1, 0, 0, "x"), MakePageRecord(1, spool::kEndDoc),
                                                 MakeTextRecord(1, 0, 0, "after")}));
  std::vector<std::pair<std::int64_t, std::int64_t>> steps;
  ExportSpoolToTextFile(spool, folder.File("p.txt"),
                        [&](std::int64_t done, std::int64_t total) { steps.emplace_back(done, total); });
  EXPECT_EQ(steps, (std::vector<std::pair<std::int64_t, std::int64_t>>{{1, 4}, {2, 4}}));
}

}  // namespace
}  // namespace cw
