// cwreport dump and export, run as the program itself on spool files made
// record by record with the engine's own record layouts.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "core/printer/spool_test_files.h"
#include "printer/spool_format.h"
#include "run_cwreport.h"

namespace cw::testing {
namespace {

namespace fs = std::filesystem;

// A spool: the header with its creation values and a title, then the records.
std::string Spool(const std::vector<SpoolRecord>& records, const std::string& title = {}) {
  SpoolRecord header = DefaultHeader();
  PutText(header.data(), spool::kTitle, spool::kTitleWidth, title);
  return SpoolBytes(header, records);
}

// Two pages of a listing in inches, the second in bold Times, with a rule
// and a box.
std::string TwoPageSpool(const std::string& picture = {}) {
  std::vector<SpoolRecord> records = {
      MakeFontRecord(1, "Arial", 9, false, false, false),
      MakeTextRecord(1, 0.5, 1.4, "Total Calls"),
      MakeTextRecord(1, 3, 1.4, "caf\xE9 \"quoted\""),
      MakeGraphicsRecord(1, spool::kLineOut, 0.5, 1.6, 7.5, 1.6),
      MakeGraphicsRecord(1, spool::kBoxOut, 0.5, 2, 2, 3),
  };
  if (!picture.empty()) records.push_back(MakeImageRecord(1, picture, 1, 4, 2, 1.5));
  records.push_back(MakePageRecord(1, spool::kNewPage));
  records.push_back(MakeFontRecord(2, "Times New Roman", 12, true, false, true));
  records.push_back(MakeTextRecord(2, 1, 1, "Second page"));
  records.push_back(MakePageRecord(2, spool::kEndDoc));
  return Spool(records, "Daily Call Statistics");
}

using SpoolCommands = CliTest;

// What each command prints and leaves is in the transcript; here, what the
// export of every output wrote.
TEST_F(SpoolCommands, DumpAndExportTellWhatTheyFoundAndLeaveNoHalfWrittenFile) {
  Write("chart.spool", TwoPageSpool("C:\\Chart.bmp"));
  const std::string spool = Write("listing.spool", TwoPageSpool());
  // The last record cut short.
  Write("damaged.spool", Spool({MakeTextRecord(1, 1, 1, "first"), MakePageRecord(1, "FROB"),
                                MakeTextRecord(1, 1, 2, "tab\there")}) + std::string(100, 'x'));
  Write("stub.spool", "VPR");  // shorter than a header
  Write("file", "a file, not a folder");
  ExpectTranscript("spool-commands.txt");
  const fs::path pages = Path("pages");

  // The text export on stdout is the same as in the file.
  const ProgramRun toStdout = Cwreport("export " + Quote(spool));
  ExpectRun(toStdout, 0);
  EXPECT_EQ(toStdout.out, ReadFile(Path("listing.txt")));
  EXPECT_NE(toStdout.out.find("caf\xE9"), std::string::npos) << "Windows-1252 bytes kept";
  // Which text lands on which page of the PDF is PdfPageDeviceTest's.
  EXPECT_TRUE(ReadFile(Path("listing.pdf")).starts_with("%PDF-"));

  // A4 at 50 dpi: 210 x 297 mm.
  for (const char* page : {"page-0001.png", "page-0002.png"}) EXPECT_TRUE(fs::exists(pages / page)) << page;
  EXPECT_FALSE(fs::exists(pages / "page-0003.png"));
  // The width and height, big-endian in the PNG header.
  EXPECT_EQ(ReadFile(pages / "page-0001.png").substr(16, 8), std::string("\0\0\x01\x9D\0\0\x02\x49", 8));
}

}  // namespace
}  // namespace cw::testing
