// A report spooled by the engine with the real metrics, replayed to PDF:
// every text must come out on the page the engine put it on.
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "platform/pdf_page_device.h"
#include "platform/poppler_tools.h"
#include "platform/qt_text_metrics.h"
#include "printer/orl_printer.h"
#include "printer/spool_reader.h"
#include "printer/spool_replay.h"

namespace cw {
namespace {

// A listing of `rows` rows in the reports' fonts and layout: automatic
// headings, a page break whenever a row would start below the margin.
class SpooledListing {
 public:
  explicit SpooledListing(int rows) : printer_(Environment()) {
    printer_.OnNewPage = [this](std::int16_t) {
      printer_.SetFont("Arial", 9, 1);
      printer_.TextOut(0.5, "Date");
      printer_.TextOut(2.5, "Name");
      printer_.NewLine();
      printer_.LineOut(0.5, printer_.Y(), 7.5, printer_.Y());
      printer_.SetFont("Times New Roman", 9, 0);
    };
    printer_.BeginDoc();
    printer_.SetScaleMode(5);
    printer_.SetSpacing(1.0);
    printer_.SetBottomMargin(0.5);
    printer_.SetAutoHeadings(true);
    printer_.SetAutoNewPage(true);
    printer_.SetAutoHeadingsFontName("Arial");
    printer_.SetAutoHeadingsFontSize(10);
    printer_.SetAutoHeadingsFontAttr(1);
    printer_.SetTitle("Call History");
    printer_.SetSubTitle("Report Period: 11/01/2026 - 11/22/2026");
    printer_.SetFont("Times New Roman", 9, 0);
    printer_.SetY(1.4);
    for (int row = 1; row <= rows; ++row) {
      char name[32];
      std::snprintf(name, sizeof name, "Caller%04d", row);
      printer_.TextOut(0.5, "11/22/2026");
      printer_.TextOut(2.5, name);
      printer_.NewLine();
    }
    printer_.EndDoc();
    EXPECT_TRUE(errors_.empty()) << errors_.front();
  }
  ~SpooledListing() { printer_.DestroyReport(); }

  std::string Spool() const { return printer_.PrintFile(); }
  int Pages() const { return printer_.TotalPages(); }

  // The page the engine wrote each caller's row on, read from the spool.
  std::map<std::string, int> PageOfEachCaller() const {
    std::map<std::string, int> pages;
    SpoolReader reader(Spool());
    SpoolCommand command;
    while (reader.Next(command)) {
      if (command.keyword == SpoolKeyword::kTextOut && command.text.starts_with("Caller")) {
        pages[command.text] = command.page;
      }
    }
    return pages;
  }

 private:
  OrlPrinterEnvironment Environment() {
    OrlPrinterEnvironment environment;
    environment.metrics = &metrics_;
    environment.today = [] { return CivilDate::FromYmd(2026, 11, 22); };
    environment.showError = [this](const std::string& text) { errors_.push_back(text); };
    return environment;
  }

  QtTextMetrics metrics_;
  std::vector<std::string> errors_;
  OrlPrinter printer_;
};

TEST(EngineExportTest, PdfHoldsEveryRowOnTheEnginesPage) {
  const SpooledListing listing(150);
  ASSERT_GE(listing.Pages(), 3);
  const std::map<std::string, int> pageOf = listing.PageOfEachCaller();
  ASSERT_EQ(pageOf.size(), 150u);

  QTemporaryDir dir;
  const QString pdf = dir.filePath("history.pdf");
  PdfPageDevice device(pdf.toStdString(), "Call History");
  const ReplayResult result = ReplaySpool(listing.Spool(), device, ReplayOptions{});
  EXPECT_TRUE(result.problems.Empty());
  EXPECT_EQ(result.pagesBegun, listing.Pages());
  ASSERT_TRUE(device.Completed());

  for (int page = 1; page <= listing.Pages(); ++page) {
    const std::string text = testing::PdfPageText(pdf, page);
    EXPECT_NE(text.find("Page: " + std::to_string(page)), std::string::npos) << text;
    EXPECT_NE(text.find("Call History"), std::string::npos) << "heading on page " << page;
    EXPECT_NE(text.find("Report Period: 11/01/2026 - 11/22/2026"), std::string::npos);
    for (const auto& [caller, callerPage] : pageOf) {
      EXPECT_EQ(text.find(caller) != std::string::npos, callerPage == page) << caller << " on page " << page;
    }
  }
}

}  // namespace
}  // namespace cw
