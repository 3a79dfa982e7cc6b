#pragma once
// The desktop's ReportHost: message and input boxes, the hourglass, the
// preview window, charts, the screen and the clock. It also answers what only
// the report form asks a desktop for: a date from the calendar and a page of
// the help in the browser. Everything a window would ask the user goes
// through one virtual member, so a test derives from this class and answers
// it itself.

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <optional>
#include <string>
#include <string_view>

#include "forms/cursor_scope.h"
#include "printer/page_device.h"
#include "reports/report_host.h"

class QUrl;

namespace cw {

class DesktopReportHost : public QObject, public ReportHost {
  Q_OBJECT

 public:
  explicit DesktopReportHost(QObject* parent = nullptr);
  ~DesktopReportHost() override;

  // The window that owns the boxes and the preview (the report form).
  void SetOwner(QWidget* owner);
  QWidget* Owner() const { return owner_; }
  // The title of the boxes that name the application.
  void SetAppTitle(std::string title) { appTitle_ = std::move(title); }

  // A QMessageBox with the icon and buttons asked for; the title and text
  // are Windows-1252, lines broken with CR LF. A box without a title takes the
  // application's. Ctrl+C in the box copies its title and text.
  MessageAnswer MessageBox(std::string_view title, std::string_view text, MessageIcon icon,
                           MessageButtons buttons) override;
  // The wait cursor over every window of the program while a request works.
  // Off also ends the request's progress (the form hides its bar), even when
  // the hourglass was already off.
  void SetBusy(bool busy) override;
  // Lets pending painting and timers run; clicks and keys wait, so that a
  // report being written cannot be asked for again half-way.
  void DoEvents() override;
  // Announced through ProgressChanged.
  void Progress(std::int64_t done, std::int64_t total) override;
  // The preview window, modal: the report routine deletes the spool when it
  // closes.
  void ShowPreview(OrlPrinter& document, const ReportData& data) override;
  void DrawBarChart(const BarChartSpec& chart, const std::string& bitmapFile) override;
  // The whole primary screen.
  ScreenTwips Screen() override;
  CivilDate Today() override;
  TimeOfDay Now() override;
  std::string AppTitle() override;

  // The current printer's paper in twips (US Letter portrait when there is
  // no printer): every document is laid out on it at BeginDoc, and the
  // preview shows pages of the size measured last.
  virtual PageSetup MeasurePrinter();

  // An input box: the answer (Windows-1252), or nullopt for Cancel.
  virtual std::optional<std::string> InputBox(std::string_view prompt, std::string_view title,
                                              std::string_view defaultAnswer);
  // The calendar, starting at a "mm/dd/yyyy" caption: the date picked as
  // "mm/dd/yyyy", or nullopt when the calendar closed without one.
  virtual std::optional<std::string> PickDate(std::string_view caption);
  // Opens a page in the desktop's browser; false when nothing could open it.
  virtual bool OpenUrl(const QUrl& url);
  // Shows a page of the bundled help in a window of the program's own (for a
  // desktop without a browser); the one window is reused.
  virtual void ShowHelpWindow(const QUrl& page);

 signals:
  // Long work: done of total units (total 0: unknown); done < 0 when it ended.
  void ProgressChanged(qint64 done, qint64 total);

 private:
  QPointer<QWidget> owner_;
  std::string appTitle_ = "Callwarden Reports";
  std::optional<CursorScope> busy_;
  QPointer<QWidget> helpWindow_;
  PageSetup paper_;
};

}  // namespace cw
