// fReport on the demo office: the form's state handed to the report request on
// every tab, the settings it restores and saves, the tab presets, the period
// buttons, the hardware that cannot tell directions, the line filter, history
// mode, and every message shown through the host.
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTemporaryDir>
#include <QToolButton>
#include <QUrl>
#include <QtTest>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "data/line_filter.h"
#include "forms/desktop_report_host.h"
#include "forms/preview_form.h"
#include "forms/report_form_window.h"
#include "platform/qt_text_metrics.h"
#include "printer/orl_printer.h"
#include "testing/memory_settings_store.h"
#include "testing/recording_host.h"

using cw::CivilDate;
using cw::MessageAnswer;
using cw::MessageButtons;
using cw::MessageIcon;

namespace {

const std::string kRingtally = "Vorn Ringtally";
const std::string kCallwarden = "Callwarden MultiLine";
const QString kDemoFolder = QStringLiteral(CW_TEST_DATA_DIR "/../../examples/demo");

// Answers every question a window would ask, and writes each one down.
class TestHost final : public cw::DesktopReportHost {
 public:
  using Message = cw::testing::RecordingHost::Message;
  struct Input {
    std::string prompt;
    std::string title;
    std::string defaultAnswer;
  };
  struct Preview {
    std::string title;
    int pages = 0;
  };

  MessageAnswer MessageBox(std::string_view title, std::string_view text, MessageIcon icon,
                           MessageButtons buttons) override {
    messages.push_back({std::string(title), std::string(text), icon, buttons});
    return buttons == MessageButtons::kOk ? MessageAnswer::kOk : MessageAnswer::kCancel;
  }
  void ShowPreview(cw::OrlPrinter& document) override {
    previews.push_back({document.Title(), document.TotalPages()});
    if (!realPreview) return;
    // The real preview window, closed as soon as it is up.
    QTimer::singleShot(0, this, [this] {
      for (QWidget* window : QApplication::topLevelWidgets()) {
        auto* preview = qobject_cast<cw::PreviewForm*>(window);
        if (preview == nullptr || !preview->isVisible()) continue;
        previewPagesShown = preview->PageCount();
        preview->close();
      }
    });
    DesktopReportHost::ShowPreview(document);
  }
  CivilDate Today() override { return today; }
  cw::TimeOfDay Now() override { return 9 * 3600; }
  std::optional<std::string> InputBox(std::string_view prompt, std::string_view title,
                                      std::string_view defaultAnswer) override {
    inputs.push_back({std::string(prompt), std::string(title), std::string(defaultAnswer)});
    return inputAnswer;
  }
  std::optional<std::string> PickDate(std::string_view caption) override {
    dateCaptions.emplace_back(caption);
    return pickedDate;
  }
  bool OpenUrl(const QUrl& url) override {
    urls.push_back(url);
    return browserOpens;
  }

  // The last message's text, or "" when there is none.
  std::string LastText() const { return messages.empty() ? std::string() : messages.back().text; }

  std::vector<Message> messages;
  std::vector<Input> inputs;
  std::optional<std::string> inputAnswer;
  std::vector<std::string> dateCaptions;
  std::optional<std::string> pickedDate;
  std::vector<QUrl> urls;
  bool browserOpens = true;
  std::vector<Preview> previews;
  bool realPreview = false;
  int previewPagesShown = 0;
  CivilDate today = CivilDate::FromYmd(2026, 11, 22);  // a Sunday
};

// The logging program's folder: its INI files, the busy log, and a copy of
// the demo office's call log.
class Office {
 public:
  Office() {
    QFile::copy(kDemoFolder + "/CallLog.txt", dir_.filePath("CallLog.txt"));
    QFile::copy(kDemoFolder + "/BusyLines.log", dir_.filePath("BusyLines.log"));
    WriteIni(3, 4);
  }
  void WriteIni(int hardware, int lines) {
    for (const char* name : {"Ringtally.ini", "Callwarden.ini"}) {
      QFile ini(dir_.filePath(name));
      QVERIFY(ini.open(QIODevice::WriteOnly | QIODevice::Truncate));
      ini.write(QStringLiteral("[Ports]\r\nKVXHardware=%1\r\nActiveLines=%2\r\n").arg(hardware).arg(lines).toLatin1());
    }
  }
  std::string Path() const { return dir_.path().toStdString(); }
  std::string Log() const { return dir_.filePath("CallLog.txt").toStdString(); }
  std::string File(const char* name) const { return dir_.filePath(name).toStdString(); }

 private:
  QTemporaryDir dir_;
};

// A form on the office, with its host and settings.
class Bench {
 public:
  explicit Bench(std::string commandLine = {}, const std::string& edition = kRingtally)
      : commandLine_(std::move(commandLine)) {
    Set(edition, "Path", office.Path());
    Set(edition, "Logs", office.Log());
    helpFile = office.File("help.html");
  }
  void Set(const std::string& app, const std::string& key, const std::string& value) {
    store.values[{app, "Reports", key}] = value;
  }
  void Set(const std::string& key, const std::string& value) { Set(kRingtally, key, value); }
  void Set(std::initializer_list<std::pair<std::string, std::string>> values) {
    for (const auto& [key, value] : values) Set(key, value);
  }
  std::string Saved(const std::string& key) const { return store.Reports(kRingtally, key); }

  cw::fReport& Load() {
    form = std::make_unique<cw::fReport>(commandLine_, host, store, metrics, helpFile);
    form->Form_Load();
    if (!form->Unloaded()) form->show();
    return *form;
  }

  template <class T>
  T* Get(const char* name) const {
    T* control = form->findChild<T*>(QString::fromLatin1(name));
    if (control == nullptr) qFatal("no control %s", name);
    return control;
  }
  void Tab(int kind) { Get<QTabBar>("TabStrip")->setCurrentIndex(kind - 1); }
  void Click(const char* name) { Get<QAbstractButton>(name)->click(); }
  QString Caption(const char* name) const { return Get<QLabel>(name)->text(); }
  void Preview() { Click("cmdPrintQuery"); }

  Office office;
  cw::testing::MemorySettingsStore store;
  TestHost host;
  cw::QtTextMetrics metrics;
  std::string helpFile;
  std::unique_ptr<cw::fReport> form;

 private:
  std::string commandLine_;
};

}  // namespace

class ReportFormTest : public QObject {
  Q_OBJECT

 private slots:
  void tabCaptionsFollowTheEdition();
  void everyTabHandsItsStateToTheRequest();
  void userChoicesAreSavedAtUnloadAndRestoredAtLoad();
  void lastTabIsClampedAndTheHistoryTabLeavesTheChartBoxes();
  void tabPresetsRestoreDirectionDatesLinesAndTheAbandonedBox();
  void optionsOfEachTab();
  void periodButtonsSetTheDates();
  void hardwareThatCannotTellDirectionsDisablesTheOptions();
  void lineFilterAsksAndShowsTheExpandedList();
  void messagesOfTheRequestGoThroughTheHost();
  void historyModeShowsTheNumberAndUnloads();
  void dateButtonsAndHelp();
  void errorsOfEventProceduresGoToTheStandardBox();
};

void ReportFormTest::tabCaptionsFollowTheEdition() {
  const QStringList common = {"Daily Call Statistics", "Line Usage Statistics", "All Lines Busy", "",
                              "By Name", "By Tel Number", "Call History", "By Line Number"};
  {
    Bench bench;  // empty command line: Vorn Ringtally
    bench.Load();
    auto* tabs = bench.Get<QTabBar>("TabStrip");
    QCOMPARE(tabs->count(), 8);
    for (int k = 0; k < 8; ++k) {
      QCOMPARE(tabs->tabText(k), k == 3 ? QStringLiteral("Unanswered Calls") : common[k]);
    }
    QCOMPARE(bench.form->windowTitle(), QStringLiteral("Vorn Ringtally Reports"));
  }
  {
    Bench bench("h=Callwarden", kCallwarden);
    bench.Load();
    QCOMPARE(bench.Get<QTabBar>("TabStrip")->tabText(3), QStringLiteral("Abandoned Calls"));
    QVERIFY(bench.host.messages.empty());
  }
}

void ReportFormTest::everyTabHandsItsStateToTheRequest() {
  Bench bench;
  bench.Set("DTMF", "1");
  bench.Load();
  bench.Click("oTimePeriod_3");  // All Log Entries
  QCOMPARE(bench.Caption("lFromDate"), QStringLiteral("08/17/2026"));
  QCOMPARE(bench.Caption("lToDate"), QStringLiteral("11/22/2026"));
  const cw::ReportRequest& request = bench.form->Request();
  const auto previewed = [&](const std::string& title) {
    return !bench.host.previews.empty() && bench.host.previews.back().title == title &&
           bench.host.previews.back().pages >= 1;
  };

  bench.Tab(1);
  bench.Click("Option2");
  bench.Get<QCheckBox>("chkChart")->setChecked(true);
  bench.Click("oTimePeriod_3");
  bench.Preview();
  QVERIFY(previewed("DAILY CALL ANALYSIS REPORT"));
  QCOMPARE(request.kind, 1);
  QCOMPARE(request.direction, std::string("Out"));
  QCOMPARE(request.fromDate, std::string("08/17/2026"));
  QCOMPARE(request.toDate, std::string("11/22/2026"));
  QVERIFY(request.chart);
  QVERIFY(request.dtmf);
  QCOMPARE(request.columns, cw::DetailColumnPositions(true));

  bench.Tab(2);
  bench.Click("Option3");
  bench.Click("oTimePeriod_3");
  bench.Preview();
  QVERIFY(previewed("LINE USAGE SUMMARY REPORT"));
  QCOMPARE(request.kind, 2);
  QCOMPARE(request.direction, std::string("InOut"));
  QCOMPARE(request.variant, std::string("Detailed"));

  bench.Tab(3);
  bench.Click("Option2");
  bench.Click("oTimePeriod_3");
  bench.Preview();
  QVERIFY(previewed("ALL LINES BUSY REPORT"));
  QCOMPARE(request.kind, 3);
  QCOMPARE(request.variant, std::string("Summary"));
  bench.Click("Option1");
  bench.Preview();
  QCOMPARE(request.variant, std::string("Detailed"));

  bench.Tab(4);
  bench.Click("oTimePeriod_3");
  bench.Click("oInOut_0");
  bench.Get<QCheckBox>("chkNotLasting")->setChecked(true);
  bench.Get<QLineEdit>("txtSeconds")->setText("30");
  bench.Get<QCheckBox>("chkRingCount")->setChecked(false);
  bench.Get<QLineEdit>("txtRings")->setText("4");
  bench.Get<QCheckBox>("chkUnanswered")->setChecked(true);
  bench.Preview();
  QVERIFY(previewed("ABANDONED CALLS DETAIL REPORT"));
  QCOMPARE(request.kind, 4);
  QCOMPARE(request.direction, std::string("In"));
  QVERIFY(request.abandoned.notLasting);
  QCOMPARE(request.abandoned.seconds, std::string("30"));
  QVERIFY(!request.abandoned.ringCount);
  QCOMPARE(request.abandoned.rings, std::string("4"));
  QVERIFY(request.abandoned.unanswered);
  QCOMPARE(request.abandoned.inOutIndex, 0);
  // The request stores the filter, the option click its in/out choice.
  QCOMPARE(bench.Saved("Select Seconds"), std::string("1"));
  QCOMPARE(bench.Saved("Abandoned Seconds"), std::string("30"));
  QCOMPARE(bench.Saved("Select Rings"), std::string("0"));
  QCOMPARE(bench.Saved("Select Answered"), std::string("1"));
  QCOMPARE(bench.Saved("Select InOut"), std::string("0"));

  bench.Tab(5);
  bench.Click("oTimePeriod_3");
  bench.Get<QLineEdit>("tNameNumber")->setText("smith");
  bench.Get<QCheckBox>("chkPartial")->setChecked(true);
  bench.Preview();
  QVERIFY(previewed("CALLER DETAIL REPORT"));
  QCOMPARE(request.kind, 5);
  QCOMPARE(request.searchText, std::string("smith"));
  QVERIFY(request.partial);

  bench.Tab(6);
  bench.Click("oTimePeriod_3");
  bench.Get<QLineEdit>("tNameNumber")->setText("5551234567");
  bench.Get<QCheckBox>("chkPartial")->setChecked(false);
  bench.Preview();
  QVERIFY(previewed("CALLER DETAIL REPORT"));
  QCOMPARE(request.kind, 6);
  QCOMPARE(request.searchText, std::string("5551234567"));
  QVERIFY(!request.partial);

  bench.Tab(7);
  bench.Click("oTimePeriod_3");
  bench.Get<QCheckBox>("chkChart")->setChecked(true);
  bench.Preview();
  QVERIFY(previewed("LOGGED CALLS SUMMARY REPORT"));
  QCOMPARE(request.kind, 7);
  QVERIFY(request.chart);
  QVERIFY(request.condensed);

  bench.Tab(8);
  bench.Click("oTimePeriod_3");
  auto* lines = bench.Get<QComboBox>("Combo1");
  lines->setCurrentIndex(1);
  bench.Preview();
  QVERIFY(previewed("LINE DETAILS REPORT (Line 2)"));
  QCOMPARE(request.kind, 8);
  QVERIFY(!request.lines.allLines);
  QCOMPARE(request.lines.lines, std::vector<std::int16_t>{2});
  lines->setCurrentIndex(lines->count() - 1);
  bench.Preview();
  QVERIFY(request.lines.allLines);
  QVERIFY(previewed("LINE DETAILS REPORT (Lines 1-4)"));

  QCOMPARE(bench.host.previews.size(), std::size_t{10});
  QVERIFY2(bench.host.messages.empty(), bench.host.LastText().c_str());
}

void ReportFormTest::userChoicesAreSavedAtUnloadAndRestoredAtLoad() {
  Bench bench;
  bench.Set({{"LastTab", "5"}, {"FromDate", "10/01/2026"}, {"ToDate", "10/31/2026"}, {"CallType", "Out"},
             {"PrintChart", "0"}, {"Condensed", "1"}});
  bench.Load();
  QCOMPARE(bench.form->ReportKind(), 5);
  QCOMPARE(bench.Get<QTabBar>("TabStrip")->currentIndex(), 4);
  QVERIFY(bench.Get<QRadioButton>("Option2")->isChecked());
  QCOMPARE(bench.Caption("lFromDate"), QStringLiteral("10/01/2026"));
  QCOMPARE(bench.Caption("lToDate"), QStringLiteral("10/31/2026"));
  QCOMPARE(bench.Caption("Label1"), QStringLiteral("Name"));

  // The chart box shows the graph choice on tab 1 and the condensed choice on tab 7.
  bench.Tab(1);
  QVERIFY(!bench.Get<QCheckBox>("chkChart")->isChecked());
  bench.Get<QCheckBox>("chkChart")->setChecked(true);
  bench.Tab(7);
  QVERIFY(bench.Get<QCheckBox>("chkChart")->isChecked());
  bench.Get<QCheckBox>("chkChart")->setChecked(false);
  bench.Tab(6);
  bench.Click("oTimePeriod_0");
  bench.Get<QLineEdit>("tNameNumber")->setText("5551234567");
  bench.form->Form_Unload();
  QCOMPARE(bench.Saved("LastTab"), std::string("6"));
  QCOMPARE(bench.Saved("FromDate"), std::string("11/22/2026"));
  QCOMPARE(bench.Saved("ToDate"), std::string("11/22/2026"));
  QCOMPARE(bench.Saved("SearchText"), std::string("5551234567"));
  QCOMPARE(bench.Saved("PrintChart"), std::string("1"));
  QCOMPARE(bench.Saved("Condensed"), std::string("0"));

  // Unloading twice saves once.
  bench.Set("LastTab", "2");
  bench.form->Form_Unload();
  QCOMPARE(bench.Saved("LastTab"), std::string("2"));

  // A new form on the same settings comes back as the user left it.
  bench.Load();
  QCOMPARE(bench.form->ReportKind(), 2);
  QVERIFY(bench.Get<QCheckBox>("chkChart")->isChecked());
  QCOMPARE(bench.Caption("lFromDate"), QStringLiteral("11/22/2026"));
}

void ReportFormTest::lastTabIsClampedAndTheHistoryTabLeavesTheChartBoxes() {
  for (const auto& [stored, tab] : {std::pair{"0", 1}, std::pair{"-3", 1}, std::pair{"99", 8}, std::pair{"x", 1}}) {
    Bench bench;
    bench.Set("LastTab", stored);
    bench.Load();
    QCOMPARE(bench.form->ReportKind(), tab);
  }
  Bench bench;
  bench.Set({{"LastTab", "7"}, {"PrintChart", "1"}, {"Condensed", "1"}});
  bench.Load();
  QCOMPARE(bench.form->ReportKind(), 7);
  QVERIFY(!bench.Get<QCheckBox>("chkChart")->isChecked());
  QCOMPARE(bench.Get<QCheckBox>("chkChart")->text(), QStringLiteral("Condensed Summary Version"));
  bench.Tab(1);
  QVERIFY(!bench.Get<QCheckBox>("chkChart")->isChecked());
  QCOMPARE(bench.Get<QCheckBox>("chkChart")->text(), QStringLiteral("Include Graph"));
  // Unloading on tab 7 leaves both settings alone.
  bench.Tab(7);
  bench.Get<QCheckBox>("chkChart")->setChecked(true);
  bench.form->Form_Unload();
  QCOMPARE(bench.Saved("LastTab"), std::string("7"));
  QCOMPARE(bench.Saved("PrintChart"), std::string("1"));
  QCOMPARE(bench.Saved("Condensed"), std::string("1"));
}

void ReportFormTest::tabPresetsRestoreDirectionDatesLinesAndTheAbandonedBox() {
  Bench bench;
  bench.Set({{"CallType", "InOut"}, {"FromDate", "09/01/2026"}, {"Select Seconds", "1"}, {"Abandoned Seconds", "45"},
             {"Select Rings", "1"}, {"Abandoned Rings", "3"}, {"Select Answered", "0"}, {"Select InOut", "1"}});
  bench.Load();
  QVERIFY(bench.Get<QRadioButton>("Option3")->isChecked());
  QCOMPARE(bench.Caption("lFromDate"), QStringLiteral("09/01/2026"));
  QCOMPARE(bench.Caption("lToDate"), QStringLiteral("11/22/2026"));  // empty ToDate: today

  // The line list offers the active lines of the INI file and all lines.
  auto* lines = bench.Get<QComboBox>("Combo1");
  QStringList entries;
  for (int k = 0; k < lines->count(); ++k) entries << lines->itemText(k);
  QCOMPARE(entries, (QStringList{"1", "2", "3", "4", "All Lines (sorted)"}));

  // Option clicks save the direction; the next tab restores it, and its dates.
  bench.Click("Option1");
  QCOMPARE(bench.Saved("CallType"), std::string("In"));
  bench.Click("oTimePeriod_0");
  bench.office.WriteIni(3, 2);
  bench.Tab(8);
  QVERIFY(bench.Get<QRadioButton>("Option1")->isChecked());
  QCOMPARE(bench.Caption("lFromDate"), QStringLiteral("09/01/2026"));
  QCOMPARE(lines->count(), 3);
  bench.Click("Option2");
  QCOMPARE(bench.Saved("CallType"), std::string("Out"));
  bench.Tab(7);
  QVERIFY(bench.Get<QRadioButton>("Option2")->isChecked());
  bench.Preview();
  QCOMPARE(bench.form->Request().direction, std::string("Out"));
  QCOMPARE(bench.form->Request().variant, std::string("Detailed"));  // reset by the tab change

  // The abandoned box comes back from the settings on its tab, its in/out
  // choice giving the direction there.
  bench.Tab(4);
  QVERIFY(bench.Get<QCheckBox>("chkNotLasting")->isChecked());
  QCOMPARE(bench.Get<QLineEdit>("txtSeconds")->text(), QStringLiteral("45"));
  QVERIFY(bench.Get<QCheckBox>("chkRingCount")->isChecked());
  QCOMPARE(bench.Get<QLineEdit>("txtRings")->text(), QStringLiteral("3"));
  QVERIFY(!bench.Get<QCheckBox>("chkUnanswered")->isChecked());
  QVERIFY(bench.Get<QRadioButton>("oInOut_1")->isChecked());
  bench.Preview();
  QCOMPARE(bench.form->Request().direction, std::string("Out"));
  QCOMPARE(bench.form->Request().abandoned.inOutIndex, 1);
  bench.Click("oInOut_2");
  QCOMPARE(bench.Saved("Select InOut"), std::string("2"));
  bench.Set("Select Seconds", "0");
  bench.Tab(5);
  bench.Tab(4);
  QVERIFY(!bench.Get<QCheckBox>("chkNotLasting")->isChecked());
  QVERIFY(bench.Get<QRadioButton>("oInOut_2")->isChecked());
}

void ReportFormTest::optionsOfEachTab() {
  Bench bench;
  bench.Load();
  const auto shown = [&](const char* name) { return bench.Get<QWidget>(name)->isVisible(); };
  const auto text = [&](const char* name) { return bench.Get<QAbstractButton>(name)->text(); };

  bench.Tab(1);
  QCOMPARE(text("Option1"), QStringLiteral("In Calls"));
  QCOMPARE(text("Option2"), QStringLiteral("Out Calls"));
  QCOMPARE(text("Option3"), QStringLiteral("In && Out"));
  QVERIFY(shown("chkChart") && !shown("fraSearch") && !shown("fraLines") && !shown("fraAbandoned"));

  bench.Tab(3);
  QCOMPARE(text("Option1"), QStringLiteral("Busy Lines Occurance Listing"));
  QCOMPARE(text("Option2"), QStringLiteral("Busy Lines Stats Summary"));
  QVERIFY(!shown("Option3"));
  bench.Click("Option1");
  QVERIFY(!shown("chkChart"));
  bench.Click("Option2");
  QVERIFY(shown("chkChart") && bench.Get<QWidget>("chkChart")->isEnabled());

  bench.Tab(4);
  QVERIFY(!shown("fraOptions") && shown("oInOut") && shown("fraAbandoned"));

  bench.Tab(5);
  QVERIFY(shown("fraSearch") && !shown("chkChart"));
  QCOMPARE(bench.Caption("Label1"), QStringLiteral("Name"));
  bench.Tab(6);
  QCOMPARE(bench.Caption("Label1"), QStringLiteral("Number"));

  bench.Tab(8);
  QVERIFY(shown("fraLines") && shown("cmdLineFilter") && !shown("fraSearch"));
}

void ReportFormTest::periodButtonsSetTheDates() {
  Bench bench;
  bench.Set({{"FromDate", "01/01/2026"}, {"ToDate", "12/31/2026"}});
  bench.Load();
  // Sunday 11/22/2026: the week starts that day, and To stays.
  bench.Click("oTimePeriod_1");
  QCOMPARE(bench.Caption("lFromDate"), QStringLiteral("11/22/2026"));
  QCOMPARE(bench.Caption("lToDate"), QStringLiteral("12/31/2026"));
  bench.host.today = CivilDate::FromYmd(2026, 11, 28);  // Saturday
  bench.Click("oTimePeriod_1");
  QCOMPARE(bench.Caption("lFromDate"), QStringLiteral("11/22/2026"));
  bench.Click("oTimePeriod_0");
  QCOMPARE(bench.Caption("lFromDate"), QStringLiteral("11/28/2026"));
  QCOMPARE(bench.Caption("lToDate"), QStringLiteral("11/28/2026"));
  bench.Click("oTimePeriod_2");
  QCOMPARE(bench.Caption("lFromDate"), QStringLiteral("11/01/2026"));
  QCOMPARE(bench.Caption("lToDate"), QStringLiteral("11/28/2026"));
  bench.Click("oTimePeriod_3");
  QCOMPARE(bench.Caption("lFromDate"), QStringLiteral("08/17/2026"));
  QCOMPARE(bench.Caption("lToDate"), QStringLiteral("11/28/2026"));

  // An undated first line starts at today; no log leaves From as it was.
  {
    QFile log(QString::fromStdString(bench.office.Log()));
    QVERIFY(log.open(QIODevice::WriteOnly | QIODevice::Truncate));
    log.write("header line\r\n");
  }
  bench.Click("oTimePeriod_2");
  bench.Click("oTimePeriod_3");
  QCOMPARE(bench.Caption("lFromDate"), QStringLiteral("11/28/2026"));
  QFile::remove(QString::fromStdString(bench.office.Log()));
  bench.Click("oTimePeriod_2");
  bench.Click("oTimePeriod_3");
  QCOMPARE(bench.Caption("lFromDate"), QStringLiteral("11/01/2026"));
  QVERIFY(bench.host.messages.empty());
}

void ReportFormTest::hardwareThatCannotTellDirectionsDisablesTheOptions() {
  for (const int hardware : {3, 5, 6}) {
    Bench bench;
    bench.office.WriteIni(hardware, 4);
    bench.Load();
    const bool enabled = hardware == 3;
    for (const char* name : {"Option1", "Option2", "Option3"}) {
      QCOMPARE(bench.Get<QWidget>(name)->isEnabled(), enabled);
    }
    bench.Tab(4);
    QCOMPARE(bench.Get<QWidget>("oInOut_0")->isEnabled(), enabled);
    // On the all-lines-busy tab the options choose the report, whatever the hardware.
    bench.Tab(3);
    QVERIFY(bench.Get<QWidget>("Option1")->isEnabled());
    QVERIFY(bench.Get<QWidget>("Option2")->isEnabled());
  }
}

void ReportFormTest::lineFilterAsksAndShowsTheExpandedList() {
  Bench bench;
  bench.Load();
  bench.Tab(8);
  bench.host.inputAnswer = "1,3-5,7";
  bench.Click("cmdLineFilter");
  QCOMPARE(bench.host.inputs.size(), std::size_t{1});
  QCOMPARE(bench.host.inputs[0].prompt, cw::LineFilterPrompt());
  QVERIFY(bench.host.inputs[0].prompt.find("can entered as 1-5") != std::string::npos);
  QCOMPARE(bench.host.inputs[0].title, std::string("Line Filter"));
  QCOMPARE(bench.host.inputs[0].defaultAnswer, std::string("1,11-16,18-20,22"));
  QCOMPARE(bench.host.messages.size(), std::size_t{1});
  QCOMPARE(bench.host.messages[0].title, std::string());
  QCOMPARE(bench.host.messages[0].text, std::string("1,3,4,5,7"));
  QCOMPARE(bench.host.messages[0].icon, MessageIcon::kNone);
  QCOMPARE(bench.host.messages[0].buttons, MessageButtons::kOk);

  // Cancel, or nothing typed: nothing more is shown.
  bench.host.inputAnswer.reset();
  bench.form->LineFilterArray();
  bench.host.inputAnswer = "";
  bench.form->LineFilterArray();
  QCOMPARE(bench.host.inputs.size(), std::size_t{3});
  QCOMPARE(bench.host.messages.size(), std::size_t{1});

  // A range end that is no number ends in the classic error box.
  bench.host.inputAnswer = "1,a-3";
  bench.form->LineFilterArray();
  QCOMPARE(bench.host.messages.size(), std::size_t{2});
  QCOMPARE(bench.host.messages[1].title, std::string("Error"));
  QVERIFY(bench.host.LastText().find("in Form fReport procedure LineFilterArray.") != std::string::npos);
  QVERIFY(bench.host.LastText().find("The error Occurred at line: ") != std::string::npos);
}

void ReportFormTest::messagesOfTheRequestGoThroughTheHost() {
  Bench bench;
  bench.Set("Logs", bench.office.File("NoSuchLog.txt"));
  bench.Load();
  bench.Preview();
  QCOMPARE(bench.host.messages.size(), std::size_t{1});
  QCOMPARE(bench.host.messages[0].title, std::string("Cannot Find the Call Logs File"));
  QCOMPARE(bench.host.messages[0].text,
           std::string("If you are using a shared log then please make sure the file exists and reset the path to "
                       "the proper log folder."));
  QCOMPARE(bench.host.messages[0].icon, MessageIcon::kCritical);
  QVERIFY(bench.host.previews.empty());
  // The preview button is usable again.
  QVERIFY(bench.Get<QWidget>("cmdPrintQuery")->isEnabled());

  Bench named;
  named.Load();
  named.Tab(5);
  named.Preview();  // no saved dates: From is empty
  QCOMPARE(named.host.messages.size(), std::size_t{1});
  QCOMPARE(named.host.messages[0].title, std::string());
  QCOMPARE(named.host.messages[0].text, std::string("Missing Start Date"));
  named.host.messages.clear();
  named.Click("oTimePeriod_3");
  named.Get<QLineEdit>("tNameNumber")->setText("  ");
  // Enter in the name box presses the preview button.
  QTest::keyClick(named.Get<QLineEdit>("tNameNumber"), Qt::Key_Return);
  QCOMPARE(named.host.messages.size(), std::size_t{1});
  QCOMPARE(named.host.messages[0].title, std::string("Missing Search Criteria"));
  QCOMPARE(named.host.messages[0].text, std::string("Please Enter a Name"));
}

void ReportFormTest::historyModeShowsTheNumberAndUnloads() {
  Bench bench("5551234567", kCallwarden);
  bench.Set(kCallwarden, "LastTab", "2");
  bench.host.realPreview = true;
  bench.Load();
  QVERIFY(bench.form->Unloaded());
  QVERIFY(!bench.form->isVisible());
  QVERIFY2(bench.host.messages.empty(), bench.host.LastText().c_str());
  QCOMPARE(bench.host.previews.size(), std::size_t{1});
  QCOMPARE(bench.host.previews[0].title, std::string("CALLER DETAIL REPORT"));
  QCOMPARE(bench.host.previewPagesShown, bench.host.previews[0].pages);
  const cw::ReportRequest& request = bench.form->Request();
  QCOMPARE(request.kind, 6);
  QCOMPARE(request.direction, std::string("InOut"));
  QCOMPARE(request.searchText, std::string("5551234567"));
  QVERIFY(!request.partial);
  QVERIFY(!request.chart);
  QCOMPARE(request.fromDate, std::string("08/17/2026"));
  QCOMPARE(request.toDate, std::string("11/22/2026"));
  QCOMPARE(bench.Caption("Label1"), QStringLiteral("Number"));
  QCOMPARE(bench.Get<QLineEdit>("tNameNumber")->text(), QStringLiteral("5551234567"));
  QVERIFY(!bench.Get<QWidget>("chkChart")->isEnabled());
  // Nothing of the user's is saved by a history run.
  QCOMPARE(bench.store.Reports(kCallwarden, "LastTab"), std::string("2"));
  QCOMPARE(bench.store.Reports(kCallwarden, "FromDate"), std::string("<unset>"));

  // "h=HANDLE,NUMBER" shows the history too; on hardware 5 the direction
  // options stay off.
  Bench embedded("h=Callwarden,5551234567", kCallwarden);
  embedded.office.WriteIni(5, 4);
  embedded.Load();
  QVERIFY(embedded.form->Unloaded());
  QCOMPARE(embedded.host.previews.size(), std::size_t{1});
  QVERIFY(!embedded.Get<QWidget>("Option3")->isEnabled());
  QCOMPARE(embedded.form->Request().direction, std::string("InOut"));
}

void ReportFormTest::dateButtonsAndHelp() {
  Bench bench;
  bench.Set("FromDate", "10/01/2026");
  bench.Load();
  bench.host.pickedDate = "10/05/2026";
  bench.Click("cmdFrom");
  QCOMPARE(bench.host.dateCaptions, std::vector<std::string>{"10/01/2026"});
  QCOMPARE(bench.Caption("lFromDate"), QStringLiteral("10/05/2026"));
  bench.host.pickedDate.reset();
  bench.Click("cmdTo");
  QCOMPARE(bench.host.dateCaptions.back(), std::string("11/22/2026"));
  QCOMPARE(bench.Caption("lToDate"), QStringLiteral("11/22/2026"));

  // The help page opens at the form's topic; a missing page is an error box.
  bench.Click("cHelp");
  QCOMPARE(bench.host.urls.size(), std::size_t{0});
  QCOMPARE(bench.host.messages.size(), std::size_t{1});
  QVERIFY(bench.host.LastText().find("Procedure Name: cHelp_Click.") != std::string::npos);
  QVERIFY(bench.host.LastText().find(bench.helpFile) != std::string::npos);
  QFile help(QString::fromStdString(bench.helpFile));
  QVERIFY(help.open(QIODevice::WriteOnly));
  help.close();
  bench.Click("cHelp");
  QCOMPARE(bench.host.urls.size(), std::size_t{1});
  QCOMPARE(bench.host.urls[0].toLocalFile(), QString::fromStdString(bench.helpFile));
  QCOMPARE(bench.host.urls[0].fragment(), QStringLiteral("topic290"));
  QCOMPARE(bench.host.messages.size(), std::size_t{1});
  bench.host.browserOpens = false;
  bench.Click("cHelp");
  QCOMPARE(bench.host.messages.size(), std::size_t{2});
}

void ReportFormTest::errorsOfEventProceduresGoToTheStandardBox() {
  // A touch-tone setting that is no truth value stops the load's last step.
  Bench bench;
  bench.Set("DTMF", "maybe");
  bench.Load();
  QCOMPARE(bench.host.messages.size(), std::size_t{1});
  const std::string& text = bench.host.messages[0].text;
  QCOMPARE(bench.host.messages[0].title, std::string("Error"));
  QVERIFY(text.find("Module Name: fReport") != std::string::npos);
  QVERIFY(text.find("Procedure Name: Form_Load.") != std::string::npos);
  QVERIFY(text.find("Date: 11/22/2026 9:00:00 AM") != std::string::npos);
  QVERIFY(!bench.form->Unloaded());

  // A settings store that fails: every read shows its own box, and the form
  // stays usable.
  Bench failing;
  failing.Load();
  failing.store.failing = true;
  failing.host.messages.clear();
  failing.Tab(2);
  QVERIFY(!failing.host.messages.empty());
  QVERIFY(failing.host.messages[0].text.find("Procedure Name: GetOptions.") != std::string::npos);
  failing.store.failing = false;
  failing.Tab(3);
  QCOMPARE(failing.form->ReportKind(), 3);

  // A window handle: the form goes into that window where the desktop can
  // hold foreign windows, and stays a window of its own with a box where it
  // cannot; either way it is loaded.
  Bench embedded("h=1234", kCallwarden);
  embedded.Set(kCallwarden, "LastTab", "3");
  embedded.Load();
  QCOMPARE(embedded.form->Startup().windowHandle, std::optional<std::int32_t>(1234));
  QVERIFY(!embedded.form->Startup().historyMode);
  QCOMPARE(embedded.form->ReportKind(), 3);
  QVERIFY(!embedded.form->Unloaded());
  if (QGuiApplication::platformName() == QLatin1String("offscreen")) {
    QCOMPARE(embedded.host.messages.size(), std::size_t{1});
    QVERIFY(embedded.host.LastText().find("inside window 1234") != std::string::npos);
    QVERIFY(embedded.host.LastText().find("Procedure Name: Form_Load.") != std::string::npos);
  }

  // A handle that is no number ends the start-up with its box.
  Bench garbled("h=12x");
  garbled.Load();
  QVERIFY(garbled.form->Unloaded());
  QCOMPARE(garbled.host.messages.size(), std::size_t{1});
  QVERIFY(garbled.host.LastText().find("Procedure Name: Form_Load.") != std::string::npos);
}

QTEST_MAIN(ReportFormTest)
#include "report_form_test.moc"
