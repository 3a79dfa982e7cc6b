// cwreport --print: the usage errors of its options, a printer that is not
// there, and a real job through the CUPS PDF queue (scripts/start-cups-pdf.sh)
// whose PDF is read back for its pages.
#include <stdlib.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <set>
#include <string>
#include <thread>

#include "core/data/log_lines.h"
#include "run_cwreport.h"
#include "testing/cups_pdf_queue.h"

namespace cw {
namespace {

namespace fs = std::filesystem;
using testing::Call;
using testing::ProgramRun;

std::string Quote(const std::string& text) { return "'" + text + "'"; }

std::string ReadFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// 300 calls over January 2026: a detail listing of several pages.
std::string LongLog() {
  std::string log;
  for (int i = 0; i < 300; ++i) {
    const std::string day = std::to_string(1 + i % 28);
    log += Call()
               .Date("01/" + std::string(day.size() == 1 ? "0" : "") + day + "/2026")
               .Name("CALLER " + std::to_string(i))
               .Number("555-010-" + std::to_string(1000 + i))
               .Text() +
           "\r\n";
  }
  return log;
}

// pdfinfo's page count; -1 while the file is not a whole PDF.
int PdfPages(const fs::path& pdf) {
  std::FILE* pipe = ::popen(("pdfinfo " + Quote(pdf.string()) + " 2>/dev/null").c_str(), "r");
  if (pipe == nullptr) return -1;
  std::string info;
  char chunk[1024];
  for (std::size_t n; (n = std::fread(chunk, 1, sizeof chunk, pipe)) > 0;) info.append(chunk, n);
  if (::pclose(pipe) != 0) return -1;
  const std::size_t at = info.find("Pages:");
  return at == std::string::npos ? -1 : std::stoi(info.substr(at + 6));
}

std::set<fs::path> PdfsIn(const fs::path& folder) {
  std::set<fs::path> files;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(folder, error)) {
    if (entry.path().extension() == ".pdf") files.insert(entry.path());
  }
  return files;
}

// The queue writes in the background: waits (bounded) for a finished PDF of
// the report that was not in the folder before, and takes it out of the
// folder. Empty when none came.
fs::path TakeNewPdf(const fs::path& folder, const std::set<fs::path>& before, const fs::path& keepAs) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(90);
  while (std::chrono::steady_clock::now() < deadline) {
    for (const fs::path& pdf : PdfsIn(folder)) {
      if (before.contains(pdf) || pdf.filename().string().find("DETAIL_REPORT") == std::string::npos) continue;
      if (PdfPages(pdf) <= 0) continue;
      fs::copy_file(pdf, keepAs, fs::copy_options::overwrite_existing);
      fs::remove(pdf);
      return keepAs;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
  }
  return {};
}

class PrintCommand : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "cw-print-cli-XXXXXX").string();
    ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
    folder_ = pattern;
    std::ofstream(Path("CallLog.txt"), std::ios::binary) << LongLog();
    std::ofstream(Path("settings.ini"), std::ios::binary) << "[Reports]\r\nCallType=InOut\r\n";
  }
  void TearDown() override { fs::remove_all(folder_); }

  std::string Path(const std::string& name) const { return (folder_ / name).string(); }

  // A detail listing of the whole month; the print options follow.
  ProgramRun Report(const std::string& arguments) {
    return testing::RunCwreport("--settings " + Quote(Path("settings.ini")) + " --path " + Quote(folder_.string()) +
                                    " --log " + Quote(Path("CallLog.txt")) +
                                    " --report history --from 01/01/2026 --to 01/31/2026 " + arguments,
                                folder_ / "stderr.txt");
  }

  fs::path folder_;
};

TEST_F(PrintCommand, BadPrintOptionsAreUsageErrors) {
  struct Case {
    std::string arguments;
    std::string err;  // the start of the message
  };
  const Case cases[] = {
      {"--print --copies 0", "cwreport: --copies needs a whole number from 1 to 32767, not \"0\""},
      {"--print --copies -2", "cwreport: --copies needs a whole number from 1 to 32767, not \"-2\""},
      {"--print --from-page 0", "cwreport: --from-page needs a whole number from 1 to 32767, not \"0\""},
      {"--print --to-page 2x", "cwreport: --to-page needs a whole number from 1 to 32767, not \"2x\""},
      {"--print --from-page 3 --to-page 2", "cwreport: --from-page 3 comes after --to-page 2"},
      {"--print --copies", "cwreport: --copies needs a value"},
      {"--copies 2 --pdf " + Quote(Path("report.pdf")),
       "cwreport: --copies, --from-page and --to-page apply to --print only"},
      {"--print A --print B", "cwreport: --print given twice"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.arguments);
    const ProgramRun run = Report(c.arguments);
    EXPECT_EQ(run.status, 2);
    EXPECT_TRUE(run.err.starts_with(c.err + "\n")) << run.err;
    EXPECT_EQ(run.out, "");
  }
  EXPECT_FALSE(fs::exists(Path("report.pdf")));
}

TEST_F(PrintCommand, APrinterThatIsNotThereIsAnErrorBeforeAnyOutput) {
  const ProgramRun run = Report("--print 'No Such Printer' --pdf " + Quote(Path("report.pdf")) + " --text " +
                                Quote(Path("report.txt")));
  EXPECT_EQ(run.status, 1);
  EXPECT_TRUE(run.err.starts_with("cwreport: error 482: There is no printer named \"No Such Printer\" (")) << run.err;
  // One line: no printer-error box asked again and again.
  EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << run.err;
  EXPECT_FALSE(fs::exists(Path("report.pdf")));
  EXPECT_FALSE(fs::exists(Path("report.txt")));
}

TEST_F(PrintCommand, CopiesAndPageRangeReachTheCupsPdfQueue) {
  const std::string queue = testing::CupsPdfQueueName();
  if (!testing::CupsQueueExists(queue)) {
    GTEST_SKIP() << "no CUPS queue named " << queue
                 << ": run scripts/start-cups-pdf.sh as root (it needs cups and printer-driver-cups-pdf)";
  }
  const fs::path pdfFolder = testing::CupsPdfFolder();

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
  const fs::path twice = TakeNewPdf(pdfFolder, before, Path("twice.pdf"));
  ASSERT_FALSE(twice.empty()) << "no PDF of the job in " << pdfFolder;
  // Pages 2 and 3, once for each copy.
  EXPECT_EQ(PdfPages(twice), 4);

  // A range that runs past the end prints the pages the document has.
  before = PdfsIn(pdfFolder);
  run = Report("--print " + queue + " --from-page " + std::to_string(pages - 1) + " --to-page 500");
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, "");  // an output was named: no text on standard output
  const fs::path tail = TakeNewPdf(pdfFolder, before, Path("tail.pdf"));
  ASSERT_FALSE(tail.empty()) << "no PDF of the job in " << pdfFolder;
  EXPECT_EQ(PdfPages(tail), 2);

  // A range wholly past the end prints nothing, and says so.
  run = Report("--print " + queue + " --from-page 400");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "cwreport: nothing was printed: the document has " + std::to_string(pages) +
                         " pages, --from-page is 400\n");
}

}  // namespace
}  // namespace cw
