// Printing a report on a real printer: a CUPS PDF queue (set up by
// scripts/start-cups-pdf.sh) receives the job, and the PDF it writes is read
// back; a printer that is not there raises OnPrinterError; the page device
// keeps positions measured from the paper's edge.

#include <QApplication>
#include <QComboBox>
#include <QDateTime>
#include <QLabel>
#include <QLineEdit>
#include <QPrinter>
#include <QPrinterInfo>
#include <QProcess>
#include <QPushButton>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include "forms/forms_rig.h"
#include "forms/print_opt_form.h"
#include "forms/print_progress_form.h"
#include "forms/qt_print_report.h"
#include "platform/printer_page_device.h"
#include "platform/qt_text_metrics.h"
#include "printer/orl_printer.h"
#include "printer/scale_mode.h"
#include "printer/spool_replay.h"
#include "testing/cups_pdf_queue.h"

using namespace cw;

namespace {

const char* const kPageTexts[] = {"PAGEONEALPHA", "PAGETWOBRAVO", "PAGETHREECHARLIE"};

// Three pages, each with its own word one inch from the left edge, the first
// one inch down and each next page's two inches further; for the printer
// named, without the print dialog.
std::unique_ptr<OrlPrinter> ThreePages(const std::string& title, const QString& printer = {}) {
  static QtTextMetrics metrics;
  OrlPrinterEnvironment environment;
  environment.metrics = &metrics;
  auto document = std::make_unique<OrlPrinter>(std::move(environment));
  document->BeginDoc();
  document->SetScaleMode(scale::kInches);
  document->SetOrientation(1);
  document->SetTitle(title);
  for (int page = 0; page < 3; ++page) {
    if (page > 0) document->NewPage();
    // Records of the pages before a printed range are skipped, font changes
    // too: like a report's heading block, each page sets its own font.
    document->SetFont("Arial", 24, 1);
    document->SetY(1 + 2 * page);
    document->TextOut(1, kPageTexts[page]);
  }
  document->EndDoc();
  document->Options().showPrintDialog = false;
  document->Options().defaultPrinter = printer.toStdString();
  return document;
}

// The CUPS PDF queue, or a null name when this machine has none.
QString Queue() {
  const QString queue = QString::fromStdString(cw::testing::CupsPdfQueueName());
  return QPrinterInfo::printerInfo(queue).isNull() ? QString() : queue;
}
const char* const kNoQueue =
    "no CUPS PDF queue: run scripts/start-cups-pdf.sh as root (it needs the cups and printer-driver-cups-pdf packages)";

// A name for this run's jobs, that no other run's job holds.
std::string Token(const char* kind) {
  return QStringLiteral("%1%2x%3")
      .arg(QLatin1String(kind))
      .arg(QCoreApplication::applicationPid())
      .arg(QDateTime::currentMSecsSinceEpoch())
      .toStdString();
}

}  // namespace

class PrintCupsTest : public QObject {
  Q_OBJECT

 private slots:
  void pagesAndCopiesReachTheCupsPdfQueue() {
    const QString queue = Queue();
    if (queue.isNull()) QSKIP(kNoQueue);
    const std::string token = Token("cwprint");
    const std::set<std::filesystem::path> before = cw::testing::PdfsIn(cw::testing::CupsPdfFolder());

    const auto printed = ThreePages(token, QStringLiteral("a printer this machine does not have"));
    OrlPrinter& document = *printed;
    int printerErrors = 0;
    document.OnPrinterError = [&](bool&) { ++printerErrors; };
    document.Options().showPrintDialog = true;
    document.Options().showProgress = true;

    // What the dialog showed when it came up, checked once it has closed.
    QString shown;
    testing::WhenModalShows([&](QWidget& dialog) {
      auto* from = testing::Control<QLineEdit>(dialog, "FromPageEdit");
      auto* copies = testing::Control<QLineEdit>(dialog, "CopiesEdit");
      auto* list = testing::Control<QComboBox>(dialog, "PrinterList");
      shown = from->text() + "-" + testing::Control<QLineEdit>(dialog, "ToPageEdit")->text() + " x" +
              copies->text() + " on " + list->currentText();
      list->setCurrentIndex(list->findText(queue));
      from->setText(QStringLiteral("2"));
      copies->setText(QStringLiteral("2"));
      testing::Control<QPushButton>(dialog, "OKBtn")->click();
    });
    QCOMPARE(PrintReportOnPrinter(document), PrintOutcome::kPrinted);
    // Filled from the document: the whole document once; the unknown printer
    // leaves the list's text empty.
    QCOMPARE(shown, QStringLiteral("1-3 x1 on "));
    QCOMPARE(printerErrors, 0);

    QTemporaryDir work;
    QVERIFY(work.isValid());
    const QString kept = work.filePath(QStringLiteral("printed.pdf"));
    QVERIFY2(!cw::testing::TakeNewPdf(cw::testing::CupsPdfFolder(), before, token, kept.toStdString()).empty(),
             cw::testing::CupsPdfFolder().c_str());
    // Pages 2 and 3, twice, in the queue chosen. Which pages and in what order
    // each copy takes them is the replay's (SpoolReplayTest.PageRangesSkip...,
    // CopiesFollowEachOther...); here the dialog's choice must reach the
    // queue: the whole document twice would be 6.
    QCOMPARE(cw::testing::PdfPageCount(kept.toStdString()), 4);

    // Cancelling the dialog prints nothing and changes nothing.
    testing::WhenModalShows([](QWidget& dialog) { testing::Control<QPushButton>(dialog, "CancelBtn")->click(); });
    QCOMPARE(PrintReportOnPrinter(document), PrintOutcome::kCancelled);
    QCOMPARE(document.Options().printCopies, std::int16_t{2});
    document.DestroyReport();
  }

  // Regression: Cancel in the progress window closed it, but CUPS still got
  // every page drawn until then.
  void cancelWhilePrintingSendsNothing() {
    const QString queue = Queue();
    if (queue.isNull()) QSKIP(kNoQueue);
    const std::string cancelledToken = Token("cwcancelled");
    const std::string laterToken = Token("cwlater");
    const std::set<std::filesystem::path> before = cw::testing::PdfsIn(cw::testing::CupsPdfFolder());

    const auto cancelled = ThreePages(cancelledToken, queue);
    OrlPrinter& document = *cancelled;
    document.Options().showProgress = true;
    document.Options().printCopies = 2000;
    std::vector<std::string> told;
    QtPrintReportOptions options;
    options.reportCancelled = [&](const std::string& text) { told.push_back(text); };

    // Cancel once a hundredth of the job is drawn.
    QString progressPrinter;
    auto* watch = new QTimer;
    watch->setInterval(10);
    QObject::connect(watch, &QTimer::timeout, [&, watch] {
      auto* progress = qobject_cast<PrintProgressForm*>(QApplication::activeModalWidget());
      if (progress == nullptr || progress->ProgressBarWidthTwips() < progress->FrameWidthTwips() / 100) return;
      watch->stop();
      watch->deleteLater();
      progressPrinter = progress->findChild<QLabel*>(QStringLiteral("lblPrinter"))->text();
      progress->findChild<QPushButton*>(QStringLiteral("cmdCancel"))->click();
    });
    watch->start();
    QCOMPARE(PrintReportOnPrinter(document, options), PrintOutcome::kStopped);
    QVERIFY2(progressPrinter.contains(queue), qPrintable(progressPrinter));
    QCOMPARE(told.size(), std::size_t{1});
    QVERIFY2(told[0].find("cancelled; nothing was sent to the printer " + queue.toStdString()) != std::string::npos,
             told[0].c_str());
    document.DestroyReport();

    // The queue works its jobs in turn: once a later job has come out, a
    // cancelled job that had reached it would have come out before.
    const auto later = ThreePages(laterToken, queue);
    later->Options().showProgress = false;
    QCOMPARE(PrintReportOnPrinter(*later, options), PrintOutcome::kPrinted);
    QTemporaryDir work;
    QVERIFY(work.isValid());
    const std::filesystem::path kept = work.filePath(QStringLiteral("later.pdf")).toStdString();
    QVERIFY(!cw::testing::TakeNewPdf(cw::testing::CupsPdfFolder(), before, laterToken, kept).empty());
    QCOMPARE(cw::testing::PdfPageCount(kept), 3);
    for (const std::filesystem::path& pdf : cw::testing::PdfsIn(cw::testing::CupsPdfFolder())) {
      QVERIFY2(pdf.filename().string().find(cancelledToken) == std::string::npos, pdf.c_str());
    }
    later->DestroyReport();
  }

  void aMissingPrinterRaisesOnPrinterError() {
    const auto gone = ThreePages("gone", QStringLiteral("  Gone_Printer "));
    OrlPrinter& document = *gone;
    QtPrintReportOptions options;
    options.printers = [] { return PrinterCatalog{{QStringLiteral("Gone_Printer")}, QString()}; };

    // Retry once, then give up: the step is tried twice and the rest dropped.
    int calls = 0;
    document.OnPrinterError = [&](bool& retry) { retry = ++calls < 2; };
    QCOMPARE(PrintReportOnPrinter(document, options), PrintOutcome::kPrinterFailed);
    QCOMPARE(calls, 2);
    QVERIFY(document.PrinterFailed());
    // A failed printer prints nothing more and asks nothing more.
    QCOMPARE(PrintReportOnPrinter(document, options), PrintOutcome::kNothingToDo);
    QCOMPARE(calls, 2);
    document.DestroyReport();
  }

  void positionsAreMeasuredFromThePaperEdge() {
    QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const auto document = ThreePages("offsets");

    // A printer whose printable area starts half an inch in from the left
    // and a quarter inch down.
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    const QString pdf = folder.filePath(QStringLiteral("offsets.pdf"));
    printer.setOutputFileName(pdf);
    printer.setPageSize(QPageSize(QPageSize::Letter));
    printer.setPageMargins(QMarginsF(36, 18, 36, 18), QPageLayout::Point);
    const QPointF offset = PrinterPageDevice::PhysicalOffsetTwips(printer);
    QCOMPARE(offset, QPointF(720, 360));
    const PageSetup paper = PrinterPageDevice::Paper(printer);
    QCOMPARE(paper.widthTwips, 12240.0);
    QCOMPARE(paper.heightTwips, 15840.0);

    ReplayOptions replay;
    replay.page = paper;
    replay.fromPage = 3;
    replay.toPage = 3;
    replay.offsetXTwips = offset.x();
    replay.offsetYTwips = offset.y();
    PrinterPageDevice device(printer);
    QCOMPARE(ReplaySpool(document->PrintFile(), device, replay).pagesBegun, 1);
    device.Finish();
    document->DestroyReport();

    // The word's left edge is one inch (72 points) from the paper's edge, not
    // from the printable area's.
    QProcess pdftotext;
    pdftotext.start(QStringLiteral("pdftotext"), {QStringLiteral("-bbox"), pdf, QStringLiteral("-")});
    QVERIFY2(pdftotext.waitForFinished(60000) && pdftotext.exitCode() == 0, pdftotext.readAllStandardError().constData());
    const QString boxes = QString::fromLocal8Bit(pdftotext.readAllStandardOutput());
    const QRegularExpressionMatch word =
        QRegularExpression(QStringLiteral("xMin=\"([0-9.]+)\" yMin=\"([0-9.]+)\"[^>]*>%1<").arg(kPageTexts[2]))
            .match(boxes);
    QVERIFY2(word.hasMatch(), qPrintable(boxes));
    QVERIFY2(std::abs(word.captured(1).toDouble() - 72) < 1.5, qPrintable(word.captured(1)));
    // The third page's line starts five inches (360 points) down.
    QVERIFY2(word.captured(2).toDouble() > 359 && word.captured(2).toDouble() < 368, qPrintable(word.captured(2)));
  }
};

QTEST_MAIN(PrintCupsTest)
#include "print_cups_test.moc"
