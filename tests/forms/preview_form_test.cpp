// The preview window on spools written by the engine with fixed-pitch
// metrics: zoom rows and fitting rules, keys, page location, the window's
// size rules, its buttons, the search, and files that go bad under it.

#include "forms/preview_form.h"

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QFileDialog>
#include <QKeySequence>
#include <QTimer>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QtTest>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>

#include "core/printer/engine_test_rig.h"
#include "core/printer/spool_test_files.h"
#include "forms/forms_rig.h"
#include "forms/preview_page_image.h"
#include "forms/save_report_dialog.h"
#include "forms/preview_zoom.h"
#include "printer/orl_printer.h"
#include "reports/report_data.h"
#include "testing/recording_host.h"

namespace cw {
namespace {

using PageExtra = std::function<void(OrlPrinter&, int page)>;

// One report document spooled into the test's folder.
struct Report {
  testing::EngineTestRig rig;
  std::unique_ptr<OrlPrinter> document;
  int printCalls = 0;
  std::string saveName;

  // pages of body text (and a rule), landscape when orientation is 2; extra
  // draws more on each page.
  OrlPrinter& Make(int pages, std::int16_t orientation = 1, const PageExtra& extra = {}) {
    OrlPrinterEnvironment environment = rig.Environment();
    environment.printReport = [this](OrlPrinter&) { ++printCalls; };
    environment.askSaveFileName = [this] { return saveName; };
    document = std::make_unique<OrlPrinter>(environment);
    OrlPrinter& d = *document;
    d.BeginDoc();
    d.SetScaleMode(5);
    d.SetOrientation(orientation);
    d.SetTitle("Preview Test");
    d.SetFont("Arial", 10, 0);
    for (int page = 1; page <= pages; ++page) {
      if (page > 1) d.NewPage();
      d.SetY(1);
      d.TextOut(1, "Body of page " + std::to_string(page));
      d.LineOut(1, 1.5, 7, 1.5);
      if (extra) extra(d, page);
    }
    d.EndDoc();
    OrlPrinter::OutputOptions& options = d.Options();
    options.previewSizable = true;
    options.previewWindowWidth = 12000;
    options.previewWindowHeight = 9000;
    return d;
  }
};

bool Has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

double NonWhiteShare(const QImage& image) {
  qint64 dark = 0;
  for (int y = 0; y < image.height(); ++y) {
    const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
    for (int x = 0; x < image.width(); ++x) dark += (row[x] & 0xFFFFFF) != 0xFFFFFF;
  }
  return image.isNull() ? 0 : static_cast<double>(dark) / (image.width() * image.height());
}

}  // namespace

class PreviewFormTest : public QObject {
  Q_OBJECT

 private:
  QTemporaryDir folder_;
  testing::RecordingHost host_;

  // The form on screen, activated, at the given size.
  std::unique_ptr<PreviewForm> Open(OrlPrinter& document, QSize size = QSize(900, 700),
                                    const ReportData* data = nullptr) {
    auto form = std::make_unique<PreviewForm>(document, host_, PageSetup{}, nullptr, data);
    form->show();
    if (!QTest::qWaitForWindowExposed(form.get())) return form;
    Resize(*form, size);
    return form;
  }
  static void Resize(PreviewForm& form, QSize size) {
    form.resize(size);
    QCoreApplication::processEvents();
  }
  static void Pick(PreviewForm& form, const QString& row) {
    auto* zoom = testing::Control<QComboBox>(form, "ZoomList");
    const int index = zoom->findText(row);
    zoom->setCurrentIndex(index);
    emit zoom->activated(index);
  }
  static void Click(PreviewForm& form, const char* button) {
    QTest::mouseClick(testing::Control<QPushButton>(form, button), Qt::LeftButton);
  }
  // Saves through the Save button under that name in the test's folder:
  // what the file holds, "" when there is none.
  std::string Save(PreviewForm& form, Report& report, const char* name) {
    report.saveName = folder_.filePath(name).toStdString();
    Click(form, "SaveBtn");
    return QFile::exists(QString::fromStdString(report.saveName)) ? testing::ReadBytes(report.saveName) : "";
  }
  static QWidget* PageImg(PreviewForm& form) { return testing::Control<QWidget>(form, "PageImg"); }
  static QImage Canvas(PreviewForm& form) { return static_cast<PreviewPageImage*>(PageImg(form))->Canvas().copy(); }

 private slots:
  void initTestCase() {
    QVERIFY(folder_.isValid());
    qputenv("TMPDIR", folder_.path().toLocal8Bit());
  }
  void init() { host_.messages.clear(); }

  // The factor of each zoom row for a window and a page: zoom_rules.txt.
  void zoomRulesByHand() {
    for (const QStringList& row : testing::TableRows(QStringLiteral("zoom_rules.txt"))) {
      const bool bars = row.value(2) == "shown";
      const ZoomArea area{row.value(0).toDouble(), row.value(1).toDouble(), 255, 255, bars, bars,
                          row.value(3).toDouble(), row.value(4).toDouble()};
      const std::optional<double> factor = ZoomFactorFor(row.value(5).toStdString(), area);
      QCOMPARE(factor ? QString::number(*factor, 'f', 9) : QStringLiteral("none"), row.value(6));
    }
  }

  // The rows, and the page drawn at each percentage's size; the fitted rows
  // on the window: the page must fit the panel, its bars go, and a fitted
  // page follows the window (the factors are worked by hand in zoomRulesByHand).
  void zoomRowsSizeThePage() {
    Report report;
    auto listed = Open(report.Make(2));
    QCOMPARE(testing::Rows(*testing::Control<QComboBox>(*listed, "ZoomList")),
             QStringList({"50%", "60%", "70%", "80%", "90%", "100%", "125%", "150%", "200%", "Full Page",
                          "Page Width"}));
    for (int percent : {50, 60, 70, 80, 90, 100, 125, 150, 200}) {
      Pick(*listed, QString::number(percent) + "%");
      QCOMPARE(PageImg(*listed)->width(),
               static_cast<int>(std::lround(12240 * percent / 100.0 / listed->TwipsPerPixelX())));
    }

    struct Row {
      std::int16_t orientation;
      QSize window;
    };
    for (const Row& row : {Row{1, {900, 700}}, Row{2, {1000, 500}}, Row{2, {500, 900}}}) {
      Report fitted;
      auto form = Open(fitted.Make(1, row.orientation), row.window);
      auto* panel = testing::Control<QWidget>(*form, "Panel");
      auto* vscroll = testing::Control<QScrollBar>(*form, "VScroll");
      auto* hscroll = testing::Control<QScrollBar>(*form, "HScroll");
      QVERIFY(vscroll->isVisible() || hscroll->isVisible());  // 100 % does not fit
      const auto fits = [&] {
        return PageImg(*form)->width() <= panel->width() && PageImg(*form)->height() <= panel->height();
      };
      Pick(*form, "Full Page");
      QVERIFY(fits());
      QVERIFY(!vscroll->isVisible() && !hscroll->isVisible());
      Pick(*form, "Page Width");
      QVERIFY(PageImg(*form)->width() > panel->width() * 0.8);
      QVERIFY(!hscroll->isVisible());
      Pick(*form, "Full Page");
      Resize(*form, row.window / 2);
      QVERIFY(fits());
    }
  }

  // The row the window opens at from the document's zoom percentage, and
  // its factor: the table initial_zoom.txt.
  void initialZoomFromZoomPercent() {
    for (const QStringList& row : testing::TableRows(QStringLiteral("initial_zoom.txt"))) {
      Report report;
      report.Make(1);
      report.document->Options().zoomPercent = static_cast<std::int16_t>(row.value(0).toInt());
      auto form = Open(*report.document);
      QCOMPARE(testing::Control<QComboBox>(*form, "ZoomList")->currentText(), row.value(1));
      if (row.value(2) != "fitted") QCOMPARE(form->ZoomFactor(), row.value(2).toDouble());
    }
  }

  // The paging keys and the page scroll; and back from page 5 to page 2,
  // the page as first drawn (where each page starts, back from the middle of
  // page 5 to page 2 among them, is PageLocatorTest's).
  void keyboardPaging() {
    Report report;
    auto form = Open(report.Make(6, 1, [](OrlPrinter& d, int) {
      for (int row = 0; row < 8; ++row) {
        d.NewLine();
        d.TextOut(1, "row " + std::to_string(row));
      }
    }));
    QWidget* page = PageImg(*form);
    auto* scroll = testing::Control<QScrollBar>(*form, "PageScroll");
    auto* label = testing::Control<QLabel>(*form, "PageLabel");
    QCOMPARE(scroll->minimum(), 1);
    QCOMPARE(scroll->maximum(), 6);
    QCOMPARE(form->CurrentPage(), std::int16_t{1});
    QCOMPARE(label->text(), QString("Page 1 of 6"));
    // The keys of paging_keys.txt in turn, each with the page it leads to.
    for (const QStringList& row : testing::TableRows(QStringLiteral("paging_keys.txt"))) {
      const QKeyCombination key = QKeySequence::fromString(row.value(0))[0];
      QTest::keyClick(page, key.key(), key.keyboardModifiers());
      QCOMPARE(form->CurrentPage(), static_cast<std::int16_t>(row.value(1).toInt()));
      QCOMPARE(scroll->value(), row.value(1).toInt());
      QCOMPARE(QApplication::focusWidget(), page);
    }
    QCOMPARE(label->text(), QString("Page 1 of 6"));

    // Keys pressed on another control page all the same, and hand the focus back.
    auto* zoom = testing::Control<QComboBox>(*form, "ZoomList");
    zoom->setFocus();
    QTest::keyClick(zoom, Qt::Key_PageDown);
    QCOMPARE(form->CurrentPage(), std::int16_t{2});
    QCOMPARE(QApplication::focusWidget(), page);

    // Dragging the thumb only moves the label.
    emit scroll->sliderMoved(5);
    QCOMPARE(label->text(), QString("Page 5 of 6"));
    QCOMPARE(form->CurrentPage(), std::int16_t{2});

    const QImage pageTwo = Canvas(*form);
    scroll->setValue(5);
    QVERIFY(Canvas(*form) != pageTwo);
    for (int i = 0; i < 3; ++i) QTest::keyClick(page, Qt::Key_PageUp);
    QCOMPARE(form->CurrentPage(), std::int16_t{2});
    QCOMPARE(Canvas(*form), pageTwo);
  }

  // Regression too: at 200% the page showed through between the two bars.
  void arrowKeysScrollABigPageUnderCoveredBars() {
    Report report;
    auto form = Open(report.Make(1), QSize(600, 500));
    Pick(*form, "200%");
    QWidget* page = PageImg(*form);
    auto* vscroll = testing::Control<QScrollBar>(*form, "VScroll");
    auto* hscroll = testing::Control<QScrollBar>(*form, "HScroll");
    QVERIFY(vscroll->isVisible() && hscroll->isVisible());
    auto* corner = testing::Control<QWidget>(*form, "ScrollCorner");
    QCOMPARE(corner->geometry(), QRect(vscroll->x(), hscroll->y(), vscroll->width(), hscroll->height()));
    // Above the page: the topmost child there is the corner.
    QCOMPARE(corner->parentWidget()->childAt(corner->geometry().center()), corner);
    QCOMPARE(vscroll->value(), 0);
    QTest::keyClick(page, Qt::Key_Down);
    QCOMPARE(vscroll->value(), vscroll->pageStep());
    QCOMPARE(page->y(), -vscroll->pageStep());
    for (int i = 0; i < 20; ++i) QTest::keyClick(page, Qt::Key_Down);
    QCOMPARE(vscroll->value(), vscroll->maximum());
    // The last pixel row of the page is in view.
    QCOMPARE(page->y() + page->height(), vscroll->height());
    QTest::keyClick(page, Qt::Key_Right);
    QCOMPARE(hscroll->value(), hscroll->pageStep());
    QTest::keyClick(page, Qt::Key_Left);
    QTest::keyClick(page, Qt::Key_Left);
    QCOMPARE(hscroll->value(), 0);
    QTest::keyClick(page, Qt::Key_Up);
    QCOMPARE(vscroll->value(), vscroll->maximum() - vscroll->pageStep());
    Pick(*form, "50%");
    QVERIFY(!corner->isVisible());
  }

  // Regression: the wheel did nothing over a page taller than the window.
  void wheelScrollsAndCtrlWheelZooms() {
    Report report;
    auto form = Open(report.Make(1), QSize(700, 500));
    Pick(*form, "100%");
    QWidget* page = PageImg(*form);
    auto* vscroll = testing::Control<QScrollBar>(*form, "VScroll");
    auto* zoom = testing::Control<QComboBox>(*form, "ZoomList");
    QVERIFY(vscroll->isVisible());
    auto wheel = [&](QWidget* over, int notches, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
      const QPointF at(over->width() / 2.0, over->height() / 2.0);
      QWheelEvent event(at, over->mapToGlobal(at), QPoint(), QPoint(0, 120 * notches), Qt::NoButton, modifiers,
                        Qt::NoScrollPhase, false);
      QApplication::sendEvent(over, &event);
    };
    // Down by a step a notch, over the page or the grey around it; never past the end.
    wheel(page, -1);
    QCOMPARE(vscroll->value(), vscroll->singleStep());
    QCOMPARE(page->y(), -vscroll->singleStep());
    wheel(testing::Control<QWidget>(*form, "Panel"), -2);
    QCOMPARE(vscroll->value(), 3 * vscroll->singleStep());
    wheel(page, 1000);
    QCOMPARE(vscroll->value(), 0);
    wheel(page, -1000);
    QCOMPARE(vscroll->value(), vscroll->maximum());

    // Ctrl+wheel: the next percentage row each way.
    wheel(page, 1, Qt::ControlModifier);
    QCOMPARE(zoom->currentText(), QStringLiteral("125%"));
    QCOMPARE(form->ZoomFactor(), 1.25);
    for (int i = 0; i < 2; ++i) wheel(page, -1, Qt::ControlModifier);
    QCOMPARE(zoom->currentText(), QStringLiteral("90%"));
  }

  // Regression: drawing a page ended the hourglass of the request that
  // opened the preview, and left its own on top.
  void drawingAPageLeavesThePointerAsItWas() {
    Report report;
    report.Make(2);
    const std::size_t busyBefore = host_.busyChanges.size();
    QCOMPARE(QApplication::overrideCursor(), nullptr);
    auto form = Open(*report.document);
    QCOMPARE(QApplication::overrideCursor(), nullptr);
    Pick(*form, "150%");
    QTest::keyClick(PageImg(*form), Qt::Key_PageDown);
    QCOMPARE(form->CurrentPage(), std::int16_t{2});
    QCOMPARE(QApplication::overrideCursor(), nullptr);
    // The host's busy state is the request's, not the preview's.
    QCOMPARE(host_.busyChanges.size(), busyBefore);
  }

  // A one-page report, whose paging keys change nothing; the window's
  // smallest size; its buttons and their captions as the document asks.
  void onePageReportSizeRulesAndButtons() {
    Report report;
    report.Make(1);
    report.document->Options().closeButtonCaption.clear();
    auto form = Open(*report.document);
    const std::int64_t start = form->PageStartRecord();
    for (Qt::Key key : {Qt::Key_PageDown, Qt::Key_PageUp}) {
      QTest::keyClick(PageImg(*form), key);
      QTest::keyClick(PageImg(*form), key, Qt::ControlModifier);
    }
    QCOMPARE(form->PageStartRecord(), start);
    QCOMPARE(testing::Control<QLabel>(*form, "PageLabel")->text(), QString("Page 1 of 1"));
    Resize(*form, QSize(10, 10));
    QVERIFY(form->width() * form->TwipsPerPixelX() >= 2000);
    QVERIFY(form->height() * form->TwipsPerPixelY() >= 2000);
    QVERIFY(form->width() * form->TwipsPerPixelX() < 2000 + form->TwipsPerPixelX());
    auto* close = testing::Control<QPushButton>(*form, "CloseBtn");
    QCOMPARE(close->text(), QString("Close"));

    // The document chooses which buttons are shown.
    OrlPrinter::OutputOptions& options = report.document->Options();
    options.showPreviewPrint = false;
    options.showPreviewSave = true;
    options.showPreviewFind = false;
    auto chosen = Open(*report.document);
    QVERIFY(!testing::Control<QPushButton>(*chosen, "PrintBtn")->isVisible());
    QVERIFY(testing::Control<QPushButton>(*chosen, "SaveBtn")->isVisible());
    QVERIFY(!testing::Control<QPushButton>(*chosen, "FindBtn")->isVisible());

    // A long caption is not cut; a window that may not be sized is maximised.
    options.closeButtonCaption = "Close this report and go back to the form";
    options.previewSizable = false;
    PreviewForm fixed(*report.document, host_, PageSetup{});
    auto* wide = testing::Control<QPushButton>(fixed, "CloseBtn");
    QVERIFY(wide->width() >= wide->fontMetrics().horizontalAdvance(wide->text()));
    QVERIFY(fixed.windowState() & Qt::WindowMaximized);

    QTest::mouseClick(close, Qt::LeftButton);
    QVERIFY(!form->isVisible());
  }

  // Print and Save go through the engine; a name ending in .csv saves the
  // report's data when the report kept any, the text otherwise.
  void printAndSaveGoThroughTheEngine() {
    Report report;
    report.Make(2);
    ReportData data(true);
    data.Begin({"Name", "Calls"});
    const std::string row[] = {"M\xDCLLER, ANNA", "2"};
    data.AddRow(row);
    auto form = Open(*report.document, QSize(900, 700), &data);
    Click(*form, "PrintBtn");
    QCOMPARE(report.printCalls, 1);
    QCOMPARE(Save(*form, report, "calls.CSV"), std::string("Name,Calls\r\n\"M\xC3\x9CLLER, ANNA\",2\r\n"));
    QVERIFY(Has(Save(*form, report, "calls.txt"), "Body of page 2"));
    auto plain = Open(*report.document);
    QVERIFY(Has(Save(*plain, report, "plain.csv"), "Body of page 2"));
    QVERIFY(host_.messages.empty());

    // A save to a folder that is not there: the error box, and the window goes on.
    Save(*form, report, "no-such-folder/saved.txt");
    QCOMPARE(host_.messages.size(), std::size_t{1});
    QCOMPARE(host_.messages[0].title, std::string("Error"));
    QVERIFY(Has(host_.messages[0].text, "procedure SaveBtn_Click."));
    QTest::keyClick(PageImg(*form), Qt::Key_PageDown);
    QCOMPARE(form->CurrentPage(), std::int16_t{2});
  }

  void saveReportDialog() {
    const QString folder = folder_.path();
    QString title;
    QStringList filters;
    QString suffix;
    QTimer::singleShot(0, [&] {
      auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
      QVERIFY(dialog != nullptr);
      title = dialog->windowTitle();
      filters = dialog->nameFilters();
      suffix = dialog->defaultSuffix();
      dialog->setDirectory(folder);
      dialog->selectFile("March calls");
      QMetaObject::invokeMethod(dialog, "accept");
    });
    const std::string chosen = AskSaveReportFileName(nullptr);
    QCOMPARE(title, QString("Save Report"));
    QCOMPARE(filters, QStringList({"Text Files (*.txt)", "CSV Files (*.csv)", "All Files (*.*)"}));
    QCOMPARE(suffix, QString("txt"));
    QCOMPARE(QString::fromStdString(chosen), folder + "/March calls.txt");

    QTimer::singleShot(0, [] { QApplication::activeModalWidget()->close(); });
    QCOMPARE(AskSaveReportFileName(nullptr), std::string());
  }

  // The Find button and the keys F and F3 reach no search yet: they change
  // nothing. The search itself, FindInReport, is ready to be connected.
  void findDoesNothingYetAndFindInReportSearches() {
    Report report;
    report.Make(5, 1, [](OrlPrinter& d, int page) {
      d.NewLine();
      if (page == 1) d.TextOut(1, "calls total");
      if (page == 3) d.TextOut(1, "TOTAL CALLS");
      if (page == 4) {
        d.TextOut(1, "SPLIT");
        d.TextOut(3, "TEXT");
      }
    });
    report.document->Options().showPreviewFind = true;
    auto form = Open(*report.document);
    QTest::keyClick(PageImg(*form), Qt::Key_PageDown);
    const QImage before = Canvas(*form);
    const QWidgetList windows = QApplication::topLevelWidgets();
    Click(*form, "FindBtn");
    QTest::keyClick(PageImg(*form), Qt::Key_F);
    QTest::keyClick(PageImg(*form), Qt::Key_F3);
    QTest::keyClick(PageImg(*form), Qt::Key_F3, Qt::ShiftModifier);
    QCOMPARE(form->CurrentPage(), std::int16_t{2});
    QCOMPARE(Canvas(*form), before);
    QCOMPARE(QApplication::topLevelWidgets(), windows);

    form->FindInReport("total", true);  // page 1's own hit
    QCOMPARE(form->CurrentPage(), std::int16_t{1});
    form->FindInReport("total calls", false);  // from page 2 on
    QCOMPARE(form->CurrentPage(), std::int16_t{3});

    form->FindInReport("split text", true);  // split over two records
    QCOMPARE(form->CurrentPage(), std::int16_t{3});

    // The blank padding of the field is searched too.
    form->FindInReport("TEXT    ", true);
    QCOMPARE(form->CurrentPage(), std::int16_t{4});

    // From the last page, not from the top: nothing is searched.
    QTest::keyClick(PageImg(*form), Qt::Key_PageDown, Qt::ControlModifier);
    form->FindInReport("body of page", false);
    QCOMPARE(form->CurrentPage(), std::int16_t{5});
    QVERIFY(host_.messages.empty());
  }

  void missingPictureLeavesThePageAsDrawn() {
    Report report;
    const std::string missing = folder_.filePath("gone/Chart.bmp").toStdString();
    report.Make(2, 1, [&](OrlPrinter& d, int page) {
      if (page == 2) d.ImageOut(missing, 1, 2, 4, 3);
    });
    auto form = Open(*report.document);
    QTest::keyClick(PageImg(*form), Qt::Key_PageDown);
    QCOMPARE(form->CurrentPage(), std::int16_t{2});
    QCOMPARE(host_.messages.size(), std::size_t{1});
    QVERIFY(Has(host_.messages[0].text, missing));
    QVERIFY(NonWhiteShare(Canvas(*form)) > 0.001);  // the text is there
    // Said once, not on every redraw.
    Pick(*form, "50%");
    QCOMPARE(host_.messages.size(), std::size_t{1});
  }

  // The spool removed, or cut short, under the open window, or damaged or
  // gone before it opens: one box each, and what the window holds is still
  // shown.
  void spoolRemovedCutShortDamagedOrMissing() {
    Report report;
    auto form = Open(report.Make(3));
    std::filesystem::remove(report.document->PrintFile());
    Save(*form, report, "never.txt");
    Click(*form, "PrintBtn");
    QCOMPARE(host_.messages.size(), std::size_t{2});
    QVERIFY(Has(host_.messages[0].text, "has been removed"));
    QCOMPARE(report.printCalls, 0);
    QVERIFY(!QFile::exists(folder_.filePath("never.txt")));
    QTest::keyClick(PageImg(*form), Qt::Key_PageDown, Qt::ControlModifier);
    QCOMPARE(form->CurrentPage(), std::int16_t{3});
    QVERIFY(NonWhiteShare(Canvas(*form)) > 0.001);

    // Cut short: said when paging reaches the cut, and the pages go on.
    host_.messages.clear();
    Report cut;
    auto shortened = Open(cut.Make(4));
    std::filesystem::resize_file(cut.document->PrintFile(), std::filesystem::file_size(cut.document->PrintFile()) / 2);
    QTest::keyClick(PageImg(*shortened), Qt::Key_PageDown, Qt::ControlModifier);
    QCOMPARE(shortened->CurrentPage(), std::int16_t{4});
    QCOMPARE(host_.messages.size(), std::size_t{1});
    QVERIFY(Has(host_.messages[0].text, "cut short"));
    QTest::keyClick(PageImg(*shortened), Qt::Key_PageUp, Qt::ControlModifier);
    QCOMPARE(shortened->CurrentPage(), std::int16_t{1});

    // Damaged before the window opens: record 3 gets a keyword the engine
    // never writes.
    host_.messages.clear();
    Report damaged;
    damaged.Make(2);
    {
      std::fstream file(damaged.document->PrintFile(), std::ios::binary | std::ios::in | std::ios::out);
      file.seekp(2 * kSpoolRecordSize + spool::kKeyword);
      file.write("GARBAGE ", 8);
    }
    auto opened = Open(*damaged.document);
    QCOMPARE(host_.messages.size(), std::size_t{1});
    QVERIFY(Has(host_.messages[0].text, "is damaged"));
    QVERIFY(Has(host_.messages[0].text, "GARBAGE"));
    QTest::keyClick(PageImg(*opened), Qt::Key_PageDown);
    QCOMPARE(opened->CurrentPage(), std::int16_t{2});

    // Gone before the window opens.
    host_.messages.clear();
    std::filesystem::remove(damaged.document->PrintFile());
    PreviewForm missing(*damaged.document, host_, PageSetup{});
    QVERIFY(!missing.IsLoaded());
    QCOMPARE(missing.exec(), int(QDialog::Rejected));
    QCOMPARE(host_.messages.size(), std::size_t{1});
    QCOMPARE(host_.messages[0].title, std::string("Error"));
    QVERIFY(Has(host_.messages[0].text, "File not found"));
  }
};

}  // namespace cw

QTEST_MAIN(cw::PreviewFormTest)
#include "preview_form_test.moc"
