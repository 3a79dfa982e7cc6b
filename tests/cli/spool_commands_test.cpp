// cwreport dump and export, run as the program itself on spool files made
// record by record with the engine's own record layouts.
#include <gtest/gtest.h>

#include <algorithm>
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

TEST_F(SpoolCommands, DumpPrintsEveryRecordOnOneLine) {
  const std::string spool = WriteTwoPageSpool("listing.spool", "C:\\Chart.bmp");
  const ProgramRun run = Cwreport("dump " + Quote(spool));
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out,
            "     1     - HEADER   Orientation=1 ScaleMode=5 Spacing=1.3 AutoHeadings=False "
            "AutoHeadingsFontName=\"Arial\" AutoHeadingsFontSize=12 AutoHeadingsFontAttr=0 AutoNewPage=False "
            "Title=\"Daily Call Statistics\" SubTitle=\"\"\n"
            "     2     1 SETFONT  name=\"Arial\" size=9 bold=False italic=False underline=False\n"
            "     3     1 TEXTOUT  x=0.5 y=1.4 text=\"Total Calls\"\n"
            "     4     1 TEXTOUT  x=3 y=1.4 text=\"caf\u00e9 \\\"quoted\\\"\"\n"
            "     5     1 LINEOUT  x1=0.5 y1=1.6 x2=7.5 y2=1.6\n"
            "     6     1 BOXOUT   x1=0.5 y1=2 x2=2 y2=3\n"
            "     7     1 IMAGEOUT x=1 y=4 width=2 height=1.5 file=\"C:\\\\Chart.bmp\"\n"
            "     8     1 NEWPAGE\n"
            "     9     2 SETFONT  name=\"Times New Roman\" size=12 bold=True italic=False underline=True\n"
            "    10     2 TEXTOUT  x=1 y=1 text=\"Second page\"\n"
            "    11     2 ENDDOC\n");
}

TEST_F(SpoolCommands, DumpOfADamagedSpoolPrintsWhatIsValidAndReportsTheRest) {
  SpoolRecord unknown = MakePageRecord(1, "FROB");
  SpoolRecord control = MakeTextRecord(1, 1, 2, "tab\there");
  const std::string spool = WriteSpool("damaged.spool", {MakeTextRecord(1, 1, 1, "first"), unknown, control});
  // A record cut short at the end, and no ENDDOC.
  std::ofstream(spool, std::ios::binary | std::ios::app) << std::string(100, 'x');

  const ProgramRun run = Cwreport("dump " + Quote(spool));
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.out.find("     2     1 TEXTOUT  x=1 y=1 text=\"first\"\n"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("     3     1 \"FROB\" (unknown keyword)\n"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("     4     1 TEXTOUT  x=1 y=2 text=\"tab\\x09here\"\n"), std::string::npos) << run.out;
  EXPECT_NE(run.err.find(spool + ": record 3: "), std::string::npos) << run.err;
  EXPECT_NE(run.err.find("FROB"), std::string::npos) << run.err;
  EXPECT_NE(run.err.find("cut short"), std::string::npos) << run.err;
  EXPECT_NE(run.err.find("no ENDDOC"), std::string::npos) << run.err;

  // Shorter than a header: nothing to print, and said so.
  const std::string stub = Path("stub.spool");
  std::ofstream(stub, std::ios::binary) << "VPR";
  const ProgramRun cut = Cwreport("dump " + Quote(stub));
  EXPECT_EQ(cut.status, 1);
  EXPECT_EQ(cut.out, "");
  EXPECT_NE(cut.err.find("no header record"), std::string::npos) << cut.err;
}

TEST_F(SpoolCommands, UsageAndMissingFiles) {
  const ProgramRun help = Cwreport("dump --help");
  EXPECT_EQ(help.status, 0);
  EXPECT_NE(help.out.find("usage: cwreport dump SPOOL"), std::string::npos);
  EXPECT_EQ(Cwreport("dump").status, 2);
  EXPECT_EQ(Cwreport("dump a b").status, 2);
  EXPECT_EQ(Cwreport("dump --verbose a").status, 2);

  const ProgramRun missing = Cwreport("dump " + Quote(Path("none.spool")));
  EXPECT_EQ(missing.status, 1);
  EXPECT_NE(missing.err.find("error 53"), std::string::npos) << missing.err;
  EXPECT_NE(missing.err.find("none.spool"), std::string::npos) << missing.err;

  const ProgramRun exportHelp = Cwreport("export --help");
  EXPECT_EQ(exportHelp.status, 0);
  EXPECT_NE(exportHelp.out.find("--png DIR"), std::string::npos);
  const std::string spool = Quote(WriteTwoPageSpool("ok.spool"));
  const std::string png = " --png " + Quote(Path("p"));
  for (const std::string& arguments : {std::string(), spool + " --pdf", spool + png + " --dpi 5000",
                                       spool + png + " --dpi 72x", spool + " --dpi 72", spool + " --paper legal",
                                       spool + " --pdf a.pdf --pdf b.pdf", spool + " --colour"}) {
    EXPECT_EQ(Cwreport("export " + arguments).status, 2) << arguments;
  }
  EXPECT_FALSE(fs::exists(Path("p")));

  const ProgramRun noSpool = Cwreport("export " + Quote(Path("none.spool")) + " --pdf " + Quote(Path("x.pdf")));
  EXPECT_EQ(noSpool.status, 1);
  EXPECT_NE(noSpool.err.find("error 53"), std::string::npos) << noSpool.err;
  EXPECT_FALSE(fs::exists(Path("x.pdf")));
}

TEST_F(SpoolCommands, ExportWritesTextPdfAndPageImages) {
  const std::string spool = WriteTwoPageSpool("listing.spool");
  const std::string text = Path("listing.txt");
  const std::string pdf = Path("listing.pdf");
  const std::string pages = Path("pages");
  const ProgramRun run = Cwreport("export " + Quote(spool) + " --text " + Quote(text) + " --pdf=" + Quote(pdf) +
                                  " --png " + Quote(pages) + " --dpi 50 --paper a4");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, "");

  // The text export on stdout is the same as in the file.
  const ProgramRun toStdout = Cwreport("export " + Quote(spool));
  EXPECT_EQ(toStdout.status, 0) << toStdout.err;
  EXPECT_EQ(toStdout.out, ReadFile(text));
  EXPECT_NE(toStdout.out.find("Total Calls"), std::string::npos);
  EXPECT_NE(toStdout.out.find("caf\xE9"), std::string::npos) << "Windows-1252 bytes kept";

  int status = -1;
  const std::string first = RunShell("pdftotext -layout -f 1 -l 1 " + Quote(pdf) + " -", &status);
  EXPECT_EQ(status, 0);
  EXPECT_NE(first.find("Total Calls"), std::string::npos) << first;
  EXPECT_NE(first.find("caf\u00e9 \"quoted\""), std::string::npos) << first;
  EXPECT_EQ(first.find("Second page"), std::string::npos) << first;

  // A4 at 50 dpi: 210 x 297 mm.
  EXPECT_TRUE(fs::exists(fs::path(pages) / "page-0001.png"));
  EXPECT_TRUE(fs::exists(fs::path(pages) / "page-0002.png"));
  EXPECT_FALSE(fs::exists(fs::path(pages) / "page-0003.png"));
  const std::string png = ReadFile(fs::path(pages) / "page-0001.png");
  ASSERT_GT(png.size(), 24u);
  auto bigEndian = [&](std::size_t at) {
    return (static_cast<unsigned char>(png[at]) << 24) | (static_cast<unsigned char>(png[at + 1]) << 16) |
           (static_cast<unsigned char>(png[at + 2]) << 8) | static_cast<unsigned char>(png[at + 3]);
  };
  EXPECT_EQ(bigEndian(16), 413u);  // width
  EXPECT_EQ(bigEndian(20), 585u);  // height
}

TEST_F(SpoolCommands, ExportNamesAMissingPictureAndStillWritesThePages) {
  const std::string spool = WriteTwoPageSpool("chart.spool", Path("Chart.bmp"));
  const std::string pdf = Path("chart.pdf");
  const ProgramRun run = Cwreport("export " + Quote(spool) + " --pdf " + Quote(pdf));
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.err.find("record 7: picture file \"" + Path("Chart.bmp") + "\""), std::string::npos) << run.err;
  EXPECT_TRUE(fs::exists(pdf));
}

TEST_F(SpoolCommands, ExportToAnUnwritablePathLeavesNothingBehind) {
  const std::string spool = WriteTwoPageSpool("listing.spool");
  std::ofstream(Path("file")) << "a file, not a folder";
  const std::string blocked = Path("file/out.pdf");
  const ProgramRun pdf = Cwreport("export " + Quote(spool) + " --pdf " + Quote(blocked));
  EXPECT_EQ(pdf.status, 1);
  EXPECT_NE(pdf.err.find("file/out.pdf"), std::string::npos) << pdf.err;
  const ProgramRun png = Cwreport("export " + Quote(spool) + " --png " + Quote(Path("file/pages")));
  EXPECT_EQ(png.status, 1);
  const ProgramRun text = Cwreport("export " + Quote(spool) + " --text " + Quote(Path("file/out.txt")));
  EXPECT_EQ(text.status, 1);
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder_)) names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (std::vector<std::string>{"file", "listing.spool"}));
}

}  // namespace
}  // namespace cw::testing
