#pragma once
// fReport, the start form and only main window of the desktop program: the
// tab strip of report kinds, the options of each kind, the period, and the
// preview button that hands the form's state to the report request. It owns
// the start-up (command line, settings, the logging program's INI file,
// history mode) and the shut-down (saving the user's choices).

#include <QWidget>
#include <QWindow>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "reports/get_history.h"
#include "reports/report_form.h"
#include "settings/startup.h"
#include "support/runtime_error.h"

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QFrame;
class QGroupBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QRadioButton;
class QSpinBox;
class QTabBar;
class QToolButton;
class QWindow;

namespace cw {

class DesktopReportHost;
class SettingsStore;
class TextMetrics;

class fReport : public QWidget {
  Q_OBJECT

 public:
  // commandLine: the program's arguments as one text (empty, a telephone
  // number, or "h=HANDLE[,NUMBER]"). helpFile: the bundled help's page.
  // The host, store and metrics must outlive the form.
  fReport(std::string commandLine, DesktopReportHost& host, SettingsStore& settings, TextMetrics& metrics,
          std::string helpFile, QWidget* parent = nullptr);
  ~fReport() override;

  // Start-up, in order: window font, command line, settings and INI file,
  // the last tab and its options, the touch-tone setting; in history mode the
  // number's history is shown and the form unloads itself.
  void Form_Load();
  // Shut-down: other windows closed, the user's choices saved (not in
  // history mode), the report's temporary file deleted. Runs once; closing
  // the window runs it too.
  void Form_Unload();
  bool Unloaded() const { return unloaded_; }
  // How the logging program's window is looked for while the form is
  // embedded (the display's answer unless a test replaces it); set before
  // Form_Load.
  void SetHostWindowProbe(std::function<bool(WId)> exists) { hostWindowExists_ = std::move(exists); }

 signals:
  // Form_Unload has run: the program has nothing more to show. Embedded in
  // the logging program's window, the form is no top-level window of ours, so
  // the program ends on this rather than on its last window closing.
  void FormUnloaded();

 public:

  // Event procedures, each trapping its own errors into the error box.
  void TabStrip_Click();
  void TabPreSetts();
  void Option_Click(int option);  // 1..3
  void oTimePeriod_Click(int index);
  void oInOut_Click(int index);
  void cmdFrom_Click();
  void cmdTo_Click();
  void cHelp_Click();
  void cmdPrintQuery_Click();
  void GetHistory(const std::string& number);
  void LineFilterArray();

  // The form's state as the report request gets it (filled by the preview
  // button; read by tests).
  const ReportRequest& Request() const;
  // The selected tab as a report kind, 1..8.
  std::int16_t ReportKind() const;
  // Null until Form_Load has resolved the start-up.
  ReportForm* Reports() { return reports_.get(); }
  const StartupState& Startup() const { return startup_; }

 protected:
  void closeEvent(QCloseEvent* event) override;
  // Enter anywhere on the form presses the preview button, as in a dialog.
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void BuildControls();
  void ShowTabOptions();
  void FixOptionColumnWidth();
  // The effects of an option click, without saving "CallType".
  void ApplyOption(int option);
  void SelectOption(int option);
  void SelectInOut(int index);
  void ChartBox_Toggled(bool checked);
  void RestoreAbandonedBox();
  void FillLineList(std::int32_t activeLines);
  void FillRequest();
  void ShowHistoryRequest(const HistoryControls& controls);
  void EmbedInto(std::int32_t handle);
  // The form ends with the logging program's window that holds it.
  void WatchHostWindow(std::int32_t handle);
  // The size within the screen's free area, never below least.
  QSize FittedToScreen(QSize wanted, QSize least);
  void Centre();
  void Unload();
  void OnProgress(qint64 done, qint64 total);

  std::string Option(std::string_view key, std::string_view defaultValue);
  void SaveOption(std::string_view key, std::string_view value);
  void ShowError(const RuntimeError& error, std::string_view procedure,
                 ErrorBoxForm form = ErrorBoxForm::kModern);
  // Runs an event procedure's body, trapping every error into its box.
  template <class Body>
  void Trap(std::string_view procedure, Body&& body, ErrorBoxForm form = ErrorBoxForm::kModern);

  std::string commandLine_;
  DesktopReportHost& host_;
  SettingsStore& settings_;
  TextMetrics& metrics_;
  std::string helpFile_;
  std::unique_ptr<QWindow> container_;  // the logging program's window holding the form
  std::function<bool(WId)> hostWindowExists_;

  StartupState startup_;
  std::unique_ptr<ReportForm> reports_;
  std::string direction_ = "In";
  std::string variant_ = "Detailed";
  // The chart box is the graph box on most tabs and the condensed-listing
  // box on the call history tab; each meaning keeps its own value.
  bool chart_ = false;
  bool condensed_ = false;
  bool dtmf_ = false;
  DetailColumns columns_ = DetailColumnPositions(false);
  bool unloaded_ = false;

  QTabBar* TabStrip = nullptr;
  QFrame* picBackground = nullptr;
  QGroupBox* fraOptions = nullptr;
  QRadioButton* Option1 = nullptr;
  QRadioButton* Option2 = nullptr;
  QRadioButton* Option3 = nullptr;
  QCheckBox* chkChart = nullptr;
  QGroupBox* oTimePeriod = nullptr;
  QButtonGroup* periodButtons = nullptr;
  QGroupBox* fraDates = nullptr;
  QLabel* lFromDate = nullptr;
  QLabel* lToDate = nullptr;
  QToolButton* cmdFrom = nullptr;
  QToolButton* cmdTo = nullptr;
  QGroupBox* fraSearch = nullptr;
  QLabel* Label1 = nullptr;
  QLineEdit* tNameNumber = nullptr;
  QCheckBox* chkPartial = nullptr;
  QGroupBox* fraLines = nullptr;
  QComboBox* Combo1 = nullptr;
  QPushButton* cmdLineFilter = nullptr;
  QGroupBox* fraAbandoned = nullptr;
  QCheckBox* chkNotLasting = nullptr;
  QLineEdit* txtSeconds = nullptr;
  QCheckBox* chkRingCount = nullptr;
  QLineEdit* txtRings = nullptr;
  QCheckBox* chkUnanswered = nullptr;
  QGroupBox* oInOut = nullptr;  // the abandoned-call box's in/out choice
  QGroupBox* fraCallBacks = nullptr;
  QSpinBox* txtWindow = nullptr;  // days within which a call back counts
  QButtonGroup* inOutButtons = nullptr;
  QProgressBar* progressBar = nullptr;
  QPushButton* cHelp = nullptr;
  QPushButton* cmdPrintQuery = nullptr;
};

}  // namespace cw
