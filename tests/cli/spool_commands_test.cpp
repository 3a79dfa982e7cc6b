// cwreport dump and export, run as the program itself on spool files made
// record by record with the engine's own record layouts.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "printer/spool_format.h"
#include "printer/spool_writer.h"
#include "run_cwreport.h"

namespace cw::testing {
namespace {

namespace fs = std::filesystem;

class SpoolCommands : public CliTest {
 protected:
  // A spool: the header with its creation values (and a title), then the records.
  std::string WriteSpool(const std::string& name, const std::vector<SpoolRecord>& records,
                         const std::string& title = {}) {
    SpoolRecord header{};
    ApplyHeaderCreationValues(header);
    PutText(header.data(), spool::kTitle, spool::kTitleWidth, title);
    const std::string path = Path(name);
    SpoolWriter writer(path, header);
    for (const SpoolRecord& record : records) writer.Append(record);
    writer.Close();
    return path;
  }

  // Two pages of a listing in inches, the second in bold Times, with a rule
  // and a box.
  std::string WriteTwoPageSpool(const std::string& name, const std::string& picture = {}) {
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
    return WriteSpool(name, records, "Daily Call Statistics");
  }

};

// What each command prints and leaves is in the transcript; here, what the
// export of every output wrote.
TEST_F(SpoolCommands, DumpAndExportTellWhatTheyFoundAndLeaveNoHalfWrittenFile) {
  WriteTwoPageSpool("chart.spool", "C:\\Chart.bmp");
  const std::string spool = WriteTwoPageSpool("listing.spool");
  const std::string damaged = WriteSpool("damaged.spool", {MakeTextRecord(1, 1, 1, "first"), MakePageRecord(1, "FROB"),
                                                           MakeTextRecord(1, 1, 2, "tab\there")});
  std::ofstream(damaged, std::ios::binary | std::ios::app) << std::string(100, 'x');
  Write("stub.spool", "VPR");  // shorter than a header
  Write("file", "a file, not a folder");
  ExpectTranscript("spool-commands.txt");
  const fs::path pages = Path("pages");

  // The text export on stdout is the same as in the file.
  const ProgramRun toStdout = Cwreport("export " + Quote(spool));
  ExpectRun(toStdout, 0);
  EXPECT_EQ(toStdout.out, ReadFile(Path("listing.txt")));
  EXPECT_THAT(toStdout.out, HasSubstr("Total Calls"));
  EXPECT_NE(toStdout.out.find("caf\xE9"), std::string::npos) << "Windows-1252 bytes kept";

  int status = -1;
  const std::string first = RunShell("pdftotext -layout -f 1 -l 1 " + Quote(Path("listing.pdf")) + " -", &status);
  EXPECT_EQ(status, 0);
  EXPECT_THAT(first, HasSubstr("Total Calls"));
  EXPECT_THAT(first, HasSubstr("caf\u00e9 \"quoted\""));
  EXPECT_THAT(first, Not(HasSubstr("Second page")));

  // A4 at 50 dpi: 210 x 297 mm.
  for (const char* page : {"page-0001.png", "page-0002.png"}) EXPECT_TRUE(fs::exists(pages / page)) << page;
  EXPECT_FALSE(fs::exists(pages / "page-0003.png"));
  // The width and height, big-endian in the PNG header.
  EXPECT_EQ(ReadFile(pages / "page-0001.png").substr(16, 8), std::string("\0\0\x01\x9D\0\0\x02\x49", 8));
}

}  // namespace
}  // namespace cw::testing
