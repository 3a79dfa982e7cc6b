// The print dialog (PrintOptForm) and the print progress window.

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

#include "forms/forms_rig.h"
#include "forms/print_opt_form.h"
#include "forms/print_progress_form.h"
#include "printer/orl_printer.h"

using namespace cw;
using cw::testing::Control;

namespace {

PrinterCatalog ThreePrinters() {
  return {{QStringLiteral("Office_Laser"), QStringLiteral("CW_PDF"), QStringLiteral("Front Desk")},
          QStringLiteral("CW_PDF")};
}

}  // namespace

class PrintDialogsTest : public QObject {
  Q_OBJECT

 private slots:
  void keyFilterLetsOnlyDigitsAndBackspaceThrough() {
    PrintOptForm form(nullptr, ThreePrinters());
    int beeps = 0;
    form.beep = [&] { ++beeps; };
    form.show();

    for (const char* name : {"FromPageEdit", "ToPageEdit", "CopiesEdit"}) {
      auto* box = Control<QLineEdit>(form, name);
      box->setFocus();
      box->clear();
      beeps = 0;
      QTest::keyClicks(box, QStringLiteral("12"));
      QCOMPARE(box->text(), QStringLiteral("12"));
      QTest::keyClicks(box, QStringLiteral("a-. "));
      QCOMPARE(box->text(), QStringLiteral("12"));
      QCOMPARE(beeps, 4);
      QTest::keyClick(box, Qt::Key_Backspace);
      QCOMPARE(box->text(), QStringLiteral("1"));
      QCOMPARE(beeps, 4);
      // Keys that type nothing still move the cursor.
      QTest::keyClick(box, Qt::Key_Home);
      QTest::keyClicks(box, QStringLiteral("9"));
      QCOMPARE(box->text(), QStringLiteral("91"));
    }

    // Pasting is not filtered.
    auto* copies = Control<QLineEdit>(form, "CopiesEdit");
    copies->clear();
    QApplication::clipboard()->setText(QStringLiteral("3x"));
    copies->paste();
    QCOMPARE(copies->text(), QStringLiteral("3x"));
  }

  // First the table: a box's text and the number OK reads from it; none
  // beyond 16 bits.
  void okReadsTheBoxesAsWholeNumbersOfSixteenBits() {
    const std::pair<const char*, std::optional<std::int16_t>> rows[] = {
        {"", 0}, {" 1 2 ", 12}, {"3x", 3}, {"x3", 0}, {"2.5", 2}, {"3.5", 4}, {"32767", 32767},
        {"32768", std::nullopt}, {"-32769", std::nullopt}};
    for (const auto& [text, number] : rows) QCOMPARE(BoxNumber(QString::fromLatin1(text)), number);

    PrintOptForm form(nullptr, ThreePrinters());
    form.Copies = 1;
    form.show();
    form.FillPrinterList("Front Desk");
    auto* copies = Control<QLineEdit>(form, "CopiesEdit");
    auto* ok = Control<QPushButton>(form, "OKBtn");
    // Beyond 16 bits: the message under the boxes, and the dialog stays.
    copies->setText(QStringLiteral("40000"));
    QTest::mouseClick(ok, Qt::LeftButton);
    QVERIFY(form.isVisible());
    QCOMPARE(form.DialogResult, std::int16_t{0});
    QCOMPARE(form.Copies, std::int16_t{1});
    auto* message = Control<QLabel>(form, "lblMessage");
    QVERIFY(message->isVisible());
    QVERIFY(message->text().contains(QStringLiteral("Copies")) && message->text().contains(QStringLiteral("32767")));

    // No range check: a from page after the to page and no copies pass on.
    Control<QLineEdit>(form, "FromPageEdit")->setText(QStringLiteral("9"));
    Control<QLineEdit>(form, "ToPageEdit")->setText(QStringLiteral("3"));
    copies->clear();
    QTest::mouseClick(ok, Qt::LeftButton);
    QCOMPARE(form.DialogResult, std::int16_t{1});
    QCOMPARE(form.result(), int(QDialog::Accepted));
    QVERIFY(!form.isVisible());
    QCOMPARE(form.PrinterName, std::string("Front Desk"));
    QCOMPARE(form.FromPage, std::int16_t{9});
    QCOMPARE(form.ToPage, std::int16_t{3});
    QCOMPARE(form.Copies, std::int16_t{0});
  }

  // On showing, the list is filled and set to the engine's printer; without
  // an engine it stays empty. Filled by name: empty or blank is the current
  // printer; case and spaces count, and no match leaves the text empty.
  // Filling again never adds rows.
  void printerListSelectsTheExactName() {
    PrintOptForm alone(nullptr, ThreePrinters());
    alone.show();
    QCOMPARE(Control<QComboBox>(alone, "PrinterList")->count(), 0);

    OrlPrinter engine{OrlPrinterEnvironment{}};
    engine.Options().defaultPrinter = "Front Desk";
    PrintOptForm form(&engine, ThreePrinters());
    form.show();
    auto* list = Control<QComboBox>(form, "PrinterList");
    QCOMPARE(list->currentText(), QStringLiteral("Front Desk"));
    for (const auto& [name, selected] : {std::pair{"Office_Laser", "Office_Laser"}, std::pair{"", "CW_PDF"},
                                         std::pair{"   ", "CW_PDF"}, std::pair{"Printer that is gone", ""},
                                         std::pair{"office_laser", ""}, std::pair{" Front Desk", ""}}) {
      form.FillPrinterList(name);
      QCOMPARE(list->count(), 3);
      QCOMPARE(list->currentText(), QString::fromLatin1(selected));
    }
  }

  // The close box, Cancel and Escape: result 0 and the values as they were.
  void closeBoxCancelAndEscapeLeaveTheResultAtZero() {
    for (int way = 0; way < 3; ++way) {
      PrintOptForm form(nullptr, ThreePrinters());
      form.Copies = 4;
      form.show();
      auto* copies = Control<QLineEdit>(form, "CopiesEdit");
      copies->setText(QStringLiteral("9"));
      if (way == 0) QVERIFY(form.close());
      if (way == 1) QTest::mouseClick(Control<QPushButton>(form, "CancelBtn"), Qt::LeftButton);
      if (way == 2) QTest::keyClick(copies, Qt::Key_Escape);
      QVERIFY(!form.isVisible());
      QCOMPARE(form.result(), int(QDialog::Rejected));
      QCOMPARE(form.DialogResult, std::int16_t{0});
      QCOMPARE(form.Copies, std::int16_t{4});
    }
  }

  // The bar, and the printer the job goes to.
  void progressWindowShowsTheFractionAndThePrinter() {
    PrintProgressForm progress(QStringLiteral("Call Detail"), QStringLiteral("Front Desk"));
    progress.show();
    auto* printer = Control<QLabel>(progress, "lblPrinter");
    QVERIFY(printer->isVisible() && printer->text().contains(QStringLiteral("Front Desk")));
    auto* frame = Control<QFrame>(progress, "ProgressBarFrame");
    auto* bar = Control<QFrame>(progress, "ProgressBar");
    QVERIFY(progress.FrameWidthTwips() > 0 && !bar->isVisible());
    progress.SetProgress(0.5f);
    QVERIFY(bar->isVisible() && std::abs(bar->width() * 2 - frame->width()) <= 1);
    progress.SetProgress(1.0f);
    QCOMPARE(bar->width(), frame->width());
    progress.SetProgress(0.0f);
    QCOMPARE(progress.ProgressBarWidthTwips(), std::int16_t{0});

    // Cancel and the close box ask to stop; the window stays for the printing routine to close.
    QVERIFY(!progress.CancelRequested());
    progress.close();
    QVERIFY(progress.CancelRequested());
    QVERIFY(progress.isVisible());
  }
};

QTEST_MAIN(PrintDialogsTest)
#include "print_dialogs_test.moc"
