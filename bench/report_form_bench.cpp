// The report form on the demo office: how soon the form is on screen after
// the program starts, and how soon the preview of the demo's longest reports
// (every line listed line by line, and the whole call history) is on screen
// after the preview button is pressed.
//
// Run it on a display (xvfb-run -a bench/report_form_bench) for figures that
// include a real window system; without one the offscreen platform is used.
// Figures in milliseconds, wall clock.
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QPushButton>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "bench_support.h"
#include "forms/desktop_report_host.h"
#include "forms/preview_form.h"
#include "forms/report_form_window.h"
#include "platform/qt_text_metrics.h"
#include "settings/ini_settings_store.h"

namespace {

constexpr int kRuns = 5;
const QString kDemo = QStringLiteral(CW_SOURCE_DIR "/examples/demo");
const QString kProgram = QStringLiteral(CW_BINARY_DIR "/src/app/callwarden-reports");

// The demo's settings with "Path" and "Logs" pointing at the demo office.
QString DemoSettings(const QTemporaryDir& folder, int lastTab) {
  QFile source(kDemo + "/settings.ini");
  if (!source.open(QIODevice::ReadOnly)) {
    std::fprintf(stderr, "cannot read %s\n", qPrintable(source.fileName()));
    std::exit(1);
  }
  QString text = QString::fromLatin1(source.readAll());
  text.replace(QStringLiteral("Path=\n"), QStringLiteral("Path=%1\n").arg(kDemo));
  text.replace(QStringLiteral("Logs=\n"), QStringLiteral("Logs=%1/CallLog.txt\n").arg(kDemo));
  text.replace(QStringLiteral("LastTab=1\n"), QStringLiteral("LastTab=%1\n").arg(lastTab));
  const QString name = folder.filePath(QStringLiteral("settings-%1.ini").arg(lastTab));
  QFile target(name);
  if (!target.open(QIODevice::WriteOnly | QIODevice::Truncate)) std::exit(1);
  target.write(text.toLatin1());
  return name;
}

struct Figures {
  std::vector<double> ms;
  void Print(const char* what) {
    std::sort(ms.begin(), ms.end());
    std::printf("%-58s min %7.1f  median %7.1f  max %7.1f ms  (%zu runs)\n", what, ms.front(), cw::bench::Median(ms),
                ms.back(), ms.size());
  }
};

// Process start to the form's window mapped on the X display, found by its
// title; only on X11.
bool MeasureProgramStart(const QString& settings, Figures& figures) {
  if (qEnvironmentVariableIsEmpty("DISPLAY") || QGuiApplication::platformName() != QLatin1String("xcb")) return false;
  if (!QFile::exists(kProgram)) {
    std::printf("(%s is not built: no process start figures)\n", qPrintable(kProgram));
    return false;
  }
  for (int run = 0; run < kRuns; ++run) {
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("CW_SETTINGS"), settings);
    program.setProcessEnvironment(environment);
    QElapsedTimer clock;
    clock.start();
    program.start(kProgram, {});
    bool shown = false;
    while (!shown && clock.elapsed() < 10000 && program.state() != QProcess::NotRunning) {
      QProcess window;
      window.start(QStringLiteral("xwininfo"), {QStringLiteral("-name"), QStringLiteral("Vorn Ringtally Reports")});
      window.waitForFinished();
      shown = window.readAllStandardOutput().contains("Map State: IsViewable");
    }
    const double elapsed = static_cast<double>(clock.nsecsElapsed()) / 1e6;
    program.kill();
    program.waitForFinished();
    if (!shown) {
      std::printf("(the program's window did not appear; is another copy running?)\n");
      return false;
    }
    figures.ms.push_back(elapsed);
  }
  return true;
}

// The preview window once it is up: its first page painted, then closed.
class PreviewWatch {
 public:
  void Arm() {
    QTimer::singleShot(0, [this] { Check(); });
  }
  QElapsedTimer clock;
  double shownMs = -1;
  int pages = 0;

 private:
  void Check() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
      auto* preview = qobject_cast<cw::PreviewForm*>(window);
      if (preview == nullptr || !preview->isVisible()) continue;
      preview->repaint();
      shownMs = static_cast<double>(clock.nsecsElapsed()) / 1e6;
      pages = preview->PageCount();
      preview->close();
      return;
    }
    Arm();
  }
};

}  // namespace

int main(int argc, char* argv[]) {
  QElapsedTimer sinceStart;
  sinceStart.start();
  if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  QApplication application(argc, argv);
  QTemporaryDir folder;
  const QString settingsFile = DemoSettings(folder, 8);

  // The program itself, started while this process has no window of the
  // same title.
  Figures start;
  const bool programStarted = MeasureProgramStart(DemoSettings(folder, 1), start);
  sinceStart.restart();

  // In this process: from here (the application object made) to the form
  // painted on screen.
  cw::IniSettingsStore settings(cw::SettingsLocation{settingsFile.toStdString(), {}});
  cw::QtTextMetrics metrics;
  cw::DesktopReportHost host;
  cw::fReport form({}, host, settings, metrics, {});
  form.Form_Load();
  form.show();
  while (form.windowHandle() == nullptr || !form.windowHandle()->isExposed()) QApplication::processEvents();
  form.repaint();
  const double formMs = static_cast<double>(sinceStart.nsecsElapsed()) / 1e6;
  std::printf("platform: %s\n", qPrintable(QGuiApplication::platformName()));
  std::printf("%-58s %7.1f ms\n", "form on screen, from the application object of this process", formMs);

  // The preview button on the demo's longest reports.
  auto* tabs = form.findChild<QTabBar*>(QStringLiteral("TabStrip"));
  auto* lines = form.findChild<QComboBox*>(QStringLiteral("Combo1"));
  auto* preview = form.findChild<QPushButton*>(QStringLiteral("cmdPrintQuery"));
  struct Case {
    const char* what;
    int tab;
  };
  for (const Case& report : {Case{"preview on screen: By Line Number, all lines", 8},
                             Case{"preview on screen: Call History, every call", 7}}) {
    tabs->setCurrentIndex(report.tab - 1);
    if (report.tab == 8) lines->setCurrentIndex(lines->count() - 1);
    Figures figures;
    int pages = 0;
    for (int run = 0; run < kRuns; ++run) {
      PreviewWatch watch;
      watch.Arm();
      watch.clock.start();
      preview->click();
      if (watch.shownMs < 0) {
        std::printf("the preview did not open\n");
        return 1;
      }
      figures.ms.push_back(watch.shownMs);
      pages = watch.pages;
    }
    const std::string what = std::string(report.what) + " (" + std::to_string(pages) + " pages)";
    figures.Print(what.c_str());
  }
  form.close();
  if (programStarted) start.Print("form on screen, from starting the program");
  return 0;
}
