#include <QColor>
#include <QDir>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <iterator>
#include <mutex>
#include <regex>
#include <string>
#include <thread>

#include "platform/pdf_page_device.h"
#include "platform/png_page_device.h"
#include "platform/qt_text_metrics.h"
#include "core/support/error_number.h"
#include "support/runtime_error.h"

namespace cw {
namespace {

constexpr PageSetup kLetter{12240, 15840, 1};
const FontSpec kArial9{"Arial", 9};

// The standard output of a poppler tool (pdftotext, pdfinfo, pdffonts,
// pdftoppm), which reads the PDF back as a reader of the file would see it;
// a failure to run it fails the test.
std::string RunTool(const QString& program, const QStringList& arguments) {
  QProcess process;
  process.start(program, arguments);
  EXPECT_TRUE(process.waitForFinished(60000)) << program.toStdString();
  EXPECT_EQ(process.exitCode(), 0) << program.toStdString() << ": " << process.readAllStandardError().toStdString();
  return process.readAllStandardOutput().toStdString();
}

// The text of one page (1-based), laid out as on the page.
std::string PdfPageText(const QString& pdf, int page) {
  return RunTool("pdftotext", {"-layout", "-f", QString::number(page), "-l", QString::number(page), pdf, "-"});
}

// A picture whose left half is white and right half red.
QString WriteHalfWhitePicture(const QTemporaryDir& dir) {
  QImage picture(20, 10, QImage::Format_RGB32);
  picture.fill(Qt::white);
  for (int y = 0; y < 10; ++y) {
    for (int x = 10; x < 20; ++x) picture.setPixel(x, y, qRgb(255, 0, 0));
  }
  const QString path = dir.filePath("half.bmp");
  EXPECT_TRUE(picture.save(path, "BMP"));
  return path;
}

TEST(PdfPageDeviceTest, TextsLinesAndPicturesLandOnTheirPagesAtTheirPlacesInEmbeddedFonts) {
  QTemporaryDir dir;
  const QString pdf = dir.filePath("report.pdf");
  {
    PdfPageDevice device(pdf.toStdString(), "Daily Call Statistics");
    device.BeginDocument(kLetter);
    device.BeginPage();
    device.SetFont(kArial9);
    device.Text(1440, 1440, "Total Calls");
    device.Line(1440, 1700, 10800, 1700);
    device.Box(1440, 2000, 4000, 3000);
    device.EndPage();
    device.BeginPage();
    device.SetFont(FontSpec{"Times New Roman", 9, true});
    device.Text(2880, 7200, "Second page caf\xE9 \x80 5");
    device.EndPage();
    device.EndDocument();
  }
  EXPECT_NE(PdfPageText(pdf, 1).find("Total Calls"), std::string::npos);
  EXPECT_EQ(PdfPageText(pdf, 1).find("Second page"), std::string::npos);
  EXPECT_NE(PdfPageText(pdf, 2).find("Second page caf\u00e9 \u20ac 5"), std::string::npos);

  const std::string info = RunTool("pdfinfo", {pdf});
  EXPECT_NE(info.find("Pages:           2"), std::string::npos) << info;
  EXPECT_NE(info.find("612 x 792 pts"), std::string::npos) << info;
  EXPECT_NE(info.find("Daily Call Statistics"), std::string::npos) << info;
  const std::string fonts = RunTool("pdffonts", {pdf});
  EXPECT_NE(fonts.find("LiberationSans"), std::string::npos) << fonts;
  EXPECT_NE(fonts.find("LiberationSerif-Bold"), std::string::npos) << fonts;
  // Columns: name type encoding emb sub uni object ID; both fonts embedded.
  const std::regex embedded(R"(\s+yes\s+(yes|no)\s+(yes|no)\s+\d+\s+\d+\s*\n)");
  EXPECT_EQ(std::distance(std::sregex_iterator(fonts.begin(), fonts.end(), embedded), std::sregex_iterator()), 2)
      << fonts;

  // One inch from the left, and as wide as the metrics measured it
  // (coordinates in points: 20 twips each).
  QtTextMetrics metrics;
  const double right = (1440 + metrics.TextWidth(kArial9, "Total Calls")) / 20.0;
  const std::string boxes = RunTool("pdftotext", {"-bbox", "-f", "1", "-l", "1", pdf, "-"});
  const auto total = boxes.find("xMin=\"72.");
  ASSERT_NE(total, std::string::npos) << boxes;
  const auto calls = boxes.find(">Calls<");
  ASSERT_NE(calls, std::string::npos) << boxes;
  const auto xMax = boxes.rfind("xMax=\"", calls);
  EXPECT_NEAR(std::stod(boxes.substr(xMax + 6)), right, 0.5) << boxes;

  // Landscape, with a picture over a line; and a document without a page.
  const QString wide = dir.filePath("wide.pdf");
  const QString picture = WriteHalfWhitePicture(dir);
  {
    PdfPageDevice device(wide.toStdString());
    device.BeginDocument(PageSetup{12240, 15840, 2});
    device.BeginPage();
    device.Line(0, 150, 12240, 150);
    // The white half of the picture must leave the line visible.
    EXPECT_TRUE(device.Image(picture.toStdString(), 0, 0, 600, 300));
    EXPECT_FALSE(device.Image(dir.filePath("missing.bmp").toStdString(), 0, 0, 0, 0));
    device.EndDocument();
  }
  EXPECT_NE(RunTool("pdfinfo", {wide}).find("792 x 612 pts"), std::string::npos);
  // At 600 dpi a twip is 5/12 pixel: the line is at y 62.5, the picture's
  // white half spans x 0 to 125, its red half 125 to 250.
  RunTool("pdftoppm", {"-r", "600", "-x", "0", "-y", "0", "-W", "300", "-H", "150", "-png", "-singlefile", wide,
                       dir.filePath("rendered")});
  const QImage page(dir.filePath("rendered.png"));
  ASSERT_FALSE(page.isNull());
  int darkest = 255;
  for (int y = 60; y <= 65; ++y) darkest = std::min(darkest, qGray(page.pixel(50, y)));
  EXPECT_LT(darkest, 100) << "line under the white half";
  EXPECT_GT(QColor(page.pixel(200, 20)).red(), 240);
  EXPECT_LT(QColor(page.pixel(200, 20)).green(), 40) << "red half";
  EXPECT_GT(qGray(page.pixel(50, 20)), 240) << "white half over the page";

  const QString empty = dir.filePath("empty.pdf");
  {
    PdfPageDevice device(empty.toStdString());
    device.BeginDocument(kLetter);
    device.EndDocument();
  }
  EXPECT_NE(RunTool("pdfinfo", {empty}).find("Pages:           1"), std::string::npos);
}

TEST(PngPageDeviceTest, OnePictureAPageAtTheChosenResolution) {
  QTemporaryDir dir;
  const QString folder = dir.filePath("pages");
  QDir().mkpath(folder);
  // A page left from an earlier, longer document.
  QImage(10, 10, QImage::Format_RGB32).save(QDir(folder).filePath("page-0004.png"));
  const QString picture = WriteHalfWhitePicture(dir);
  {
    PngPageDevice device(folder.toStdString(), 72);
    device.BeginDocument(kLetter);
    for (int page = 1; page <= 3; ++page) {
      device.BeginPage();
      device.SetFont(kArial9);
      device.Text(720, 720, "Page text");
      device.Line(0, 150, 1440, 150);  // y = 7.5 pixels
      device.Box(2880, 2880, 4320, 4320);
      if (page == 2) {
        // 20 x 10 pixels at 15 twips each, at 72 dpi half of that.
        EXPECT_TRUE(device.Image(picture.toStdString(), 0, 0, 0, 0));
        EXPECT_FALSE(device.Image(dir.filePath("missing.bmp").toStdString(), 0, 0, 0, 0));
      }
      device.EndPage();
    }
    device.EndDocument();
    EXPECT_EQ(device.PagesWritten(), 3);
  }
  EXPECT_EQ(QDir(folder).entryList(QDir::Files),
            (QStringList{"page-0001.png", "page-0002.png", "page-0003.png"}));
  const QImage first(QDir(folder).filePath("page-0001.png"));
  EXPECT_EQ(first.size(), QSize(612, 792));
  EXPECT_EQ(qGray(first.pixel(144, 144)), 0) << "box corner";
  EXPECT_EQ(qGray(first.pixel(300, 300)), 255) << "blank paper";
  bool inked = false;
  for (int y = 36; y < 48; ++y) {
    for (int x = 36; x < 80; ++x) inked = inked || qGray(first.pixel(x, y)) < 128;
  }
  EXPECT_TRUE(inked) << "text drawn below its top line";

  // AND: the white half keeps the line, red over black stays black, red over
  // white is red.
  const QImage second(QDir(folder).filePath("page-0002.png"));
  // Pages of black text are stored grey; a page with a coloured picture keeps its colours.
  EXPECT_EQ(first.format(), QImage::Format_Grayscale8);
  EXPECT_NE(second.format(), QImage::Format_Grayscale8);
  const int lineY = 7;
  ASSERT_EQ(qGray(first.pixel(2, lineY)), 0);
  EXPECT_EQ(qGray(second.pixel(2, lineY)), 0);
  EXPECT_EQ(second.pixel(8, lineY) & 0xFFFFFF, 0u);
  EXPECT_EQ(second.pixel(8, 1) & 0xFFFFFF, 0xFF0000u);
  EXPECT_EQ(second.pixel(2, 1) & 0xFFFFFF, 0xFFFFFFu);

  EXPECT_THROW(PngPageDevice(folder.toStdString(), 5), RuntimeError);
  EXPECT_THROW(PngPageDevice(folder.toStdString(), 601), RuntimeError);
}

TEST(PageDevicesTest, PicturesThatAreNotRegularFilesAreRefusedWithoutWaiting) {
  QTemporaryDir dir;
  const std::string pipe = dir.filePath("chart.bmp").toStdString();
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  // Should the device wait for a writer, this one comes after a while and
  // lets it go, so that the test fails instead of hanging.
  std::mutex mutex;
  std::condition_variable finished;
  bool done = false;
  bool writerNeeded = false;
  std::thread watchdog([&] {
    std::unique_lock lock(mutex);
    if (finished.wait_for(lock, std::chrono::seconds(20), [&] { return done; })) return;
    const int fd = ::open(pipe.c_str(), O_WRONLY | O_NONBLOCK);
    writerNeeded = fd >= 0;
    if (fd >= 0) ::close(fd);
  });
  bool drawn = true;
  bool folderDrawn = true;
  {
    PngPageDevice device(dir.path().toStdString(), 72);
    device.BeginDocument(kLetter);
    device.BeginPage();
    drawn = device.Image(pipe, 0, 0, 0, 0);
    folderDrawn = device.Image(dir.path().toStdString(), 0, 0, 0, 0);
    device.EndPage();
    device.EndDocument();
  }
  {
    std::lock_guard lock(mutex);
    done = true;
  }
  finished.notify_one();
  watchdog.join();
  EXPECT_FALSE(drawn);
  EXPECT_FALSE(folderDrawn);
  EXPECT_FALSE(writerNeeded) << "the device waited on the named pipe";
}

TEST(PageDevicesTest, FailedOrUnfinishedOutputLeavesNothingBehind) {
  QTemporaryDir dir;
  // A missing folder is its own error; any path that cannot be written is refused
  // with its path named (SpoolCommands.ExportToAnUnwritablePathLeavesNothingBehind).
  const std::string missing = dir.filePath("no/such/folder/report.pdf").toStdString();
  EXPECT_EQ(test::ErrorNumberOf([&] { PdfPageDevice(missing).BeginDocument(kLetter); }), err::kPathNotFound);
  PdfPageDevice absurd(dir.filePath("absurd.pdf").toStdString());
  EXPECT_THROW(absurd.BeginDocument(PageSetup{0, 15840, 1}), RuntimeError);
  EXPECT_THROW(absurd.BeginDocument(PageSetup{12240, 1e12, 1}), RuntimeError);

  // Documents dropped before their end: the PDF and the pages written so far go.
  {
    PdfPageDevice device(dir.filePath("cut.pdf").toStdString());
    device.BeginDocument(kLetter);
    device.BeginPage();
    device.SetFont(kArial9);
    device.Text(0, 0, "never finished");
  }
  const QString folder = dir.filePath("cut");
  {
    PngPageDevice device(folder.toStdString(), 50);
    device.BeginDocument(kLetter);
    device.BeginPage();
    device.EndPage();
    device.BeginPage();
    // A finished page waits under a hidden name for the rest of the document.
    EXPECT_TRUE(QDir(folder).entryList(QDir::Files).isEmpty());
    EXPECT_EQ(QDir(folder).entryList(QDir::Files | QDir::Hidden).size(), 1);
  }
  // The folder was made for the document, and goes with it.
  EXPECT_FALSE(QDir(folder).exists());
  EXPECT_TRUE(QDir(dir.path()).entryList(QDir::Files).isEmpty());
}

}  // namespace
}  // namespace cw
