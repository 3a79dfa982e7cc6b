// cwreport --print (its usage errors are with the others in options_test):
// a printer that is not there, and a real job through the CUPS PDF queue (scripts/start-cups-pdf.sh)
// whose PDF is read back for its pages.
#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "core/data/log_lines.h"
#include "run_cwreport.h"
#include "testing/cups_pdf_queue.h"

namespace cw::testing {
namespace {

namespace fs = std::filesystem;

// A detail listing of the whole month, 300 calls: several pages; the print
// options follow.
class PrintCommand : public ReportTest {
 protected:
  void SetUp() override {
    ReportTest::SetUp();
    std::vector<Call> calls;
    for (int i = 0; i < 300; ++i) {
      char date[16];
      std::snprintf(date, sizeof date, "01/%02d/2026", 1 + i % 28);
      calls.push_back(Call().Date(date).Name("CALLER " + std::to_string(i)).Number("555-010-" + std::to_string(1000 + i)));
    }
    UseLog(LogOf(calls));
  }
  ProgramRun Report(const std::string& arguments) {
    return ReportTest::Report("--report history" + kJanuary + arguments);
  }
};

TEST_F(PrintCommand, APrinterThatIsNotThereIsAnErrorBeforeAnyOutput) {
  const ProgramRun run = Report("--print 'No Such Printer' --pdf " + Quote(Path("report.pdf")) + " --text " +
                                Quote(Path("report.txt")));
  EXPECT_EQ(run.status, 1);
  EXPECT_TRUE(run.err.starts_with("cwreport: error 482: There is no printer named \"No Such Printer\" (")) << run.err;
  // One line: no printer-error box asked again and again.
  EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << run.err;
  for (const char* name : {"report.pdf", "report.txt"}) EXPECT_FALSE(fs::exists(Path(name))) << name;
}

// A queue told to reject jobs would swallow the job without a word: the
// request fails at once, says why, and leaves no output.
TEST_F(PrintCommand, AQueueThatRejectsJobsIsAnErrorBeforeAnyOutput) {
  const std::string model = "lsb/usr/cups-pdf/CUPS-PDF_opt.ppd";
  const std::string queue = "CW_REJECT_" + std::to_string(::getpid());
  if (!CupsQueueExists(CupsPdfQueueName()) ||
      std::system(("lpadmin -p " + queue + " -E -v cups-pdf:/ -m " + model + " 2>/dev/null").c_str()) != 0) {
    GTEST_SKIP() << "cannot add a CUPS queue here (needs root and the cups-pdf driver)";
  }
  const int rejected = std::system(("cupsreject " + queue).c_str());
  const ProgramRun run = Report("--print " + queue + " --text " + Quote(Path("report.txt")));
  std::system(("lpadmin -x " + queue).c_str());
  ASSERT_EQ(rejected, 0);
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "cwreport: error 482: The printer \"" + queue + "\" cannot print now: it does not accept jobs\n");
  EXPECT_FALSE(fs::exists(Path("report.txt")));
}

TEST_F(PrintCommand, CopiesAndPageRangeReachTheCupsPdfQueue) {
  const std::string queue = CupsPdfQueueName();
  if (!CupsQueueExists(queue)) {
    GTEST_SKIP() << "no CUPS queue named " << queue
                 << ": run scripts/start-cups-pdf.sh as root (it needs cups and printer-driver-cups-pdf)";
  }
  const fs::path pdfFolder = CupsPdfFolder();

  // Printing goes with the other outputs; the text tells how many pages the
  // document has (a form feed between pages).
  std::set<fs::path> before = PdfsIn(pdfFolder);
  ProgramRun run = Report("--print " + queue + " --copies 2 --from-page 2 --to-page 3 --text " +
                          Quote(Path("report.txt")));
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  const std::string text = ReadFile(Path("report.txt"));
  const auto pages = std::count(text.begin(), text.end(), '\f') + 1;
  ASSERT_GE(pages, 4) << "the log is meant to fill more than three pages";
  const fs::path twice = TakeNewPdf(pdfFolder, before, "DETAIL_REPORT", Path("twice.pdf"));
  ASSERT_FALSE(twice.empty()) << "no PDF of the job in " << pdfFolder;
  // Pages 2 and 3, once for each copy.
  EXPECT_EQ(PdfPageCount(twice), 4);

  // A range that runs past the end prints the pages the document has.
  before = PdfsIn(pdfFolder);
  run = Report("--print " + queue + " --from-page " + std::to_string(pages - 1) + " --to-page 500");
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, "");  // an output was named: no text on standard output
  const fs::path tail = TakeNewPdf(pdfFolder, before, "DETAIL_REPORT", Path("tail.pdf"));
  ASSERT_FALSE(tail.empty()) << "no PDF of the job in " << pdfFolder;
  EXPECT_EQ(PdfPageCount(tail), 2);

  // A range wholly past the end prints nothing, and says so.
  run = Report("--print " + queue + " --from-page 400");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "cwreport: nothing was printed: the document has " + std::to_string(pages) +
                         " pages, --from-page is 400\n");
}

}  // namespace
}  // namespace cw::testing
