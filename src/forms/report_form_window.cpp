// fReport: start-up and shut-down, the event procedures, and the hand-over of
// the form's state to the report request. The controls themselves are built
// in report_form_controls.cpp.
#include "forms/report_form_window.h"

#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QKeyEvent>
#include <QDir>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QSpinBox>
#include <QTabBar>
#include <QUrl>
#include <QWindow>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <utility>

#include "data/line_filter.h"
#include "data/oldest_log_date.h"
#include "forms/desktop_report_host.h"
#include "forms/host_window_watch.h"
#include "forms/qt_print_report.h"
#include "forms/report_tab_layout.h"
#include "forms/save_report_dialog.h"
#include "forms/window_appearance.h"
#include "platform/foreign_window.h"
#include "reports/form_error_box.h"
#include "settings/logging_ini.h"
#include "settings/settings_keys.h"
#include "settings/settings_values.h"
#include "support/ansi_text.h"
#include "support/date_format.h"
#include "support/file_helpers.h"
#include "support/text.h"
#include "support/whole_numbers.h"

namespace cw {

namespace {

constexpr std::int16_t kTabCount = kind::kCallBacks;
// The help topic of the report form.
constexpr const char* kHelpTopic = "topic290";

QString FromAnsi(std::string_view text) { return QString::fromStdString(Win1252ToUtf8(text)); }
std::string ToAnsi(const QString& text) { return Utf8ToWin1252(text.toStdString()); }

std::string_view CheckText(bool checked) { return checked ? "1" : "0"; }

// Hardware of these types cannot tell incoming from outgoing calls.
bool TellsDirections(std::int32_t hardwareType) { return hardwareType != 5 && hardwareType != 6; }

std::string_view DirectionOfOption(int option) {
  switch (option) {
    case 1: return "In";
    case 2: return "Out";
    default: return "InOut";
  }
}

std::int16_t CheckedActiveLines(const DataLocations& data) {
  if (data.activeLines > 32767) {
    throw RuntimeError(err::kOverflow, "ActiveLines " + std::to_string(data.activeLines) + " in " + data.iniPath +
                                           " is not a number of lines");
  }
  return static_cast<std::int16_t>(std::max(data.activeLines, 0));
}

}  // namespace

fReport::fReport(std::string commandLine, DesktopReportHost& host, SettingsStore& settings, TextMetrics& metrics,
                 std::string helpFile, QWidget* parent)
    : QWidget(parent),
      commandLine_(std::move(commandLine)),
      host_(host),
      settings_(settings),
      metrics_(metrics),
      helpFile_(std::move(helpFile)),
      hostWindowExists_(ForeignWindowExists) {
  setObjectName(QStringLiteral("fReport"));
  BuildControls();
  host_.SetOwner(this);
  connect(&host_, &DesktopReportHost::ProgressChanged, this, &fReport::OnProgress);
}

fReport::~fReport() {
  // The logging program's window goes back to being its own; ours is not
  // destroyed with it.
  if (container_ && windowHandle() != nullptr) windowHandle()->setParent(nullptr);
}

template <class Body>
void fReport::Trap(std::string_view procedure, Body&& body, ErrorBoxForm form) {
  try {
    body();
  } catch (const RuntimeError& error) {
    ShowError(error, procedure, form);
  } catch (const std::exception& error) {
    ShowError(RuntimeError(err::kInvalidCall, error.what()), procedure, form);
  }
}

void fReport::ShowError(const RuntimeError& error, std::string_view procedure, ErrorBoxForm form) {
  const std::string text = ErrorBoxText(error, ErrorPlace{"Form", "fReport", procedure}, form,
                                        ErrorBoxDateTime(host_.Today(), host_.Now()));
  host_.MessageBox(kErrorBoxTitle, text, MessageIcon::kCritical, MessageButtons::kOk);
  host_.SetBusy(false);
}

std::string fReport::Option(std::string_view key, std::string_view defaultValue) {
  return GetOptions(settings_, startup_.edition, kReportsSection, key, defaultValue, HostErrorBoxOutput(host_));
}

void fReport::SaveOption(std::string_view key, std::string_view value) {
  SaveOptions(settings_, startup_.edition, kReportsSection, key, value, HostErrorBoxOutput(host_));
}

const ReportRequest& fReport::Request() const {
  static const ReportRequest kNoRequest;
  return reports_ ? reports_->Request() : kNoRequest;
}

std::int16_t fReport::ReportKind() const { return static_cast<std::int16_t>(TabStrip->currentIndex() + 1); }

// ---------------------------------------------------------------------------
// Start-up and shut-down

void fReport::Form_Load() {
  Trap("Form_Load", [&] {
    ApplyWindowFont(this, GetWinVersion());
    FixOptionColumnWidth();

    const ErrorBoxOutput errors = HostErrorBoxOutput(host_);
    startup_ = ResolveStartup(commandLine_, settings_, errors);
    ReportEnvironment environment;
    environment.edition = startup_.edition;
    environment.logPath = startup_.data.logs;
    environment.pathFolder = startup_.data.path;
    environment.activeLines = CheckedActiveLines(startup_.data);
    environment.hardwareType = static_cast<std::int16_t>(startup_.data.hardwareType);
    environment.tempFolder = QDir::tempPath().toStdString();
    environment.measurePrinter = [this] { return host_.MeasurePrinter(); };
    QtPrintReportOptions printing;
    printing.parent = this;
    printing.reportProblems = [this](const std::string& text) {
      host_.MessageBox(host_.AppTitle(), text, MessageIcon::kExclamation, MessageButtons::kOk);
    };
    printing.reportCancelled = [this](const std::string& text) {
      host_.MessageBox(host_.AppTitle(), text, MessageIcon::kInformation, MessageButtons::kOk);
    };
    environment.printReport = MakeQtPrintReport(std::move(printing));
    environment.askSaveFileName = [this] { return AskSaveReportFileName(this); };
    // Save in the preview offers the report's data as CSV.
    environment.keepData = true;
    reports_ = std::make_unique<ReportForm>(std::move(environment), host_, metrics_, settings_);

    const std::string title = startup_.edition + " Reports";
    setWindowTitle(FromAnsi(title));
    host_.SetAppTitle(title);
    for (std::int16_t kind = 1; kind <= kTabCount; ++kind) {
      TabStrip->setTabText(kind - 1, FromAnsi(TabCaption(kind, startup_.edition)));
    }
    // The form keeps the size that holds every tab's controls, within the
    // screen (the tab strip scrolls when all tabs do not fit).
    adjustSize();
    setFixedSize(FittedToScreen(size(), minimumSizeHint()));
    Centre();
    // A window that cannot hold the form leaves it a window of its own.
    if (startup_.windowHandle) {
      Trap("Form_Load", [&] { EmbedInto(*startup_.windowHandle); });
      WatchHostWindow(*startup_.windowHandle);
    }

    if (!startup_.historyMode) {
      const std::int16_t lastTab = ClampLastTab(Option(setting::kLastTab.name, setting::kLastTab.defaultValue), kTabCount);
      if (lastTab != kind::kCallHistory) {
        chart_ = SettingIsTrue(Option(setting::kPrintChart.name, setting::kPrintChart.defaultValue));
        condensed_ = SettingIsTrue(Option(setting::kCondensed.name, setting::kCondensed.defaultValue));
      }
      const QSignalBlocker quiet(TabStrip);
      TabStrip->setCurrentIndex(lastTab - 1);
      TabStrip_Click();
    }

    dtmf_ = SettingIsTrue(Option(setting::kDtmf.name, setting::kDtmf.defaultValue));
    columns_ = DetailColumnPositions(dtmf_);
  });
  // Without its report half the form can do nothing.
  if (!reports_) {
    Unload();
    return;
  }
  if (startup_.historyMode) GetHistory(startup_.historyNumber);
}

void fReport::Form_Unload() {
  if (unloaded_) return;
  unloaded_ = true;
  Trap("Form_Unload", [&] {
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (window != this && window->isVisible()) window->close();
    }
    if (reports_ && !startup_.historyMode) {
      // A settings file that cannot be written fails each save the same way:
      // the user is told once.
      ErrorBoxOutput once = HostErrorBoxOutput(host_);
      once.show = [shown = false, show = std::move(once.show)](std::string_view title, std::string_view text) mutable {
        if (!std::exchange(shown, true)) show(title, text);
      };
      auto save = [&](std::string_view key, std::string_view value) {
        SaveOptions(settings_, startup_.edition, kReportsSection, key, value, once);
      };
      const std::int16_t kind = ReportKind();
      save(setting::kLastTab.name, std::to_string(kind));
      save(setting::kToDate.name, ToAnsi(lToDate->text()));
      save(setting::kFromDate.name, ToAnsi(lFromDate->text()));
      save(setting::kSearchText.name, ToAnsi(tNameNumber->text()));
      if (kind != kind::kCallHistory) {
        save(setting::kPrintChart.name, CheckText(chart_));
        save(setting::kCondensed.name, CheckText(condensed_));
      }
    }
    if (reports_ && reports_->Document() != nullptr) {
      const std::string spool = reports_->Document()->PrintFile();
      if (FileExists(spool)) std::remove(spool.c_str());
    }
  });
  emit FormUnloaded();
}

void fReport::Unload() {
  Form_Unload();
  close();
}

void fReport::closeEvent(QCloseEvent* event) {
  Form_Unload();
  event->accept();
}

void fReport::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (enter && event->modifiers() == Qt::NoModifier && cmdPrintQuery->isEnabled()) {
    cmdPrintQuery->click();
    return;
  }
  QWidget::keyPressEvent(event);
}

QSize fReport::FittedToScreen(QSize wanted, QSize least) {
  const QScreen* shown = screen() != nullptr ? screen() : QGuiApplication::primaryScreen();
  if (shown == nullptr) return wanted;
  // Room for the window's frame, which is not known before it is shown.
  constexpr int kFrameAllowance = 16;
  const QSize room = shown->availableGeometry().size() - QSize(kFrameAllowance, kFrameAllowance);
  return wanted.boundedTo(room).expandedTo(least);
}

// Centred on the whole screen, as the logging program expects to find it.
void fReport::Centre() {
  const QScreen* screen = QGuiApplication::primaryScreen();
  if (screen == nullptr) return;
  const QRect area = screen->geometry();
  move(area.left() + (area.width() - width()) / 2, area.top() + (area.height() - height()) / 2);
}

void fReport::EmbedInto(std::int32_t handle) {
  // The handle is an X11 window id, which is unsigned.
  std::unique_ptr<QWindow> container(QWindow::fromWinId(static_cast<WId>(static_cast<std::uint32_t>(handle))));
  if (!container) {
    throw RuntimeError(err::kInvalidCall, "This desktop cannot place the report form inside window " +
                                              std::to_string(handle));
  }
  setAttribute(Qt::WA_NativeWindow);
  winId();
  // The form keeps its screen-centred place, which inside the logging
  // program's window counts from that window's corner.
  windowHandle()->setParent(container.get());
  container_ = std::move(container);
}

void fReport::WatchHostWindow(std::int32_t handle) {
  const WId window = static_cast<WId>(static_cast<std::uint32_t>(handle));
  // A window that is not there to begin with cannot go away: the form is then
  // a window of its own and ends when it is closed.
  if (!hostWindowExists_(window)) return;
  auto* watch = new HostWindowWatch([this, window] { return hostWindowExists_(window); }, this);
  connect(watch, &HostWindowWatch::Gone, this, [this] { Unload(); });
}

// ---------------------------------------------------------------------------
// Tabs

void fReport::TabStrip_Click() {
  Trap("TabStrip_Click", [&] {
    TabPreSetts();
    ShowTabOptions();
    RestoreAbandonedBox();
  });
}

void fReport::TabPreSetts() {
  Trap("TabPreSetts", [&] {
    const std::int16_t kind = ReportKind();
    const std::string callType = Option(setting::kCallType.name, setting::kCallType.defaultValue);
    if (callType == "In") {
      SelectOption(1);
    } else if (callType == "Out") {
      SelectOption(2);
    } else if (callType == "InOut") {
      SelectOption(3);
    }
    if (kind != kind::kAllLinesBusy) variant_ = "Detailed";

    const std::int32_t hardwareType = ReadHardwareType(startup_.data.iniPath);
    const std::int32_t activeLines = ReadActiveLines(startup_.data.iniPath);
    const bool directionsKnown = TellsDirections(hardwareType);
    const bool directionOptions = LayoutOfTab(kind).directionOptions;
    for (QRadioButton* option : {Option1, Option2, Option3}) option->setEnabled(directionsKnown || !directionOptions);
    for (QAbstractButton* option : inOutButtons->buttons()) option->setEnabled(directionsKnown);

    lFromDate->setText(FromAnsi(Option(setting::kFromDate.name, setting::kFromDate.defaultValue)));
    std::string toDate = Option(setting::kToDate.name, setting::kToDate.defaultValue);
    if (toDate.empty()) toDate = FormatDate(host_.Today(), "mm/dd/yyyy");
    lToDate->setText(FromAnsi(toDate));
    // The dates are no longer those of a period.
    periodButtons->setExclusive(false);
    for (QAbstractButton* period : periodButtons->buttons()) period->setChecked(false);
    periodButtons->setExclusive(true);

    startup_.data.hardwareType = hardwareType;
    startup_.data.activeLines = activeLines;
    FillLineList(CheckedActiveLines(startup_.data));
  });
}

void fReport::FillLineList(std::int32_t activeLines) {
  const int chosen = Combo1->currentIndex();
  const bool allChosen = chosen >= 0 && chosen == Combo1->count() - 1;
  const QSignalBlocker quiet(Combo1);
  Combo1->clear();
  for (std::int32_t line = 1; line <= activeLines; ++line) Combo1->addItem(QString::number(line));
  Combo1->addItem(FromAnsi(kAllLinesEntry));
  if (allChosen) {
    Combo1->setCurrentIndex(Combo1->count() - 1);
  } else {
    Combo1->setCurrentIndex(chosen >= 0 && chosen < activeLines ? chosen : 0);
  }
}

// The options' column is as wide as its widest captions on any tab, so that
// nothing moves sideways as the tabs change.
void fReport::FixOptionColumnWidth() {
  int widest = 0;
  for (std::int16_t kind = 1; kind <= kTabCount; ++kind) {
    const ReportTabLayout layout = LayoutOfTab(kind);
    Option1->setText(FromAnsi(layout.option1));
    Option2->setText(FromAnsi(layout.option2));
    Option3->setText(FromAnsi(layout.option3));
    chkChart->setText(FromAnsi(layout.chartCaption));
    widest = std::max(widest, fraOptions->sizeHint().width());
  }
  fraOptions->setMinimumWidth(widest);
  oInOut->setMinimumWidth(widest);
}

void fReport::ShowTabOptions() {
  const std::int16_t kind = ReportKind();
  const ReportTabLayout layout = LayoutOfTab(kind);
  const auto showOption = [](QRadioButton* option, std::string_view caption) {
    QString text = FromAnsi(caption);
    option->setText(text.replace(QLatin1Char('&'), QLatin1String("&&")));
    option->setVisible(!caption.empty());
  };
  showOption(Option1, layout.option1);
  showOption(Option2, layout.option2);
  showOption(Option3, layout.option3);
  // The all-lines-busy tab has no direction of its own to show: the option
  // of its variant is shown chosen instead.
  if (kind == kind::kAllLinesBusy && Option3->isChecked()) {
    (variant_ == "Summary" ? Option2 : Option1)->setChecked(true);
  }
  fraOptions->setVisible(!layout.abandoned);
  fraOptions->setTitle(kind == kind::kAllLinesBusy ? tr("Report") : tr("Calls"));

  chkChart->setText(FromAnsi(layout.chartCaption));
  {
    const QSignalBlocker quiet(chkChart);
    chkChart->setChecked(kind == kind::kCallHistory ? condensed_ : chart_);
  }
  // On the all-lines-busy tab only the summary has a chart.
  const bool chart = layout.chart && (kind != kind::kAllLinesBusy || Option2->isChecked());
  chkChart->setVisible(chart);
  chkChart->setEnabled(chart);

  fraSearch->setVisible(layout.search);
  Label1->setText(FromAnsi(layout.searchLabel));
  chkPartial->setEnabled(layout.search);
  fraLines->setVisible(layout.lines);
  fraAbandoned->setVisible(layout.abandoned);
  oInOut->setVisible(layout.abandoned);
  fraCallBacks->setVisible(layout.callBackWindow);
}

// ---------------------------------------------------------------------------
// Options

void fReport::ApplyOption(int option) {
  direction_ = DirectionOfOption(option);
  if (option == 1) variant_ = "Detailed";
  if (option == 2) variant_ = "Summary";
  if (ReportKind() == kind::kAllLinesBusy) {
    const bool chart = option == 2;
    chkChart->setVisible(chart);
    chkChart->setEnabled(chart);
  }
}

void fReport::SelectOption(int option) {
  QRadioButton* button = option == 1 ? Option1 : option == 2 ? Option2 : Option3;
  button->setChecked(true);
  ApplyOption(option);
}

void fReport::Option_Click(int option) {
  const std::string procedure = "Option" + std::to_string(option) + "_Click";
  Trap(procedure, [&] {
    ApplyOption(option);
    SaveOption(setting::kCallType.name, DirectionOfOption(option));
  });
}

void fReport::ChartBox_Toggled(bool checked) {
  (ReportKind() == kind::kCallHistory ? condensed_ : chart_) = checked;
}

void fReport::SelectInOut(int index) {
  QAbstractButton* button = inOutButtons->button(index);
  if (button == nullptr) return;
  button->setChecked(true);
  // On the abandoned-call tab these options choose the direction.
  if (ReportKind() == kind::kAbandonedCalls) direction_ = DirectionOfOption(index + 1);
}

void fReport::oInOut_Click(int index) {
  Trap("oInOut_Click", [&] {
    SelectInOut(index);
    SaveOption(setting::kSelectInOut.name, std::to_string(index));
  });
}

void fReport::RestoreAbandonedBox() {
  Trap("RestoreAbandonedBox", [&] {
    const auto flag = [&](const SettingKey& key) { return SettingIsTrue(Option(key.name, key.defaultValue)); };
    const auto text = [&](const SettingKey& key) { return FromAnsi(Option(key.name, key.defaultValue)); };
    chkNotLasting->setChecked(flag(setting::kSelectSeconds));
    txtSeconds->setText(text(setting::kAbandonedSeconds));
    chkRingCount->setChecked(flag(setting::kSelectRings));
    txtRings->setText(text(setting::kAbandonedRings));
    chkUnanswered->setChecked(flag(setting::kSelectAnswered));
    const std::int16_t inOut = TextToInt16(Trim(Option(setting::kSelectInOut.name, setting::kSelectInOut.defaultValue)));
    SelectInOut(inOut >= 0 && inOut <= 2 ? inOut : 0);
  });
}

// ---------------------------------------------------------------------------
// Period

void fReport::oTimePeriod_Click(int index) {
  Trap("oTimePeriod_Click", [&] {
    const auto period = static_cast<TimePeriod>(index);
    const CivilDate today = host_.Today();
    std::optional<std::string> oldest;
    if (period == TimePeriod::kAllLogEntries) oldest = OldestLogDate(startup_.data.logs, today);
    const PeriodCaptions captions =
        ApplyTimePeriod(period, today, oldest, PeriodCaptions{ToAnsi(lFromDate->text()), ToAnsi(lToDate->text())});
    lFromDate->setText(FromAnsi(captions.fromDate));
    lToDate->setText(FromAnsi(captions.toDate));
  });
}

void fReport::cmdFrom_Click() {
  Trap("cmdFrom_Click", [&] {
    if (const auto date = host_.PickDate(ToAnsi(lFromDate->text()))) lFromDate->setText(FromAnsi(*date));
  });
}

void fReport::cmdTo_Click() {
  Trap("cmdTo_Click", [&] {
    if (const auto date = host_.PickDate(ToAnsi(lToDate->text()))) lToDate->setText(FromAnsi(*date));
  });
}

// ---------------------------------------------------------------------------
// Help, line filter, the request

void fReport::cHelp_Click() {
  Trap("cHelp_Click", [&] {
    if (!FileExists(helpFile_)) throw RuntimeError(err::kFileNotFound, "The help file " + helpFile_ + " is missing");
    QUrl page = QUrl::fromLocalFile(QString::fromStdString(helpFile_));
    page.setFragment(QString::fromLatin1(kHelpTopic));
    // A desktop without a browser still shows the help, in our own window.
    if (!host_.OpenUrl(page)) host_.ShowHelpWindow(page);
  });
}

void fReport::LineFilterArray() {
  Trap(
      "LineFilterArray",
      [&] {
        const std::optional<std::string> answer = host_.InputBox(LineFilterPrompt(), kLineFilterTitle, kLineFilterDefault);
        // Cancel or nothing typed: every line is meant.
        if (!answer || answer->empty()) return;
        host_.MessageBox(host_.AppTitle(), ExpandLineFilter(*answer), MessageIcon::kNone, MessageButtons::kOk);
      },
      ErrorBoxForm::kClassic);
}

void fReport::FillRequest() {
  ReportRequest& request = reports_->Request();
  request.kind = ReportKind();
  request.variant = variant_;
  request.direction = direction_;
  request.fromDate = ToAnsi(lFromDate->text());
  request.toDate = ToAnsi(lToDate->text());
  request.searchText = ToAnsi(tNameNumber->text());
  request.partial = chkPartial->isChecked();
  request.chart = chkChart->isChecked();
  request.condensed = condensed_;
  AbandonedFilter& abandoned = request.abandoned;
  abandoned.notLasting = chkNotLasting->isChecked();
  abandoned.seconds = ToAnsi(txtSeconds->text());
  abandoned.ringCount = chkRingCount->isChecked();
  abandoned.rings = ToAnsi(txtRings->text());
  abandoned.unanswered = chkUnanswered->isChecked();
  abandoned.inOutIndex = static_cast<std::int16_t>(std::max(inOutButtons->checkedId(), 0));
  const int line = Combo1->currentIndex();
  request.lines = LineChoice{};
  if (line >= 0 && line == Combo1->count() - 1) {
    request.lines.allLines = true;
  } else if (line >= 0) {
    request.lines.lines.push_back(static_cast<std::int16_t>(line + 1));
  }
  request.dtmf = dtmf_;
  request.columns = columns_;
  request.callBackWindowDays = txtWindow->value();
}

void fReport::cmdPrintQuery_Click() {
  Trap("cmdPrintQuery_Click", [&] {
    if (!reports_) return;
    FillRequest();
    cmdPrintQuery->setEnabled(false);
    reports_->cmdPrintQuery_Click();
    cmdPrintQuery->setEnabled(true);
  });
  cmdPrintQuery->setEnabled(true);
  // Whatever the request did, its progress has ended with it.
  OnProgress(-1, 0);
}

// The history of one number: the form shows the request it runs, as if the
// user had chosen it, and unloads once the preview is closed.
void fReport::GetHistory(const std::string& number) {
  bool built = false;
  Trap(
      "GetHistory",
      [&] {
        const QSignalBlocker quiet(TabStrip);
        TabStrip->setCurrentIndex(kind::kByTelNumber - 1);
        ShowTabOptions();
        ReportRequest& request = reports_->Request();
        const HistoryControls controls =
            BuildHistoryRequest(request, number, reports_->Environment(), settings_, host_.Today(), HostErrorBoxOutput(host_));
        dtmf_ = request.dtmf;
        columns_ = request.columns;
        ShowHistoryRequest(controls);
        built = true;
      },
      ErrorBoxForm::kClassic);
  if (built) {
    cmdPrintQuery_Click();
    host_.DoEvents();
  }
  Unload();
}

void fReport::ShowHistoryRequest(const HistoryControls& controls) {
  const ReportRequest& request = reports_->Request();
  lToDate->setText(FromAnsi(request.toDate));
  lFromDate->setText(FromAnsi(request.fromDate));
  for (QRadioButton* option : {Option1, Option2, Option3}) option->setEnabled(controls.directionOptionsEnabled);
  if (controls.directionOptionsEnabled) Option3->setChecked(true);
  direction_ = request.direction;
  chkPartial->setEnabled(controls.partialEnabled);
  chkPartial->setChecked(request.partial);
  Label1->setText(FromAnsi(controls.searchLabel));
  chkChart->setEnabled(controls.chartEnabled);
  chkChart->setChecked(request.chart);
  tNameNumber->setText(FromAnsi(request.searchText));
}

void fReport::OnProgress(qint64 done, qint64 total) {
  if (done < 0) {
    progressBar->hide();
    return;
  }
  if (total > 0) {
    progressBar->setRange(0, 1000);
    progressBar->setValue(static_cast<int>(std::min<qint64>(done, total) * 1000 / total));
  } else {
    progressBar->setRange(0, 0);
  }
  progressBar->show();
}

}  // namespace cw
