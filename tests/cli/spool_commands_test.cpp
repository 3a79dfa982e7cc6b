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
  const std::string spool = WriteSpool("damaged.spool", {MakeTextRecord(1, 1, 1, "first"), MakePageRecord(1, "FROB"),
                                                         MakeTextRecord(1, 1, 2, "tab\there")});
  // A record cut short at the end, and no ENDDOC.
  std::ofstream(spool, std::ios::binary | std::ios::app) << std::string(100, 'x');

  // Which problems the reader finds is SpoolReader's; each is told with the
  // spool's name and the record.
  const ProgramRun run = Cwreport("dump " + Quote(spool));
  ExpectRun(run, 1, spool + ": record 3: ");
  for (const char* line : {"     2     1 TEXTOUT  x=1 y=1 text=\"first\"\n",
                           "     3     1 \"FROB\" (unknown keyword)\n",
                           "     4     1 TEXTOUT  x=1 y=2 text=\"tab\\x09here\"\n"}) {
    EXPECT_THAT(run.out, HasSubstr(line));
  }
  EXPECT_THAT(run.err, HasSubstr("no ENDDOC"));
}

// A spool that cannot be read is status 1, named; no output is left. (The
// usage errors of dump and export are with the others in options_test.)
TEST_F(SpoolCommands, SpoolsThatCannotBeReadAreStatusOne) {
  const std::string stub = Quote(Write("stub.spool", "VPR"));  // shorter than a header
  const std::string none = Quote(Path("none.spool"));
  for (const auto& [arguments, err] : {std::pair{"dump " + none, "error 53"}, {"dump " + stub, "no header record"},
                                       {"export " + none + " --pdf " + Quote(Path("x.pdf")), "error 53"}}) {
    SCOPED_TRACE(arguments);
    const ProgramRun run = Cwreport(arguments);
    ExpectRun(run, 1, err);
    EXPECT_EQ(run.out, "");
  }
  EXPECT_FALSE(fs::exists(Path("x.pdf")));
  EXPECT_THAT(Cwreport("dump " + none).err, HasSubstr(Path("none.spool")));
}

TEST_F(SpoolCommands, ExportWritesTextPdfAndPageImages) {
  const std::string spool = WriteTwoPageSpool("listing.spool");
  const std::string text = Path("listing.txt");
  const std::string pdf = Path("listing.pdf");
  const std::string pages = Path("pages");
  const ProgramRun run = Cwreport("export " + Quote(spool) + " --text " + Quote(text) + " --pdf=" + Quote(pdf) +
                                  " --png " + Quote(pages) + " --dpi 50 --paper a4");
  ExpectRun(run, 0);
  EXPECT_EQ(run.err + run.out, "");

  // The text export on stdout is the same as in the file.
  const ProgramRun toStdout = Cwreport("export " + Quote(spool));
  ExpectRun(toStdout, 0);
  EXPECT_EQ(toStdout.out, ReadFile(text));
  EXPECT_THAT(toStdout.out, HasSubstr("Total Calls"));
  EXPECT_NE(toStdout.out.find("caf\xE9"), std::string::npos) << "Windows-1252 bytes kept";

  int status = -1;
  const std::string first = RunShell("pdftotext -layout -f 1 -l 1 " + Quote(pdf) + " -", &status);
  EXPECT_EQ(status, 0);
  EXPECT_THAT(first, HasSubstr("Total Calls"));
  EXPECT_THAT(first, HasSubstr("caf\u00e9 \"quoted\""));
  EXPECT_THAT(first, Not(HasSubstr("Second page")));

  // A4 at 50 dpi: 210 x 297 mm.
  for (const char* page : {"page-0001.png", "page-0002.png"}) EXPECT_TRUE(fs::exists(fs::path(pages) / page)) << page;
  EXPECT_FALSE(fs::exists(fs::path(pages) / "page-0003.png"));
  // The width and height, big-endian in the PNG header.
  EXPECT_EQ(ReadFile(fs::path(pages) / "page-0001.png").substr(16, 8), std::string("\0\0\x01\x9D\0\0\x02\x49", 8));
}

TEST_F(SpoolCommands, ExportNamesAMissingPictureAndStillWritesThePages) {
  const std::string spool = WriteTwoPageSpool("chart.spool", Path("Chart.bmp"));
  const std::string pdf = Path("chart.pdf");
  const ProgramRun run = Cwreport("export " + Quote(spool) + " --pdf " + Quote(pdf));
  ExpectRun(run, 1, "record 7: picture file \"" + Path("Chart.bmp") + "\"");
  EXPECT_TRUE(fs::exists(pdf));
}

TEST_F(SpoolCommands, ExportToAnUnwritablePathLeavesNothingBehind) {
  const std::string spool = Quote(WriteTwoPageSpool("listing.spool"));
  Write("file", "a file, not a folder");
  for (const char* option : {" --pdf ", " --png ", " --text "}) {
    SCOPED_TRACE(option);
    ExpectRun(Cwreport("export " + spool + option + Quote(Path("file/out"))), 1, "file/out");
  }
  EXPECT_EQ(Names(), (std::vector<std::string>{"file", "listing.spool"}));
}

}  // namespace
}  // namespace cw::testing
