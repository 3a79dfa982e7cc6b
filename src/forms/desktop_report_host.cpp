#include "forms/desktop_report_host.h"

#include <QApplication>
#include <QClipboard>
#include <QDate>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QInputDialog>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPrinter>
#include <QPrinterInfo>
#include <QScreen>
#include <QTextBrowser>
#include <QTime>
#include <QUrl>
#include <QVBoxLayout>
#include <algorithm>

#include "forms/calendar_form.h"
#include "forms/preview_form.h"
#include "platform/bar_chart.h"
#include "platform/printer_page_device.h"
#include "printer/orl_printer.h"
#include "printer/scale_mode.h"
#include "support/ansi_text.h"

namespace cw {

namespace {

// The boxes' texts break lines with CR LF; Qt breaks them with LF alone.
QString BoxText(std::string_view text) {
  QString converted = QString::fromStdString(Win1252ToUtf8(text));
  converted.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  return converted;
}

QMessageBox::Icon BoxIcon(MessageIcon icon) {
  switch (icon) {
    case MessageIcon::kCritical: return QMessageBox::Critical;
    case MessageIcon::kQuestion: return QMessageBox::Question;
    case MessageIcon::kExclamation: return QMessageBox::Warning;
    case MessageIcon::kInformation: return QMessageBox::Information;
    case MessageIcon::kNone: break;
  }
  return QMessageBox::NoIcon;
}

// Ctrl+C copies the box's title and text, as the boxes tell the user.
class CopyableMessageBox : public QMessageBox {
 public:
  using QMessageBox::QMessageBox;

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    if (event->matches(QKeySequence::Copy)) {
      QApplication::clipboard()->setText(windowTitle() + QLatin1Char('\n') + text() + QLatin1Char('\n'));
      event->accept();
      return;
    }
    QMessageBox::keyPressEvent(event);
  }
};

}  // namespace

DesktopReportHost::DesktopReportHost(QObject* parent) : QObject(parent) {}

DesktopReportHost::~DesktopReportHost() = default;

void DesktopReportHost::SetOwner(QWidget* owner) { owner_ = owner; }

MessageAnswer DesktopReportHost::MessageBox(std::string_view title, std::string_view text, MessageIcon icon,
                                            MessageButtons buttons) {
  const std::string_view shownTitle = title.empty() ? std::string_view(appTitle_) : title;
  CopyableMessageBox box(BoxIcon(icon), BoxText(shownTitle), BoxText(text), QMessageBox::NoButton, owner_);
  if (buttons == MessageButtons::kRetryCancel) {
    box.setStandardButtons(QMessageBox::Retry | QMessageBox::Cancel);
    box.setDefaultButton(QMessageBox::Retry);
  } else {
    box.setStandardButtons(QMessageBox::Ok);
  }
  int answer = 0;
  {
    // A box asked for while the hourglass is up still wants the arrow.
    const CursorScope arrow(Qt::ArrowCursor);
    answer = box.exec();
  }
  if (answer == QMessageBox::Retry) return MessageAnswer::kRetry;
  if (answer == QMessageBox::Cancel) return MessageAnswer::kCancel;
  return MessageAnswer::kOk;
}

void DesktopReportHost::SetBusy(bool busy) {
  if (busy) {
    if (!busy_) busy_.emplace(Qt::WaitCursor);
    return;
  }
  busy_.reset();
  emit ProgressChanged(-1, 0);
}

void DesktopReportHost::DoEvents() { QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents); }

void DesktopReportHost::Progress(std::int64_t done, std::int64_t total) { emit ProgressChanged(done, total); }

void DesktopReportHost::ShowPreview(OrlPrinter& document, const ReportData& data) {
  emit ProgressChanged(-1, 0);
  // The preview is the user's to work in: no hourglass over it.
  const CursorScope arrow(Qt::ArrowCursor);
  PreviewForm preview(document, *this, paper_, owner_, &data);
  preview.exec();
  // A save or print from the preview showed its progress: it has ended.
  emit ProgressChanged(-1, 0);
}

void DesktopReportHost::DrawBarChart(const BarChartSpec& chart, const std::string& bitmapFile) {
  DrawBarChartBitmap(chart, bitmapFile);
}

ScreenTwips DesktopReportHost::Screen() {
  const QScreen* screen = QGuiApplication::primaryScreen();
  if (screen == nullptr) return {};
  const double twipsPerPixelX = scale::kTwipsPerInch / screen->logicalDotsPerInchX();
  const double twipsPerPixelY = scale::kTwipsPerInch / screen->logicalDotsPerInchY();
  const QRect geometry = screen->geometry();
  return {geometry.width() * twipsPerPixelX, geometry.height() * twipsPerPixelY};
}

CivilDate DesktopReportHost::Today() {
  const QDate today = QDate::currentDate();
  return CivilDate::FromYmd(today.year(), today.month(), today.day());
}

TimeOfDay DesktopReportHost::Now() { return QTime::currentTime().msecsSinceStartOfDay() / 1000; }

std::string DesktopReportHost::AppTitle() { return appTitle_; }

PageSetup DesktopReportHost::MeasurePrinter() {
  const QPrinterInfo current = QPrinterInfo::defaultPrinter();
  if (current.isNull()) {
    paper_ = PageSetup{};
  } else {
    const QPrinter printer(current);
    paper_ = PrinterPageDevice::Paper(printer);
  }
  return paper_;
}

std::optional<std::string> DesktopReportHost::InputBox(std::string_view prompt, std::string_view title,
                                                       std::string_view defaultAnswer) {
  bool accepted = false;
  const QString answer = QInputDialog::getText(owner_, BoxText(title), BoxText(prompt), QLineEdit::Normal,
                                               BoxText(defaultAnswer), &accepted);
  if (!accepted) return std::nullopt;
  return Utf8ToWin1252(answer.toStdString());
}

std::optional<std::string> DesktopReportHost::PickDate(std::string_view caption) {
  return fCalendar::PickDate(owner_, std::string(caption), Today());
}

bool DesktopReportHost::OpenUrl(const QUrl& url) { return QDesktopServices::openUrl(url); }

void DesktopReportHost::ShowHelpWindow(const QUrl& page) {
  if (!helpWindow_) {
    // Owned by the form, so that it closes with it; a window of its own.
    auto* window = new QWidget(owner_, Qt::Window);
    window->setObjectName(QStringLiteral("HelpWindow"));
    window->setAttribute(Qt::WA_DeleteOnClose);
    auto* browser = new QTextBrowser(window);
    browser->setObjectName(QStringLiteral("HelpBrowser"));
    browser->setOpenExternalLinks(true);
    auto* layout = new QVBoxLayout(window);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(browser);
    const QRect area = window->screen() != nullptr ? window->screen()->availableGeometry() : QRect(0, 0, 1024, 768);
    window->resize(std::min(760, area.width()), std::min(640, area.height()));
    helpWindow_ = window;
  }
  helpWindow_->setWindowTitle(BoxText(appTitle_ + " Help"));
  helpWindow_->findChild<QTextBrowser*>()->setSource(page);
  helpWindow_->show();
  helpWindow_->raise();
  helpWindow_->activateWindow();
}

}  // namespace cw
