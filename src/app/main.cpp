// callwarden-reports: the desktop program. One copy runs at a time; the
// report form does the rest (command line, settings, history mode).
//
//   callwarden-reports                  the report form
//   callwarden-reports 5551234567       the history of that number, then end
//   callwarden-reports h=HANDLE[,NUMBER] the form inside the logging program's window
//   callwarden-reports --help | --version
#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QLockFile>
#include <QMessageBox>
#include <QStandardPaths>
#include <QStringList>
#include <cstdio>
#include <string>

#include "cw_build_version.h"
#include "forms/desktop_command_line.h"
#include "forms/desktop_report_host.h"
#include "forms/report_form_window.h"
#include "forms/running_copy.h"
#include "forms/window_appearance.h"
#include "platform/qt_text_metrics.h"
#include "settings/ini_settings_store.h"
#include "support/ansi_text.h"

namespace {

// The logging program hands over one command line; the arguments are joined
// back into it.
std::string CommandLine(const QStringList& arguments) {
  return cw::Utf8ToWin1252(arguments.mid(1).join(QLatin1Char(' ')).toStdString());
}

// The help beside the program (the build tree), or in the data folder of the
// prefix the program is installed under.
std::string HelpFile() {
  const QString programFolder = QCoreApplication::applicationDirPath();
  const QStringList candidates = {
      programFolder + QStringLiteral("/help/index.html"),
      programFolder + QStringLiteral("/" CW_DATA_FROM_PROGRAM "/help/index.html"),
  };
  for (const QString& candidate : candidates) {
    if (QFileInfo::exists(candidate)) return QDir::cleanPath(candidate).toStdString();
  }
  return QDir::cleanPath(candidates.back()).toStdString();
}

QString LockFileName() {
  QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
  if (folder.isEmpty()) folder = QDir::tempPath();
  return folder + QStringLiteral("/callwarden-reports.lock");
}

}  // namespace

int main(int argc, char* argv[]) {
  // Help and version need no display: answered before the application starts.
  QStringList arguments;
  for (int i = 0; i < argc; ++i) arguments << QString::fromLocal8Bit(argv[i]);
  const cw::DesktopCommand command = cw::ReadDesktopCommand(arguments);
  if (command.action == cw::DesktopAction::kHelp) {
    std::fputs(cw::DesktopUsage(QStringLiteral("callwarden-reports")).toLocal8Bit().constData(), stdout);
    return std::fflush(stdout) == 0 && !std::ferror(stdout) ? 0 : 1;
  }
  if (command.action == cw::DesktopAction::kVersion) {
    std::fputs("callwarden-reports " CW_BUILD_VERSION "\n", stdout);
    return std::fflush(stdout) == 0 && !std::ferror(stdout) ? 0 : 1;
  }
  if (command.action == cw::DesktopAction::kRefuse) {
    std::fprintf(stderr, "callwarden-reports: %s\n", command.message.toLocal8Bit().constData());
    return 2;
  }

  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("callwarden-reports"));
  QApplication::setApplicationVersion(QStringLiteral(CW_BUILD_VERSION));
  QApplication::setDesktopFileName(QStringLiteral("callwarden-reports"));
  QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/callwarden-reports.png")));

  // Another copy is running: it is asked to bring its form to the front, and
  // this one ends. The lock of a copy that died is taken over; a copy left
  // open for days keeps its lock.
  const QString lockName = LockFileName();
  const QString beaconName = lockName + QStringLiteral(".socket");
  QLockFile oneCopy(lockName);
  oneCopy.setStaleLockTime(0);
  if (!oneCopy.tryLock(0)) {
    if (cw::AskRunningCopyToShow(beaconName)) return 0;
    QMessageBox::information(nullptr, QStringLiteral("Callwarden Reports"),
                             QStringLiteral("Callwarden Reports is already running but does not answer.\n"
                                            "Close its window, or end it, and start it again."));
    return 0;
  }

  // One font family in every window, the forms' own.
  cw::ApplyApplicationFont(cw::GetWinVersion());

  cw::IniSettingsStore settings(cw::ResolveSettingsLocation(cw::SettingsEnvironmentOfProcess()));
  cw::QtTextMetrics metrics;
  cw::DesktopReportHost host;
  cw::fReport form(CommandLine(QCoreApplication::arguments()), host, settings, metrics, HelpFile());
  // Embedded, the form is no top-level window of ours: the program ends when
  // the form unloads, not when its last window closes.
  QObject::connect(&form, &cw::fReport::FormUnloaded, &application, &QCoreApplication::quit, Qt::QueuedConnection);

  // A second start is answered from here on, also while a history report's
  // preview is up during Form_Load: the window in front is brought forward.
  cw::RunningCopyBeacon beacon(beaconName);
  QObject::connect(&beacon, &cw::RunningCopyBeacon::ShowAsked, &form, [&form] {
    QWidget* front = QApplication::activeModalWidget();
    // The form of a history report stays hidden.
    if (front == nullptr && !form.Unloaded() && !form.Startup().historyMode) front = &form;
    if (front == nullptr) return;
    if (front->isMinimized()) {
      front->showNormal();
    } else {
      front->show();
    }
    front->raise();
    front->activateWindow();
  });
  if (!beacon.Listen()) {
    std::fprintf(stderr, "callwarden-reports: a second start cannot reach this one (%s)\n",
                 qPrintable(beaconName));
  }

  form.Form_Load();
  // History mode has shown its report and unloaded the form.
  if (form.Unloaded()) return 0;
  form.show();
  return QApplication::exec();
}
