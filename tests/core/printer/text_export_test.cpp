#include "printer/text_export.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "spool_test_files.h"
#include "testing/expected_file.h"

namespace cw {
namespace {

using testing::Bytes;
using testing::ReadBytes;
using testing::SpoolFromText;
using testing::TempFolder;
using testing::WriteBytes;

std::string Expected(const std::string& name) { return testing::ExpectedFile("printer/text-export/" + name); }

// The text file made from a spool of `bytes`, the problems listed, and the
// progress steps (records done, of all the records of the file).
struct Exported {
  std::string text;
  std::vector<std::string> problems;
  std::vector<std::pair<std::int64_t, std::int64_t>> steps;
};

Exported Export(const std::string& bytes) {
  TempFolder folder;
  WriteBytes(folder.File("case.spl"), bytes);
  Exported exported;
  const auto progress = [&](std::int64_t done, std::int64_t total) { exported.steps.emplace_back(done, total); };
  exported.problems = ExportSpoolToTextFile(folder.File("case.spl"), folder.File("case.txt"), progress).Lines();
  exported.text = ReadBytes(folder.File("case.txt"));
  return exported;
}

TEST(TextExport, WritesEachPageLineAtItsColumnsAndCountsProgressUpToTheEndDoc) {
  const Exported exported = Export(SpoolFromText("export-report"));
  EXPECT_EQ(exported.text, Expected("report-three-pages.txt"));
  EXPECT_EQ(exported.problems, (std::vector<std::string>{}));
  // The ENDDOC is record 15 of 16: the record after it is counted in the
  // whole, never read.
  ASSERT_EQ(exported.steps.size(), 14u);
  EXPECT_EQ(exported.steps.front(), (std::pair<std::int64_t, std::int64_t>{1, 16}));
  EXPECT_EQ(exported.steps.back(), (std::pair<std::int64_t, std::int64_t>{14, 16}));
}

TEST(TextExport, RoundsColumnsHalfToEvenAndTabsPastColumnsOntoTheNextLine) {
  SpoolRecord twips = testing::DefaultHeader();
  PutInt16(twips.data(), spool::kScaleMode, 1);
  EXPECT_EQ(Export(SpoolFromText("columns-in-twips", twips)).text, Expected("columns-half-to-even.txt"));
}

TEST(TextExport, ExportsWhatIsValidInADamagedSpoolAndListsTheRest) {
  const Exported exported =
      Export(SpoolFromText("export-damaged") + Bytes(MakeTextRecord(1, 0, 2, "cut")).substr(0, 300));
  EXPECT_EQ(exported.text, Expected("damaged-spool.txt"));
  testing::ExpectMatchesFile(testing::Section("problems", exported.problems),
                             "printer/text-export/damaged-spool-problems.txt");
}

}  // namespace
}  // namespace cw
