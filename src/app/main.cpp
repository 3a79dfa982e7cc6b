// callwarden-reports: the desktop program. One copy runs at a time; the
// report form does the rest (command line, settings, history mode).
//
//   callwarden-reports                  the report form
//   callwarden-reports 5551234567       the history of that number, then end
//   callwarden-reports h=HANDLE[,NUMBER] the form inside the logging program's window
#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QLockFile>
#include <QStandardPaths>
#include <QStringList>
#include <cstdio>
#include <string>

#include "forms/desktop_report_host.h"
#include "forms/report_form_window.h"
#include "platform/qt_text_metrics.h"
#include "settings/ini_settings_store.h"
#include "support/ansi_text.h"

namespace {

// The logging program hands over one command line; the arguments are joined
// back into it.
std::string CommandLine(const QStringList& arguments) {
  return cw::Utf8ToWin1252(arguments.mid(1).join(QLatin1Char(' ')).toStdString());
}

// The help beside the program (the build tree), or where it is installed.
std::string HelpFile() {
  const QString programFolder = QCoreApplication::applicationDirPath();
  const QStringList candidates = {
      programFolder + QStringLiteral("/help/index.html"),
      programFolder + QStringLiteral("/../share/callwarden-reports/help/index.html"),
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
  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("callwarden-reports"));
  QApplication::setDesktopFileName(QStringLiteral("callwarden-reports"));
  QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/callwarden-reports.png")));

  // Another copy is running: this one ends at once. The lock of a copy that
  // died is taken over; a copy left open for days keeps its lock.
  QLockFile oneCopy(LockFileName());
  oneCopy.setStaleLockTime(0);
  if (!oneCopy.tryLock(0)) {
    std::fprintf(stderr, "callwarden-reports: already running\n");
    return 0;
  }

  cw::IniSettingsStore settings(cw::ResolveSettingsLocation(cw::SettingsEnvironmentOfProcess()));
  cw::QtTextMetrics metrics;
  cw::DesktopReportHost host;
  cw::fReport form(CommandLine(QCoreApplication::arguments()), host, settings, metrics, HelpFile());
  form.Form_Load();
  // History mode has shown its report and unloaded the form.
  if (form.Unloaded()) return 0;
  form.show();
  return QApplication::exec();
}
