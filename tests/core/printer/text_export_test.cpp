#include "printer/text_export.h"

#include <gtest/gtest.h>


#include "spool_test_files.h"
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
}

TEST(TextExport, ExportsWhatIsValidInADamagedSpoolAndListsTheRest) {
  TempFolder folder;
  const std::string bytes = SpoolFromText("export-damaged") + Bytes(MakeTextRecord(1, 0, 2, "cut")).substr(0, 300);
  std::vector<std::string> problems;
  EXPECT_EQ(Export(folder, bytes, &problems), Expected("damaged-spool.txt"));
  testing::ExpectMatchesFile(testing::Section("problems", problems), "printer/text-export/damaged-spool-problems.txt");
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
