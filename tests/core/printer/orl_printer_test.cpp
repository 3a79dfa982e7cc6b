#include "printer/orl_printer.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <algorithm>
#include <filesystem>

#include "core/support/error_number.h"
#include "engine_test_rig.h"
#include "printer/spool_format.h"
#include "spool_test_files.h"
#include "support/runtime_error.h"
#include "testing/expected_file.h"

namespace cw {
namespace {

using test::ErrorNumberOf;
using testing::Bytes;
using testing::DescribeSpool;
using testing::ReadBytes;
using Lines = std::vector<std::string>;

// Every document of these tests spools into a private temporary folder,
// removed with whatever the test left in it.
class OrlPrinterTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ::setenv("TMPDIR", folder.Path().c_str(), 1);
    document.OnNewPage = [this](std::int16_t page) { newPages.push_back(page); };
  }
  void TearDown() override { ::unsetenv("TMPDIR"); }

  // BeginDoc with twips as the unit, so that the fixed-pitch widths read
  // directly: a 10-point character is 120 twips wide, its line 240 high.
  void BeginInTwips() {
    document.BeginDoc();
    document.SetScaleMode(1);
  }
  // The spool as it stands, one line a command under a heading, compared
  // with the test's own file under printer/orl/.
  void ExpectSpool(std::string_view heading) {
    const std::string test = ::testing::UnitTest::GetInstance()->current_test_info()->name();
    testing::ExpectMatchesFile(testing::Section(heading, DescribeSpool(document.PrintFile())),
                               "printer/orl/" + test + ".txt");
  }
  // The automatic heading block in 10-point Arial.
  void Headings() {
    document.SetAutoHeadings(true);
    document.SetAutoHeadingsFontName("Arial");
    document.SetAutoHeadingsFontSize(10);
  }

  testing::TempFolder folder;
  testing::EngineTestRig rig;
  OrlPrinter document{rig.Environment()};
  std::vector<std::int16_t> newPages;  // the pages OnNewPage was raised for
};

// Properties kept in the header record rewrite it in place; AutoNewPage and
// SubTitle are left as they were when the next document begins.
TEST_F(OrlPrinterTest, HeaderPropertiesRewriteRecordOneAndTwoCarryOverToTheNextDocument) {
  document.BeginDoc();
  EXPECT_EQ(ReadBytes(document.PrintFile()), Bytes(testing::DefaultHeader()));
  document.TextOut(0, "first");
  document.SetOrientation(2);
  document.SetScaleMode(1);
  document.SetSpacing(1.5);
  document.SetAutoHeadings(true);
  document.SetAutoHeadingsFontName("Arial Narrow");
  document.SetAutoHeadingsFontSize(11);
  document.SetAutoHeadingsFontAttr(-70000);
  document.SetAutoNewPage(true);
  document.SetTitle("Call Detail");
  document.SetSubTitle(" Report Period ");
  document.TextOut(0, "second");
  document.EndDoc();
  SpoolHeader h = DecodeHeader(ReadBytes(document.PrintFile()).data());
  EXPECT_EQ((std::vector<double>{double(h.orientation), double(h.scaleMode), h.spacing, double(h.autoHeadings),
                                 double(h.autoHeadingsFontSize), double(h.autoHeadingsFontAttr), double(h.autoNewPage)}),
            (std::vector<double>{2, 1, 1.5, 1, 11, -70000, 1}));
  EXPECT_EQ((std::vector<std::string>{h.autoHeadingsFontName, h.title, h.subTitle}),
            (std::vector<std::string>{"Arial Narrow", "Call Detail", "Report Period"}));
  ExpectSpool("both texts in order");

  const std::string first = document.PrintFile();
  newPages.clear();
  document.BeginDoc();
  document.SetAutoHeadings(true);
  document.EndDoc();
  EXPECT_NE(document.PrintFile(), first);
  h = DecodeHeader(ReadBytes(document.PrintFile()).data());
  EXPECT_EQ((std::vector<double>{double(h.orientation), double(h.scaleMode), double(h.autoNewPage)}),
            (std::vector<double>{1, 5, 1}));
  EXPECT_EQ((std::vector<std::string>{h.title, h.subTitle}), (std::vector<std::string>{"", "Report Period"}));
  EXPECT_EQ(DescribeSpool(document.PrintFile()), (Lines{"1 ENDDOC"}));  // no drawing call: no heading
  EXPECT_TRUE(newPages.empty());
  EXPECT_EQ(document.TotalPages(), 1);

  const std::string second = document.PrintFile();
  document.DestroyReport();
  EXPECT_FALSE(std::filesystem::exists(second));
}

TEST_F(OrlPrinterTest, SetFontReopensASpoolFileThatWasDeleted) {
  BeginInTwips();
  document.TextOut(0, "gone with the file");
  ASSERT_EQ(std::remove(document.PrintFile().c_str()), 0);
  document.SetFont("Arial", 9, 1);
  document.TextOut(0, "kept");
  document.EndDoc();
  // Reopened as it was, without a header record.
  EXPECT_EQ(ReadBytes(document.PrintFile()),
            Bytes(MakeFontRecord(1, "Arial", 9, true, false, false)) + Bytes(MakeTextRecord(1, 0, 0, "kept")) +
                Bytes(MakePageRecord(1, spool::kEndDoc)));
  EXPECT_TRUE(rig.errors.empty());
}

TEST_F(OrlPrinterTest, SetFontCutsAndTrimsTheNameAndMapsTheAttributeBits) {
  BeginInTwips();
  document.SetFont("  Times New Roman  ", 9, 6);  // underline + italic
  document.SetFont(std::string(199, 'n') + "  tail", 12, 1);
  document.TextOut(0, "abc");
  document.EndDoc();
  ExpectSpool("the name trimmed, then cut to 199 characters");
}

TEST_F(OrlPrinterTest, PagesBreakOnlyWhenYIsStrictlyBelowTheBottomLimit) {
  BeginInTwips();
  document.SetBottomMargin(840);  // limit 15840 - 840 = 15000
  document.SetY(20000);
  document.TextOut(0, "no automatic breaks yet");
  document.SetAutoNewPage(true);
  document.SetY(15000);
  document.TextOut(0, "on the limit");
  document.SetY(15000.0004);  // the same value in single precision
  document.TextOut(0, "still on it");
  document.SetY(15000.01);
  document.TextOut(100, "past it");
  document.LineOut(0, 1, 2, 3);
  document.NewPage();
  document.NewPage();
  document.EndDoc();
  ExpectSpool("the break comes only past the limit");
  EXPECT_EQ(newPages, (std::vector<std::int16_t>{1, 2, 3, 4}));
  EXPECT_EQ(document.TotalPages(), 4);
}

TEST_F(OrlPrinterTest, TheHeadingBlockIsPrintedAtTheFirstDrawingCallAndOnEveryNewPage) {
  BeginInTwips();
  Headings();
  document.SetTitle("Call Detail");          // 11 characters: 1320 twips
  document.SetSubTitle("  Report Period ");  // 16 characters: 1920 twips
  document.SetFont("Times New Roman", 9, 7);
  EXPECT_TRUE(newPages.empty());
  document.TextOut(0, "body");
  document.TextOut(2000, "same line");
  document.NewPage();
  document.EndDoc();
  // Half an inch in; the title centred on the page; the page number ending
  // half an inch from the right edge; two lines of 240 x 1.3 twips down; the
  // subtitle centred and one more line; then the body font again. (A reader
  // cannot tell trailing spaces from the field's padding.)
  ExpectSpool("a heading block on each page");
  EXPECT_EQ(newPages, (std::vector<std::int16_t>{1, 2}));
}

TEST_F(OrlPrinterTest, TopMarginHoldsTheFirstLineDownIncludingTheHeading) {
  BeginInTwips();
  Headings();
  document.SetTopMargin(1000);  // more than half an inch
  EXPECT_EQ(document.Y(), 1000);
  document.SetFont("Arial", 10, 0);
  document.TextOut(0, "body");
  document.EndDoc();
  ExpectSpool("the heading at the margin, an empty title centred");

  // Set later, a top margin moves Y only when Y is above it.
  document.SetY(500);
  document.SetTopMargin(300);
  EXPECT_EQ(document.Y(), 500);
  document.SetTopMargin(800);
  EXPECT_EQ(document.Y(), 800);
}

TEST_F(OrlPrinterTest, CentringUsesThePageWidthAndTextContinuesWhereTheLastEnded) {
  document.BeginDoc();
  document.SetScaleMode(5);
  document.SetFont("Arial", 10, 0);
  document.SetBottomMargin(2);
  document.SetTopMargin(0.25);
  document.TextOut(-1, "abc");        // (12240 - 360) / 2 twips
  document.TextOut(document.X(), "de");
  document.NewLine();                 // 312 twips
  document.TextOut(1, std::nullopt);  // a null text is written empty
  document.EndDoc();
  ExpectSpool("centred, continued, a new line");
  EXPECT_EQ(document.PageWidth(), 8);  // 8.5 inches, rounded half to even
  EXPECT_FLOAT_EQ(document.MaxYPos(), 9);
}

TEST_F(OrlPrinterTest, MemoOutWrapsWordsAndPutsAnOverWideWordOnALineOfItsOwn) {
  BeginInTwips();
  document.SetFont("Courier", 10, 0);
  const std::string memo = "aaa bbbbbbbbbbbbbbb cc dd\r\nee";
  EXPECT_DOUBLE_EQ(document.MemoHeight(100, 1300, memo), 3 * 312);
  document.MemoOut(100, 1300, memo);  // ten characters wide
  EXPECT_EQ(document.Y(), 3 * 312);
  EXPECT_EQ(document.X(), 100 + 2 * 120);
  document.EndDoc();
  ExpectSpool("ten characters wide");
}

TEST_F(OrlPrinterTest, APrinterErrorAtBeginDocIsRetriedOrDropsTheDocument) {
  int measured = 0;
  rig.page = PageSetup{11906, 16838, 1};
  OrlPrinterEnvironment environment = rig.Environment();
  environment.measurePrinter = [&] {
    if (++measured == 1) throw RuntimeError(482, "Printer error");
    return rig.page;
  };
  int previews = 0;
  environment.showPreview = [&](OrlPrinter&) { ++previews; };
  OrlPrinter own(environment);  // with the environment changed above

  // Retried: the second measurement counts.
  own.OnPrinterError = [](bool& retry) { retry = true; };
  own.BeginDoc();
  EXPECT_EQ(measured, 2);
  EXPECT_FALSE(own.PrinterFailed());
  EXPECT_EQ(own.PageWidth(), 11906);
  own.EndDoc();
  own.PreviewReport();
  EXPECT_EQ(previews, 1);

  // Not retried: the rest of the document is dropped without a word.
  measured = 0;
  own.OnPrinterError = [](bool&) {};
  own.BeginDoc();
  EXPECT_TRUE(own.PrinterFailed());
  own.TextOut(0, "dropped");
  own.NewPage();
  own.EndDoc();
  own.PreviewReport();
  EXPECT_EQ(previews, 1);
  EXPECT_EQ(DescribeSpool(own.PrintFile()), (Lines{"1 ENDDOC"}));
  EXPECT_TRUE(rig.errors.empty());

  // The next document starts clean.
  own.BeginDoc();
  EXPECT_FALSE(own.PrinterFailed());
}

// Pages are numbered in 16 bits: the page after 32767 cannot begin. The
// rows that follow it would each meet that again; one box ends it all.
TEST_F(OrlPrinterTest, APageBeyond32767IsOneOverflowThatEndsTheDocument) {
  BeginInTwips();
  document.SetAutoNewPage(true);
  document.SetPage(32766);
  const auto rowBelowTheBottom = [&] {
    document.SetY(rig.page.heightTwips + 1);
    document.TextOut(0, "row");
  };
  rowBelowTheBottom();
  EXPECT_EQ(document.Page(), 32767);
  EXPECT_TRUE(rig.errors.empty());
  EXPECT_THROW(rowBelowTheBottom(), RuntimeError);
  for (int row = 0; row < 100; ++row) EXPECT_THROW(rowBelowTheBottom(), RuntimeError);
  ASSERT_EQ(rig.errors.size(), 1u);
  EXPECT_TRUE(rig.errors[0].starts_with("Error 6 Overflow\r\nin Class Module OrlPrinter procedure CheckNewPage.\r\n"))
      << rig.errors[0];
  EXPECT_EQ(document.Page(), 32767);
}

TEST_F(OrlPrinterTest, AnErrorTheDocumentTrapsIsShownOnceAndEndsTheDocument) {
  // Where the first error is met: the page check (through OnNewPage),
  // TextOut (writing after EndDoc closed the spool), SetFont (the same).
  const std::pair<std::string, std::string> cases[] = {
      {"CheckNewPage", "Error 9 Subscript out of range\r\nin Class Module OrlPrinter procedure CheckNewPage.\r\n"},
      {"TextOut", "Error 52 "},
      {"SetFont", "Error 52 "}};
  for (const auto& [procedure, box] : cases) {
    SCOPED_TRACE(procedure);
    rig.errors.clear();
    document.OnNewPage = [](std::int16_t) {};
    BeginInTwips();
    if (procedure == "CheckNewPage") {
      document.OnNewPage = [](std::int16_t) { throw RuntimeError(err::kSubscript); };
      EXPECT_THROW(document.TextOut(0, "never written"), RuntimeError);
    } else {
      document.TextOut(0, "written");
      document.EndDoc();
      EXPECT_THROW(procedure == "TextOut" ? document.TextOut(0, "late") : document.SetFont("Arial", 9, 0),
                   RuntimeError);
    }
    EXPECT_TRUE(document.Failed());
    ASSERT_EQ(rig.errors.size(), 1u);
    EXPECT_TRUE(rig.errors[0].starts_with(box)) << rig.errors[0];
    EXPECT_NE(rig.errors[0].find("in Class Module OrlPrinter procedure " + procedure + "."), std::string::npos);

    // Every later call meets the same error again, without a box: the report
    // routine stops at the first of them, and the document is never shown.
    const int first = procedure == "CheckNewPage" ? err::kSubscript : err::kBadFile;
    EXPECT_EQ(ErrorNumberOf([&] { document.TextOut(0, "again"); }), first);
    EXPECT_EQ(ErrorNumberOf([&] { document.SetFont("Arial", 9, 0); }), first);
    EXPECT_EQ(ErrorNumberOf([&] { document.NewPage(); }), first);
    EXPECT_EQ(ErrorNumberOf([&] { document.EndDoc(); }), first);
    EXPECT_EQ(ErrorNumberOf([&] { document.PreviewReport(); }), first);
    EXPECT_EQ(rig.errors.size(), 1u);
    document.DestroyReport();
  }

  // The next document starts afresh.
  BeginInTwips();
  EXPECT_FALSE(document.Failed());
  EXPECT_NO_THROW(document.TextOut(0, "fine"));

}

TEST_F(OrlPrinterTest, AHeadingNeverBreaksThePageAgainWhateverTheMargins) {
  BeginInTwips();
  document.SetAutoNewPage(true);
  Headings();
  document.SetBottomMargin(20000);  // the bottom limit lies above the page
  document.OnNewPage = [&](std::int16_t) { document.TextOut(0, "column headings"); };
  document.TextOut(0, "one");
  document.TextOut(0, "two");
  document.EndDoc();
  const Lines spool = DescribeSpool(document.PrintFile());
  EXPECT_EQ(std::ranges::count_if(spool, [](const std::string& line) { return line.ends_with(" NEWPAGE"); }), 2);
  EXPECT_EQ(std::ranges::count_if(spool, [](const std::string& l) { return l.ends_with(" one") || l.ends_with(" two"); }), 2);
  EXPECT_EQ(document.TotalPages(), 3);
}

TEST_F(OrlPrinterTest, SaveReportWritesTheTextExportUnderTheNameAskedForOrGiven) {
  OrlPrinterEnvironment environment = rig.Environment();
  std::string answer;
  environment.askSaveFileName = [&] { return answer; };
  OrlPrinter own(environment);  // with the environment changed above
  own.BeginDoc();
  own.SetScaleMode(1);
  own.TextOut(1440, "Total");
  own.EndDoc();

  own.SaveReport();  // cancelled
  EXPECT_EQ(folder.Names().size(), 1u);
  answer = folder.File("report.txt");
  own.SaveReport();
  own.SaveReport(folder.File("named.txt"));
  for (const char* name : {"report.txt", "named.txt"}) {
    EXPECT_EQ(ReadBytes(folder.File(name)), std::string(13, ' ') + "Total") << name;  // column 14
  }
}

}  // namespace
}  // namespace cw
