// The desktop program's own plumbing: the pointer stack, the message boxes
// (Ctrl+C, their title), the command line it answers before any window, the
// hand-over to a copy already running, and the printers it offers.
#include <QApplication>
#include <QClipboard>
#include <QCursor>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>
#include <future>
#include <map>
#include <optional>

#include "forms/cursor_scope.h"
#include "forms/desktop_command_line.h"
#include "forms/desktop_report_host.h"
#include "forms/forms_rig.h"
#include "forms/print_opt_form.h"
#include "forms/running_copy.h"
#include "forms/window_appearance.h"

using namespace cw;

namespace {

std::optional<Qt::CursorShape> Pointer() {
  const QCursor* cursor = QApplication::overrideCursor();
  if (cursor == nullptr) return std::nullopt;
  return cursor->shape();
}

// Runs `inBox` on the next message box once it is up, then closes it.
void WhenBoxShows(std::function<void(QMessageBox&)> inBox) {
  testing::WhenModalShows([inBox = std::move(inBox)](QWidget& window) {
    auto* box = qobject_cast<QMessageBox*>(&window);
    QVERIFY(box != nullptr);
    inBox(*box);
    box->accept();
  });
}

}  // namespace

class DesktopProgramTest : public QObject {
  Q_OBJECT

 private slots:
  // Scopes that end out of order take only their own wish away.
  void pointerIsTheNewestLiveWish() {
    QCOMPARE(Pointer(), std::nullopt);
    {
      auto request = std::make_optional<CursorScope>(Qt::WaitCursor);
      QCOMPARE(Pointer(), Qt::WaitCursor);
      {
        const CursorScope preview(Qt::ArrowCursor);
        QCOMPARE(Pointer(), Qt::ArrowCursor);
        {
          const CursorScope drawing(Qt::WaitCursor);
          QCOMPARE(Pointer(), Qt::WaitCursor);
        }
        QCOMPARE(Pointer(), Qt::ArrowCursor);
        // The request ends while its preview still waits for the user.
        request.reset();
        QCOMPARE(Pointer(), Qt::ArrowCursor);
      }
      QCOMPARE(Pointer(), std::nullopt);
      QCOMPARE(CursorScope::Depth(), 0);
    }

    // The host's busy state is a level: on twice, off once.
    DesktopReportHost host;
    QSignalSpy progress(&host, &DesktopReportHost::ProgressChanged);
    host.SetBusy(true);
    host.SetBusy(true);
    QCOMPARE(Pointer(), Qt::WaitCursor);
    host.SetBusy(false);
    QCOMPARE(Pointer(), std::nullopt);
    // Off always ends the progress, even when the hourglass was already off.
    host.SetBusy(false);
    QCOMPARE(progress.count(), 2);
    QCOMPARE(progress.last().at(0).toLongLong(), -1);
  }

  // Regression: "Press Ctrl-C to copy" copied nothing; a box without a title
  // showed the program's file name.
  void boxesCopyOnCtrlCAndTakeTheFormsTitle() {
    DesktopReportHost host;
    host.SetAppTitle("Vorn Ringtally Reports");
    QApplication::clipboard()->clear();
    QString title;
    std::optional<Qt::CursorShape> pointer;
    WhenBoxShows([&](QMessageBox& box) {
      title = box.windowTitle();
      pointer = Pointer();
      // Pressed where the focus is: on the box's button.
      QTest::keyClick(static_cast<QWidget*>(box.button(QMessageBox::Ok)), Qt::Key_C, Qt::ControlModifier);
    });
    host.SetBusy(true);
    host.MessageBox("", "Line one\r\nPress Ctrl-C to copy this error to the clipboard", MessageIcon::kCritical,
                    MessageButtons::kOk);
    host.SetBusy(false);
    QCOMPARE(title, QStringLiteral("Vorn Ringtally Reports"));
    QCOMPARE(QApplication::clipboard()->text(),
             QStringLiteral("Vorn Ringtally Reports\nLine one\nPress Ctrl-C to copy this error to the clipboard\n"));
    // A box asked for while busy shows the arrow.
    QCOMPARE(pointer, Qt::ArrowCursor);

    WhenBoxShows([&](QMessageBox& box) { title = box.windowTitle(); });
    host.MessageBox("Error", "text", MessageIcon::kCritical, MessageButtons::kOk);
    QCOMPARE(title, QStringLiteral("Error"));
  }

  // Regression: the preview, the boxes and the save dialog used another font
  // family than the forms.
  void everyWindowUsesTheFormsFamily() {
    ApplyApplicationFont(GetWinVersion());
    QWidget form;
    ApplyWindowFont(&form, GetWinVersion());
    QMessageBox box;
    QWidget plain;
    QCOMPARE(QFontInfo(box.font()).family(), QFontInfo(form.font()).family());
    QCOMPARE(QFontInfo(plain.font()).family(), QFontInfo(form.font()).family());
    QCOMPARE(plain.font().pointSize(), form.font().pointSize());
  }

  // What the arguments ask for before any window opens: the table
  // desktop_command_lines.txt.
  void commandLineBeforeAnyWindow() {
    const std::map<QString, DesktopAction> actions = {{"run", DesktopAction::kRun}, {"help", DesktopAction::kHelp},
                                                      {"version", DesktopAction::kVersion},
                                                      {"refuse", DesktopAction::kRefuse}};
    for (const QStringList& row : testing::TableRows(QStringLiteral("desktop_command_lines.txt"))) {
      const QStringList arguments = row[0].split(' ', Qt::SkipEmptyParts);
      const DesktopCommand command = ReadDesktopCommand(QStringList{QStringLiteral("callwarden-reports")} + arguments);
      QVERIFY2(command.action == actions.at(row.value(1)), qPrintable(row[0]));
      QVERIFY2(command.message.contains(row.value(2)), qPrintable(command.message));
    }
    QVERIFY(DesktopUsage(QStringLiteral("callwarden-reports")).startsWith(QStringLiteral("Usage: callwarden-reports")));
  }

  // Regression: a second start said "already running" on standard error only.
  void secondStartShowsTheRunningCopy() {
    QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QString name = folder.filePath(QStringLiteral("callwarden-reports.lock.socket"));
    // Nobody listening: the caller learns that no copy answered.
    QVERIFY(!AskRunningCopyToShow(name, 200));

    RunningCopyBeacon beacon(name);
    QVERIFY(beacon.Listen());
    QSignalSpy shown(&beacon, &RunningCopyBeacon::ShowAsked);
    // The second start blocks while it waits: it runs beside the event loop.
    std::future<bool> answered = std::async(std::launch::async, [&] { return AskRunningCopyToShow(name); });
    QTRY_VERIFY(answered.wait_for(std::chrono::seconds(0)) == std::future_status::ready);
    QVERIFY(answered.get());
    QCOMPARE(shown.count(), 1);

    // A socket left by a copy that died is taken over.
    RunningCopyBeacon next(name);
    QVERIFY(next.Listen());
  }

  // Regression: with no default printer the print dialog's list was blank.
  // The table current_printers.txt.
  void currentPrinterIsTheDefaultElseTheFirst() {
    for (const QStringList& row : testing::TableRows(QStringLiteral("current_printers.txt"))) {
      const QStringList names = row.value(0).split(',', Qt::SkipEmptyParts);
      const PrinterCatalog catalog = MakePrinterCatalog(names, row.value(1));
      QCOMPARE(catalog.names, names);
      QCOMPARE(catalog.current, row.value(2));
    }
  }
};

QTEST_MAIN(DesktopProgramTest)
#include "desktop_program_test.moc"
