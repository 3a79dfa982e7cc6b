// fReport on the demo office: the form's state handed to the report request on
// every tab, the settings it restores and saves, the tab presets, the period
// buttons, the hardware that cannot tell directions, the line filter, history
// mode, and every message shown through the host.
#include <QAbstractButton>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTabBar>
#include <QTextBrowser>
#include <QTemporaryDir>
#include <QUrl>
#include <QtTest>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "forms/desktop_report_host.h"
#include "forms/forms_rig.h"
#include "forms/host_window_watch.h"
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
  struct Preview {
    std::string title;
    int pages = 0;
  };

  MessageAnswer MessageBox(std::string_view title, std::string_view text, MessageIcon icon,
                           MessageButtons buttons) override {
    messages.push_back({std::string(title), std::string(text), icon, buttons});
    return buttons == MessageButtons::kOk ? MessageAnswer::kOk : MessageAnswer::kCancel;
  }
  void ShowPreview(cw::OrlPrinter& document, const cw::ReportData& data) override {
    previews.push_back({document.Title(), document.TotalPages()});
    if (!realPreview) return;
    // The real preview window, closed as soon as it is up.
    QTimer::singleShot(0, this, [this] {
      for (QWidget* window : QApplication::topLevelWidgets()) {
        auto* preview = qobject_cast<cw::PreviewForm*>(window);
        if (preview == nullptr || !preview->isVisible()) continue;
        previewPagesShown = preview->PageCount();
        const QCursor* pointer = QApplication::overrideCursor();
        previewCursor = pointer != nullptr ? pointer->shape() : Qt::ArrowCursor;
        // What a save from the preview reports.
        Progress(10, 10);
        preview->close();
      }
    });
    DesktopReportHost::ShowPreview(document, data);
  }
  CivilDate Today() override { return today; }
  cw::TimeOfDay Now() override { return 9 * 3600; }
  std::optional<std::string> InputBox(std::string_view prompt, std::string_view title,
                                      std::string_view defaultAnswer) override {
    inputs.push_back(std::string(title) + "|" + std::string(defaultAnswer) + "|" + std::string(prompt));
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
  // Every message so far as "title|text", one a line.
  std::string Said() const {
    std::string said;
    for (const Message& message : messages) said += message.title + "|" + message.text + "\n";
    return said;
  }

  std::vector<Message> messages;
  std::vector<std::string> inputs;  // "title|default answer|prompt"
  std::optional<std::string> inputAnswer;
  std::vector<std::string> dateCaptions;
  std::optional<std::string> pickedDate;
  std::vector<QUrl> urls;
  bool browserOpens = true;
  std::vector<Preview> previews;
  bool realPreview = false;
  int previewPagesShown = 0;
  Qt::CursorShape previewCursor = Qt::BlankCursor;
  CivilDate today = CivilDate::FromYmd(2026, 11, 22);  // a Sunday
};

// A form with its host and settings, on the logging program's folder: its
// INI files, the busy log, and a copy of the demo office's call log.
class Bench {
  QTemporaryDir folder_;  // declared first, so that it outlives the form

 public:
  explicit Bench(std::string commandLine = {}, const std::string& edition = kRingtally)
      : commandLine_(std::move(commandLine)) {
    QFile::copy(kDemoFolder + "/CallLog.txt", folder_.filePath("CallLog.txt"));
    QFile::copy(kDemoFolder + "/BusyLines.log", folder_.filePath("BusyLines.log"));
    WriteIni(3, 4);
    Set(edition, "Path", folder_.path().toStdString());
    Set(edition, "Logs", File("CallLog.txt"));
    helpFile = File("help.html");
  }
  void WriteIni(int hardware, int lines) {
    for (const char* name : {"Ringtally.ini", "Callwarden.ini"}) {
      QFile ini(folder_.filePath(name));
      QVERIFY(ini.open(QIODevice::WriteOnly | QIODevice::Truncate));
      ini.write(QStringLiteral("[Ports]\r\nKVXHardware=%1\r\nActiveLines=%2\r\n").arg(hardware).arg(lines).toLatin1());
    }
  }
  std::string File(const char* name) const { return folder_.filePath(name).toStdString(); }
  void Set(const std::string& app, const std::string& key, const std::string& value) {
    store.values[{app, "Reports", key}] = value;
  }
  void Set(const std::string& key, const std::string& value) { Set(kRingtally, key, value); }
  void Set(std::initializer_list<std::pair<std::string, std::string>> values) {
    for (const auto& [key, value] : values) Set(key, value);
  }

  cw::fReport& Load() {
    form = std::make_unique<cw::fReport>(commandLine_, host, store, metrics, helpFile);
    form->Form_Load();
    if (!form->Unloaded()) form->show();
    return *form;
  }

  template <class T>
  T* Get(const char* name) const {
    return cw::testing::Control<T>(*form, name);
  }
  void Tab(int kind) { Get<QTabBar>("TabStrip")->setCurrentIndex(kind - 1); }
  void Click(const char* name) { Get<QAbstractButton>(name)->click(); }
  QString Caption(const char* name) const { return Get<QLabel>(name)->text(); }
  std::string Dates() const { return (Caption("lFromDate") + " to " + Caption("lToDate")).toStdString(); }
  std::string Text(const char* name) const { return Get<QLineEdit>(name)->text().toStdString(); }
  std::string Box(const char* name) const {
    const auto* box = Get<QAbstractButton>(name);
    return (box->isChecked() ? "[x] " : "[ ] ") + box->text().toStdString() + (box->isEnabled() ? "" : " (off)");
  }
  std::string Options(std::initializer_list<const char*> names) const {
    std::string options;
    for (const char* name : names) {
      const auto* option = Get<QAbstractButton>(name);
      if (!option->isVisible()) continue;
      options += (options.empty() ? "" : ", ") + option->text().toStdString() + (option->isChecked() ? "*" : "") +
                 (option->isEnabled() ? "" : " (off)");
    }
    return options;
  }
  void Check(const char* name, bool on) { Get<QAbstractButton>(name)->setChecked(on); }
  void Type(const char* name, const char* text) { Get<QLineEdit>(name)->setText(QString::fromLatin1(text)); }
  void Preview() { Click("cmdPrintQuery"); }
  bool Shown(const char* name) const { return Get<QWidget>(name)->isVisible(); }

  // What the form shows, one line: the tab; the options of the tab, the
  // chosen one starred and those that cannot be chosen marked "(off)"; its
  // boxes, ticked "[x]"; and the dates.
  std::string Shows() const {
    auto* tabs = Get<QTabBar>("TabStrip");
    const int index = tabs->currentIndex();
    std::string shown = "tab " + std::to_string(index + 1) + " " + tabs->tabText(index).toStdString();
    if (Shown("fraOptions")) shown += " | options: " + Options({"Option1", "Option2", "Option3"});
    if (Shown("chkChart")) shown += " | " + Box("chkChart");
    if (Shown("oInOut")) shown += " | in/out: " + Options({"oInOut_0", "oInOut_1", "oInOut_2"});
    if (Shown("fraAbandoned")) {
      shown += " | " + Box("chkNotLasting") + " " + Text("txtSeconds") + " " + Box("chkRingCount") + " " +
               Text("txtRings") + " " + Box("chkUnanswered");
    }
    if (Shown("fraSearch")) {
      shown += " | " + Caption("Label1").toStdString() + " \"" + Text("tNameNumber") + "\" " + Box("chkPartial");
    }
    if (Shown("fraLines")) {
      shown += " | lines " + cw::testing::Rows(*Get<QComboBox>("Combo1")).join(",").toStdString();
      if (Shown("cmdLineFilter")) shown += " and filter";
    }
    if (Shown("fraCallBacks")) shown += " | call backs within " + std::to_string(Get<QSpinBox>("txtWindow")->value());
    if (Shown("oTimePeriod") && Shown("fraDates")) shown += " | " + Dates();
    return shown + "\n";
  }
  // The request the last preview was made from, one line.
  std::string Asked() const {
    const cw::ReportRequest& request = form->Request();
    const cw::AbandonedFilter& abandoned = request.abandoned;
    std::ostringstream asked;
    asked << request.kind << " " << request.variant << " " << request.direction << " " << request.fromDate << "-"
          << request.toDate << " chart " << request.chart << " condensed " << request.condensed << " dtmf "
          << request.dtmf << " search \"" << request.searchText << "\" partial " << request.partial
          << " abandoned " << abandoned.notLasting << "/" << abandoned.seconds << " " << abandoned.ringCount << "/"
          << abandoned.rings << " " << abandoned.unanswered << " " << abandoned.inOutIndex << " lines "
          << (request.lines.allLines ? "all " : "");
    for (const std::int16_t line : request.lines.lines) asked << line << " ";
    asked << "call backs " << request.callBackWindowDays << "\n";
    return asked.str();
  }
  // All log entries previewed: the title of the new preview, "" when none came.
  std::string Run() {
    const std::size_t before = host.previews.size();
    Click("oTimePeriod_3");
    Preview();
    if (host.previews.size() != before + 1 || host.previews.back().pages < 1) return {};
    return host.previews.back().title;
  }

  cw::testing::MemorySettingsStore store;
  TestHost host;
  cw::QtTextMetrics metrics;
  std::string helpFile;
  std::unique_ptr<cw::fReport> form;

 private:
  std::string commandLine_;
};

bool Has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

}  // namespace

class ReportFormTest : public QObject {
  Q_OBJECT

 private slots:
  // Every tab's caption, options and boxes, walked in turn; then the tabs
  // where hardware that cannot tell the directions (5, 6) turns the direction
  // options off (on the all-lines-busy tab they choose the report, so they
  // stay on), and the other edition's captions.
  void eachTabShowsItsOwnControls() {
    Bench bench;  // empty command line: Vorn Ringtally
    bench.Load();
    std::string shown = bench.form->windowTitle().toStdString() + "\n";
    for (int tab = 1; tab <= 9; ++tab) {
      bench.Tab(tab);
      shown += bench.Shows();
    }
    // The busy-lines summary offers the graph; the listing does not.
    bench.Tab(3);
    bench.Click("Option2");
    shown += bench.Shows();
    bench.Click("Option1");
    shown += bench.Shows();
    for (const int hardware : {5, 6}) {
      Bench other;
      other.WriteIni(hardware, 4);
      other.Load();
      for (const int tab : {1, 3, 4}) {
        other.Tab(tab);
        shown += "hardware " + std::to_string(hardware) + ": " + other.Shows();
      }
    }
    Bench callwarden("h=Callwarden", kCallwarden);
    callwarden.Load();
    callwarden.Tab(4);
    shown += callwarden.form->windowTitle().toStdString() + "\n" + callwarden.Shows();
    QCOMPARE(cw::testing::FixtureDifference(shown, "report_form_tabs.txt"), QString());
    QVERIFY(bench.host.messages.empty() && callwarden.host.messages.empty());
  }

  // The title of each report previewed, and the request it was made from.
  void everyTabHandsItsStateToTheRequest() {
    Bench bench;
    bench.Set("DTMF", "1");
    bench.Load();
    std::string asked;
    const auto run = [&] {
      const std::string title = bench.Run();
      asked += title + ": " + bench.Asked();
    };

    bench.Tab(1);
    bench.Click("Option2");
    bench.Check("chkChart", true);
    run();
    QCOMPARE(bench.form->Request().columns, cw::DetailColumnPositions(true));

    bench.Tab(2);
    bench.Click("Option3");
    run();

    bench.Tab(3);
    bench.Click("Option2");
    run();
    bench.Click("Option1");
    run();

    bench.Tab(4);
    bench.Click("oInOut_0");
    bench.Check("chkNotLasting", true);
    bench.Type("txtSeconds", "30");
    bench.Check("chkRingCount", false);
    bench.Type("txtRings", "4");
    bench.Check("chkUnanswered", true);
    run();

    for (const auto& [tab, text, partial] : {std::tuple{5, "smith", true}, std::tuple{6, "5551234567", false}}) {
      bench.Tab(tab);
      bench.Type("tNameNumber", text);
      bench.Check("chkPartial", partial);
      run();
    }

    bench.Tab(7);
    bench.Check("chkChart", true);
    run();

    bench.Tab(8);
    auto* lines = bench.Get<QComboBox>("Combo1");
    lines->setCurrentIndex(1);
    run();
    lines->setCurrentIndex(lines->count() - 1);
    run();

    bench.Tab(9);
    bench.Get<QSpinBox>("txtWindow")->setValue(3);
    bench.Check("chkChart", true);
    run();
    QCOMPARE(cw::testing::FixtureDifference(asked, "report_form_requests.txt"), QString());
    QVERIFY2(bench.host.messages.empty(), bench.host.LastText().c_str());
  }

  // What the form brings back from the settings at load and on each tab
  // change, and what it saves: each step is written down as the user would
  // see the form (or as the settings hold it) and the whole walk compared
  // with report_form_settings.txt.
  void choicesAreSavedAndRestored() {
    std::string seen;
    Bench bench;
    const auto look = [&](Bench& on, const std::string& when) { seen += when + ": " + on.Shows(); };
    // The saved values of the keys, joined by "|".
    const auto saved = [&](Bench& on, std::initializer_list<const char*> keys) {
      std::string joined;
      for (const char* key : keys) joined += (joined.empty() ? "" : "|") + on.store.Reports(kRingtally, key);
      seen += "saved: " + joined + "\n";
    };
    bench.Set({{"LastTab", "5"}, {"FromDate", "10/01/2026"}, {"ToDate", "10/31/2026"}, {"CallType", "Out"},
               {"PrintChart", "0"}, {"Condensed", "1"}});
    bench.Load();
    look(bench, "loaded");
    // The chart box shows the graph choice on tab 1 and the condensed choice on tab 7.
    bench.Tab(1);
    look(bench, "graph");
    bench.Check("chkChart", true);
    bench.Tab(7);
    look(bench, "condensed");
    bench.Check("chkChart", false);
    bench.Tab(6);
    bench.Click("oTimePeriod_0");
    bench.Type("tNameNumber", "5551234567");
    bench.form->Form_Unload();
    saved(bench, {"LastTab", "FromDate", "ToDate", "SearchText", "PrintChart", "Condensed"});
    // Unloading twice saves once.
    bench.Set("LastTab", "2");
    bench.form->Form_Unload();
    saved(bench, {"LastTab"});
    bench.Load();
    look(bench, "reloaded");

    // A stored tab beyond the nine is the last (the rest of the clamping is
    // SettingValues.LastTabAndFlags').
    Bench clamped;
    clamped.Set("LastTab", "99");
    clamped.Load();
    look(clamped, "LastTab 99");
    // The history tab leaves both chart settings alone.
    Bench history;
    history.Set({{"LastTab", "7"}, {"PrintChart", "1"}, {"Condensed", "1"}});
    history.Load();
    look(history, "history");
    history.Tab(1);
    look(history, "history, graph");
    history.Tab(7);
    history.Check("chkChart", true);
    history.form->Form_Unload();
    saved(history, {"LastTab", "PrintChart", "Condensed"});

    // Option clicks save the direction; the next tab restores it, with its
    // dates (an empty ToDate is today) and the active lines of the INI file.
    Bench presets;
    presets.Set({{"CallType", "InOut"}, {"FromDate", "09/01/2026"}, {"Select Seconds", "1"},
                 {"Abandoned Seconds", "45"}, {"Select Rings", "1"}, {"Abandoned Rings", "3"},
                 {"Select Answered", "0"}, {"Select InOut", "1"}});
    presets.Load();
    look(presets, "presets");
    presets.Click("Option1");
    saved(presets, {"CallType"});
    presets.Click("oTimePeriod_0");
    presets.WriteIni(3, 2);
    presets.Tab(8);
    look(presets, "two lines");
    presets.Click("Option2");
    saved(presets, {"CallType"});
    presets.Tab(7);
    presets.Preview();  // the tab change resets the variant
    look(presets, "history");
    seen += "asked: " + presets.Asked();
    // The abandoned box comes back from the settings on its tab, its in/out
    // choice giving the direction there.
    presets.Tab(4);
    presets.Preview();
    look(presets, "abandoned");
    seen += "asked: " + presets.Asked();
    presets.Click("oInOut_2");
    saved(presets, {"Select InOut"});
    presets.Set("Select Seconds", "0");
    presets.Tab(5);
    presets.Tab(4);
    look(presets, "abandoned again");
    QCOMPARE(cw::testing::FixtureDifference(seen, "report_form_settings.txt"), QString());
  }

  void lineFilterAsksAndShowsTheExpandedList() {
    Bench bench;
    bench.Load();
    bench.Tab(8);
    bench.host.inputAnswer = "1,3-5,7";
    bench.Click("cmdLineFilter");
    QCOMPARE(bench.host.inputs.size(), std::size_t{1});
    QVERIFY(bench.host.inputs[0].starts_with("Line Filter|1,11-16,18-20,22|"));
    QVERIFY(Has(bench.host.inputs[0], "can entered as 1-5"));
    // Titled like the form's other boxes, not with the program's file name.
    QCOMPARE(bench.host.Said(), std::string("Vorn Ringtally Reports|1,3,4,5,7\n"));
    QVERIFY(bench.host.messages[0].icon == MessageIcon::kNone && bench.host.messages[0].buttons == MessageButtons::kOk);

    // Cancel, or nothing typed: nothing more is shown.
    bench.host.inputAnswer.reset();
    bench.form->LineFilterArray();
    bench.host.inputAnswer = "";
    bench.form->LineFilterArray();
    QCOMPARE(bench.host.messages.size(), std::size_t{1});

    // A range end that is no number ends in the classic error box (its
    // layout is RuntimeErrorTest's).
    bench.host.inputAnswer = "1,a-3";
    bench.form->LineFilterArray();
    QCOMPARE(bench.host.messages.size(), std::size_t{2});
    QCOMPARE(bench.host.messages[1].title, std::string("Error"));
    QVERIFY(Has(bench.host.LastText(), "in Form fReport procedure LineFilterArray."));
  }

  // Enter in the name box presses the preview button; a request refused
  // (the texts are Dispatch.RefusesIncompleteRequestsInOrderWithTheirMessages')
  // shows its box through the host, and the button is usable again.
  void messagesOfTheRequestGoThroughTheHost() {
    Bench bench;
    bench.Set("Logs", bench.File("NoSuchLog.txt"));
    bench.Load();
    bench.Tab(5);
    bench.Type("tNameNumber", "  ");
    QTest::keyClick(bench.Get<QLineEdit>("tNameNumber"), Qt::Key_Return);
    QCOMPARE(bench.host.messages.size(), std::size_t{1});
    QCOMPARE(bench.host.messages[0].title, std::string("Cannot Find the Call Logs File"));
    QVERIFY(bench.host.previews.empty());
    QVERIFY(bench.Get<QWidget>("cmdPrintQuery")->isEnabled());
  }

  void historyModeShowsTheNumberAndUnloads() {
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
    // The request GetHistory builds (BuildsTheInAndOutHistoryOverTheWholeLog)
    // goes through the form's controls to the preview unchanged. The form
    // itself is never shown: how its controls look is no one's to see.
    QCOMPARE(bench.Asked(), std::string("6 Detailed InOut 08/17/2026-11/22/2026 chart 0 condensed 0 dtmf 0 search "
                                        "\"5551234567\" partial 0 abandoned 0/ 0/ 0 0 lines call backs 7\n"));
    // Nothing of the user's is saved by a history run.
    QCOMPARE(bench.store.Reports(kCallwarden, "LastTab") + "|" + bench.store.Reports(kCallwarden, "FromDate"),
             std::string("2|<unset>"));
  }

  // Each period button sets its own period's dates (the rules of each period
  // are ReportRequestTest.TimePeriodsFromAnInjectedToday's; Today is in
  // report_form_settings.txt, All Log Entries on the form's own log in
  // report_form_requests.txt).
  void periodAndDateButtonsAndHelp() {
    Bench bench;
    bench.Set({{"FromDate", "01/01/2026"}, {"ToDate", "12/31/2026"}});
    bench.host.today = CivilDate::FromYmd(2026, 11, 28);  // a Saturday
    bench.Load();
    for (const auto& [period, dates] : {std::pair{"oTimePeriod_1", "11/22/2026 to 12/31/2026"},
                                        std::pair{"oTimePeriod_2", "11/01/2026 to 11/28/2026"}}) {
      bench.Click(period);
      QCOMPARE(bench.Dates(), std::string(dates));
    }
    // The calendar opens on the date shown; cancelling it keeps that date.
    bench.host.pickedDate = "10/05/2026";
    bench.Click("cmdFrom");
    bench.host.pickedDate.reset();
    bench.Click("cmdTo");
    QCOMPARE(bench.host.dateCaptions, (std::vector<std::string>{"11/01/2026", "11/28/2026"}));
    QCOMPARE(bench.Dates(), std::string("10/05/2026 to 11/28/2026"));

    // The help page opens at the form's topic; a missing page is an error box.
    bench.Click("cHelp");
    QVERIFY(bench.host.urls.empty());
    QCOMPARE(bench.host.messages.size(), std::size_t{1});
    QVERIFY(Has(bench.host.LastText(), "Procedure Name: cHelp_Click."));
    QVERIFY(Has(bench.host.LastText(), bench.helpFile));
    QFile help(QString::fromStdString(bench.helpFile));
    QVERIFY(help.open(QIODevice::WriteOnly));
    help.close();
    bench.Click("cHelp");
    QCOMPARE(bench.host.urls.size(), std::size_t{1});
    QCOMPARE(bench.host.urls[0].toLocalFile() + "#" + bench.host.urls[0].fragment(),
             QString::fromStdString(bench.helpFile) + "#topic290");
    // Without a browser the help opens in a window of our own, at the topic;
    // neither way shows a box.
    bench.host.browserOpens = false;
    bench.Click("cHelp");
    QCOMPARE(bench.host.messages.size(), std::size_t{1});
    auto* browser = bench.Get<QTextBrowser>("HelpBrowser");
    QVERIFY(browser->window()->isVisible());
    QCOMPARE(browser->source(), bench.host.urls.back());
    QCOMPARE(browser->window()->windowTitle(), QStringLiteral("Vorn Ringtally Reports Help"));
  }

  // Regression: the preview's own hourglass ended the request's and left the
  // wait pointer over the preview; a save from the preview left the bar full.
  void pointerAndProgressBarAfterARealPreview() {
    Bench bench;
    bench.Load();
    bench.host.realPreview = true;
    bench.Tab(1);
    QCOMPARE(bench.Run(), std::string("DAILY CALL ANALYSIS REPORT"));
    QVERIFY(bench.host.previewPagesShown > 0);
    QCOMPARE(bench.host.previewCursor, Qt::ArrowCursor);
    QCOMPARE(QApplication::overrideCursor(), nullptr);
    QVERIFY(!bench.Get<QWidget>("progressBar")->isVisible());
  }

  // Regression: a settings file that could not be written showed one box per
  // saved value when the form closed.
  void unwritableSettingsAreReportedOnceAtClose() {
    Bench bench;
    bench.Load();
    bench.Tab(1);
    QVERIFY(bench.host.messages.empty());
    bench.store.failing = true;
    bench.form->close();
    QCOMPARE(bench.host.messages.size(), std::size_t{1});
    QVERIFY(Has(bench.host.LastText(), "SaveOptions"));
  }

  // Regression: embedded in the logging program's window the program outlived
  // that window, and a form closed on its own did not end the program. The
  // form goes into that window where the desktop can hold foreign windows,
  // and stays a window of its own with a box where it cannot; either way it
  // is loaded, on the logging program's last tab (how the command line is
  // read is CommandLineTest's).
  void embeddedFormEndsWithItsHostWindow() {
    for (const bool hostThereAtStart : {true, false}) {
      Bench bench("h=4242", kCallwarden);
      bench.Set(kCallwarden, "LastTab", "3");
      bool hostThere = hostThereAtStart;
      bench.form = std::make_unique<cw::fReport>("h=4242", bench.host, bench.store, bench.metrics, bench.helpFile);
      bench.form->SetHostWindowProbe([&](WId window) { return window == WId{4242} && hostThere; });
      QSignalSpy ended(bench.form.get(), &cw::fReport::FormUnloaded);
      bench.form->Form_Load();
      QVERIFY(!bench.form->Unloaded());
      QCOMPARE(bench.form->ReportKind(), 3);
      if (QGuiApplication::platformName() == QLatin1String("offscreen")) {
        QCOMPARE(bench.host.messages.size(), std::size_t{1});
        QVERIFY(Has(bench.host.LastText(), "inside window 4242"));
        QVERIFY(Has(bench.host.LastText(), "Procedure Name: Form_Load."));
      }
      auto* watch = bench.form->findChild<cw::HostWindowWatch*>();
      if (!hostThereAtStart) {
        // Nothing to watch: the form is a window of its own, and closing it ends the program.
        QCOMPARE(watch, nullptr);
        bench.form->close();
        QCOMPARE(ended.count(), 1);
        continue;
      }
      QVERIFY(watch != nullptr);
      watch->Look();
      QVERIFY(!bench.form->Unloaded());
      hostThere = false;
      watch->Look();
      QVERIFY(bench.form->Unloaded());
      QCOMPARE(ended.count(), 1);
    }
  }

  // The boxes, each in full, are report_form_error_boxes.txt.
  void errorsOfEventProceduresGoToTheStandardBox() {
    // A touch-tone setting that is no truth value stops the load's last step.
    Bench bench;
    bench.Set("DTMF", "maybe");
    bench.Load();
    std::string boxes = "DTMF maybe:\n" + bench.host.Said();
    QVERIFY(!bench.form->Unloaded());

    // A settings store that fails: every read shows its own box, and the form
    // stays usable.
    Bench failing;
    failing.Load();
    failing.store.failing = true;
    failing.Tab(2);
    boxes += "failing settings:\n" + failing.host.Said();
    failing.store.failing = false;
    failing.Tab(3);
    QCOMPARE(failing.form->ReportKind(), 3);

    // A handle that is no number ends the start-up with its box.
    Bench garbled("h=12x");
    garbled.Load();
    QVERIFY(garbled.form->Unloaded());
    boxes += "h=12x:\n" + garbled.host.Said();
    QCOMPARE(cw::testing::FixtureDifference(boxes, "report_form_error_boxes.txt"), QString());
  }

  // Regression: at large text scaling the form was wider than the screen and
  // the preview button was cut off. The offscreen screen (800 pixels) is
  // narrower than the form's eight tabs at ordinary scaling: the tab strip
  // scrolls instead of widening the form past the screen, and the form is no
  // wider than the screen unless its options need more room.
  void formFitsTheScreen() {
    Bench bench;
    bench.Load();
    const QRect room = bench.form->screen()->availableGeometry();
    const int allTabs = bench.Get<QTabBar>("TabStrip")->sizeHint().width();
    QVERIFY2(allTabs > room.width(), "the screen holds every tab: nothing is tested");
    QVERIFY2(bench.form->width() < allTabs, qPrintable(QString::number(bench.form->width())));
    QVERIFY(bench.form->width() <= std::max(room.width(), bench.form->minimumSizeHint().width()));
    QVERIFY(bench.form->height() <= room.height());
    for (const char* name : {"cmdPrintQuery", "cHelp"}) {
      auto* button = bench.Get<QWidget>(name);
      const QRect shown(button->mapTo(bench.form.get(), QPoint(0, 0)), button->size());
      QVERIFY2(bench.form->rect().contains(shown), name);
    }
  }
};

QTEST_MAIN(ReportFormTest)
#include "report_form_test.moc"
