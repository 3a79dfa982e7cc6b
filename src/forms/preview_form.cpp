#include "forms/preview_form.h"

#include <QComboBox>
#include <QEvent>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QShowEvent>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <new>

#include "forms/cursor_scope.h"
#include "forms/preview_page_device.h"
#include "forms/preview_page_image.h"
#include "forms/preview_zoom.h"
#include "printer/orl_printer.h"
#include "printer/spool_format.h"
#include "printer/spool_replay.h"
#include "reports/csv_export.h"
#include "reports/report_host.h"
#include "support/ansi_text.h"
#include "support/file_helpers.h"
#include "support/runtime_error.h"
#include "support/text.h"

namespace cw {

namespace {

constexpr std::string_view kDefaultCloseCaption = "Close";
// Damage found in a spool is listed up to this many lines in its message.
constexpr std::size_t kProblemLinesShown = 10;
// The strip of buttons above the page.
constexpr int kToolbarMargin = 4;
constexpr int kToolbarGap = 4;
constexpr int kZoomListWidth = 110;
constexpr int kPageScrollWidth = 160;

QString FromAnsi(std::string_view bytes) { return QString::fromStdString(Win1252ToUtf8(bytes)); }

}  // namespace

PreviewForm::PreviewForm(OrlPrinter& document, ReportHost& host, PageSetup paper, QWidget* parent,
                         const ReportData* data)
    : QDialog(parent), document_(document), data_(data), host_(host) {
  setObjectName("PreviewForm");
  const std::string title = document_.Title();
  setWindowTitle(title.empty() ? QStringLiteral("Preview") : FromAnsi(title));
  setSizeGripEnabled(false);

  if (QScreen* shown = screen()) {
    if (shown->logicalDotsPerInchX() > 0) twipsPerPixelX_ = kTwipsPerInch / shown->logicalDotsPerInchX();
    if (shown->logicalDotsPerInchY() > 0) twipsPerPixelY_ = kTwipsPerInch / shown->logicalDotsPerInchY();
  }
  setMinimumSize(static_cast<int>(std::ceil(kMinimumSideTwips / twipsPerPixelX_)),
                 static_cast<int>(std::ceil(kMinimumSideTwips / twipsPerPixelY_)));

  BuildControls();

  // Form_Load.
  if (!(paper.widthTwips > 0) || !(paper.heightTwips > 0)) paper = PageSetup{};
  spoolPath_ = document_.PrintFile();
  try {
    auto reader = std::make_unique<SpoolReader>(spoolPath_);
    SpoolPageIndex index = SpoolPageIndex::Build(*reader);
    recordCount_ = reader->RecordCount();
    locator_.emplace(std::move(index), recordCount_);
    // Past the header: the file stands at the first command record.
    reader->SeekRecord(2);
    position_ = 2;
    const PageSetup page = OrientedPage(paper, reader->Header().orientation);
    pageWidth_ = page.widthTwips;
    pageHeight_ = page.heightTwips;
    if (!reader->Problems().Empty()) {
      std::string text = "The report file " + spoolPath_ + " is damaged; the preview shows what can be read.";
      const std::vector<std::string> lines = reader->Problems().Lines();
      for (std::size_t i = 0; i < lines.size() && i < kProblemLinesShown; ++i) text += "\r\n" + lines[i];
      if (lines.size() > kProblemLinesShown) {
        text += "\r\n... and " + std::to_string(reader->Problems().Count() - kProblemLinesShown) + " more";
      }
      host_.MessageBox(host_.AppTitle(), text, MessageIcon::kExclamation, MessageButtons::kOk);
    }
    reader_ = std::move(reader);
  } catch (const RuntimeError& error) {
    host_.MessageBox(kErrorBoxTitle,
                     ErrorBoxText(error, {"Form", "PreviewForm", "Form_Load"}, ErrorBoxForm::kClassic),
                     MessageIcon::kCritical, MessageButtons::kOk);
    return;
  }
  PageImg->resize(Pixels(pageWidth_ * zoom_, twipsPerPixelX_), Pixels(pageHeight_ * zoom_, twipsPerPixelY_));
  SizeCloseButton();
  // Where the window opens is settled before it is first shown.
  PlaceWindow();
}

PreviewForm::~PreviewForm() = default;

int PreviewForm::exec() {
  if (!IsLoaded()) return QDialog::Rejected;
  return QDialog::exec();
}

// ---------------------------------------------------------------------------
// Controls

void PreviewForm::BuildControls() {
  toolbar_ = new QWidget(this);
  auto button = [&](const char* name, const QString& caption) {
    auto* made = new QPushButton(caption, toolbar_);
    made->setObjectName(name);
    // Enter must not close or print the report: no button is the default.
    made->setAutoDefault(false);
    made->setDefault(false);
    made->resize(Pixels(kCloseButtonMinimumTwips, twipsPerPixelX_), made->sizeHint().height());
    return made;
  };
  CloseBtn = button("CloseBtn", FromAnsi(kDefaultCloseCaption));
  PrintBtn = button("PrintBtn", QStringLiteral("Print"));
  SaveBtn = button("SaveBtn", QStringLiteral("Save"));
  FindBtn = button("FindBtn", QStringLiteral("Find"));

  ZoomList = new QComboBox(toolbar_);
  ZoomList->setObjectName("ZoomList");
  for (std::string_view row : kZoomRows) ZoomList->addItem(FromAnsi(row));

  PageScroll = new QScrollBar(Qt::Horizontal, toolbar_);
  PageScroll->setObjectName("PageScroll");
  // While the thumb is dragged only the label follows; the page is drawn
  // when it is let go.
  PageScroll->setTracking(false);
  PageScroll->setRange(1, 1);
  PageLabel = new QLabel(toolbar_);
  PageLabel->setObjectName("PageLabel");

  Panel = new QWidget(this);
  Panel->setObjectName("Panel");
  Panel->setAutoFillBackground(true);
  QPalette workspace = Panel->palette();
  workspace.setColor(QPalette::Window, QColor(128, 128, 128));
  Panel->setPalette(workspace);
  PageImg = new PreviewPageImage(Panel);
  HScroll = new QScrollBar(Qt::Horizontal, Panel);
  HScroll->setObjectName("HScroll");
  HScroll->hide();
  VScroll = new QScrollBar(Qt::Vertical, Panel);
  VScroll->setObjectName("VScroll");
  VScroll->hide();
  ScrollCorner = new QWidget(Panel);
  ScrollCorner->setObjectName("ScrollCorner");
  ScrollCorner->setAutoFillBackground(true);
  ScrollCorner->hide();

  connect(CloseBtn, &QPushButton::clicked, this, &QDialog::reject);
  connect(PrintBtn, &QPushButton::clicked, this, &PreviewForm::PrintBtn_Click);
  connect(SaveBtn, &QPushButton::clicked, this, &PreviewForm::SaveBtn_Click);
  connect(FindBtn, &QPushButton::clicked, this, &PreviewForm::FindBtn_Click);
  connect(ZoomList, &QComboBox::activated, this, [this] {
    Trap("ZoomList_Click", [this] { ZoomList_Click(); });
    FocusPage();
  });
  connect(PageScroll, &QScrollBar::valueChanged, this, &PreviewForm::PageScroll_Change);
  connect(PageScroll, &QScrollBar::sliderMoved, this, &PreviewForm::PageScroll_Scroll);
  connect(HScroll, &QScrollBar::valueChanged, this, &PreviewForm::HScroll_Change);
  connect(VScroll, &QScrollBar::valueChanged, this, &PreviewForm::VScroll_Change);

  // The form sees every key first, whichever control has the focus.
  for (QWidget* control : std::initializer_list<QWidget*>{CloseBtn, PrintBtn, SaveBtn, FindBtn, ZoomList, PageScroll,
                                                          Panel, PageImg, HScroll, VScroll}) {
    control->installEventFilter(this);
  }
}

int PreviewForm::Pixels(double twips, double twipsPerPixel) const {
  return static_cast<int>(std::lround(twips / twipsPerPixel));
}

void PreviewForm::SizeCloseButton() {
  std::string& caption = document_.Options().closeButtonCaption;
  if (caption.empty()) caption = kDefaultCloseCaption;
  CloseBtn->setText(FromAnsi(caption));
  const int textWidth = CloseBtn->fontMetrics().horizontalAdvance(CloseBtn->text());
  const int least = static_cast<int>(std::ceil(kCloseButtonMinimumTwips / twipsPerPixelX_));
  CloseBtn->resize(std::max(textWidth + kCloseButtonPaddingPixels, least), CloseBtn->height());
}

void PreviewForm::PlaceWindow() {
  const OrlPrinter::OutputOptions& options = document_.Options();
  if (!options.previewSizable || options.previewWindowWidth <= 0 || options.previewWindowHeight <= 0) {
    setWindowState(windowState() | Qt::WindowMaximized);
    return;
  }
  const QRect area = screen() != nullptr ? screen()->availableGeometry() : QRect(0, 0, 1024, 768);
  resize(std::min(Pixels(options.previewWindowWidth, twipsPerPixelX_), area.width()),
         std::min(Pixels(options.previewWindowHeight, twipsPerPixelY_), area.height()));
  move(area.topLeft());
}

void PreviewForm::LayoutControls() {
  const int height = CloseBtn->sizeHint().height();
  int x = kToolbarMargin;
  for (QPushButton* control : {CloseBtn, PrintBtn, SaveBtn, FindBtn}) {
    if (control->isHidden()) continue;
    control->setGeometry(x, kToolbarMargin, control->width(), height);
    x += control->width() + kToolbarGap;
  }
  ZoomList->setGeometry(x, kToolbarMargin, kZoomListWidth, height);
  x += kZoomListWidth + kToolbarGap;
  const int barHeight = PageScroll->sizeHint().height();
  PageScroll->setGeometry(x, kToolbarMargin + (height - barHeight) / 2, kPageScrollWidth, barHeight);
  x += kPageScrollWidth + kToolbarGap;
  PageLabel->setGeometry(x, kToolbarMargin, std::max(PageLabel->sizeHint().width(), 120), height);

  const int toolbarHeight = height + 2 * kToolbarMargin;
  toolbar_->setGeometry(0, 0, width(), toolbarHeight);
  Panel->setGeometry(0, toolbarHeight, width(), std::max(0, this->height() - toolbarHeight));
}

// ---------------------------------------------------------------------------
// Window events

void PreviewForm::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  if (activated_ || !IsLoaded()) return;
  activated_ = true;
  Trap("Form_Activate", [this] { Form_Activate(); });
  FocusPage();
}

void PreviewForm::Form_Activate() {
  const OrlPrinter::OutputOptions& options = document_.Options();
  SaveBtn->setVisible(options.showPreviewSave);
  PrintBtn->setVisible(options.showPreviewPrint);
  FindBtn->setVisible(options.showPreviewFind);

  // A spool kept from an earlier run comes with no page total: its pages count.
  pageCount_ = document_.TotalPages();
  if (pageCount_ < 1) pageCount_ = std::max<std::int16_t>(1, locator_->Index().LastPage());
  {
    const QSignalBlocker quiet(PageScroll);
    PageScroll->setRange(1, pageCount_);
    PageScroll->setValue(1);
  }
  UpdatePageLabel(1);

  const std::optional<std::size_t> row = InitialZoomRow(options.zoomPercent);
  ZoomList->setCurrentIndex(row ? static_cast<int>(*row) : -1);
  LayoutControls();
  ZoomList_Click();
}

void PreviewForm::resizeEvent(QResizeEvent* event) {
  QDialog::resizeEvent(event);
  Form_Resize();
}

void PreviewForm::Form_Resize() {
  if (windowState() & Qt::WindowMinimized) return;
  LayoutControls();
  if (!activated_ || !IsLoaded()) return;
  // Full Page and Page Width follow the window.
  Trap("Form_Resize", [this] { ZoomList_Click(); });
  FocusPage();
}

void PreviewForm::done(int result) {
  // Form_Unload: the spool file is closed; the engine deletes it.
  device_.reset();
  reader_.reset();
  QDialog::done(result);
}

void PreviewForm::keyPressEvent(QKeyEvent* event) {
  if (Form_KeyDown(event->key(), event->modifiers())) return;
  QDialog::keyPressEvent(event);
}

void PreviewForm::wheelEvent(QWheelEvent* event) {
  Form_Wheel(*event);
  event->accept();
}

bool PreviewForm::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    const auto* key = static_cast<QKeyEvent*>(event);
    if (Form_KeyDown(key->key(), key->modifiers())) return true;
  }
  // Over the page and the grey around it; the bars and the toolbar's own
  // controls keep their wheel.
  if (event->type() == QEvent::Wheel && (watched == Panel || watched == PageImg)) {
    Form_Wheel(*static_cast<QWheelEvent*>(event));
    return true;
  }
  return QDialog::eventFilter(watched, event);
}

bool PreviewForm::Form_KeyDown(int key, Qt::KeyboardModifiers modifiers) {
  // Ctrl counts only alone: Ctrl with Shift or Alt is not Ctrl.
  const Qt::KeyboardModifiers shift =
      modifiers & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
  const bool ctrl = shift == Qt::ControlModifier;
  auto stepBar = [](QScrollBar* bar, bool shown, int direction) {
    if (!shown) return;
    bar->setValue(std::clamp(bar->value() + direction * bar->pageStep(), bar->minimum(), bar->maximum()));
  };
  switch (key) {
    case Qt::Key_PageUp:
      if (ctrl) {
        PageScroll->setValue(1);
      } else if (PageScroll->value() >= 2) {
        PageScroll->setValue(PageScroll->value() - 1);
      }
      break;
    case Qt::Key_PageDown:
      if (ctrl) {
        PageScroll->setValue(pageCount_);
      } else if (PageScroll->value() < pageCount_) {
        PageScroll->setValue(PageScroll->value() + 1);
      }
      break;
    case Qt::Key_Up: stepBar(VScroll, vScrollShown_, -1); break;
    case Qt::Key_Down: stepBar(VScroll, vScrollShown_, 1); break;
    case Qt::Key_Left: stepBar(HScroll, hScrollShown_, -1); break;
    case Qt::Key_Right: stepBar(HScroll, hScrollShown_, 1); break;
    case Qt::Key_F:
    case Qt::Key_F3:
      // Kept for the find dialog, which is not connected.
      break;
    default:
      return false;
  }
  FocusPage();
  return true;
}

void PreviewForm::Form_Wheel(const QWheelEvent& wheel) {
  const QPoint delta = wheel.angleDelta();
  if ((wheel.modifiers() & Qt::ControlModifier) != 0) {
    if (delta.y() == 0 || !activated_) return;
    const auto row = static_cast<int>(ZoomRowAfter(zoom_, delta.y() > 0 ? 1 : -1));
    if (row == ZoomList->currentIndex() && std::abs(ZoomRowValue(kZoomRows[row]) - zoom_ * 100) < 0.5) return;
    ZoomList->setCurrentIndex(row);
    Trap("ZoomList_Click", [this] { ZoomList_Click(); });
    FocusPage();
    return;
  }
  // One notch (120) moves a bar by its single step; a vertical wheel moves
  // the horizontal bar when only that one is shown.
  auto scroll = [](QScrollBar* bar, int amount) {
    bar->setValue(std::clamp(bar->value() - amount * bar->singleStep() / 120, bar->minimum(), bar->maximum()));
  };
  int vertical = delta.y();
  int horizontal = delta.x();
  if (!vScrollShown_ && horizontal == 0) std::swap(vertical, horizontal);
  if (vScrollShown_ && vertical != 0) scroll(VScroll, vertical);
  if (hScrollShown_ && horizontal != 0) scroll(HScroll, horizontal);
}

void PreviewForm::FocusPage() {
  if (PageImg != nullptr && PageImg->isVisible()) PageImg->setFocus(Qt::OtherFocusReason);
}

template <class Handler>
void PreviewForm::Trap(const char* procedure, Handler handler) {
  auto show = [&](const RuntimeError& error) {
    host_.MessageBox(kErrorBoxTitle, ErrorBoxText(error, {"Form", "PreviewForm", procedure}, ErrorBoxForm::kClassic),
                     MessageIcon::kCritical, MessageButtons::kOk);
  };
  try {
    handler();
  } catch (const RuntimeError& error) {
    show(error);
  } catch (const std::bad_alloc&) {
    show(RuntimeError(7, "Out of memory"));
  } catch (const std::exception& error) {
    show(RuntimeError(51, std::string("Internal error: ") + error.what()));
  }
}

// ---------------------------------------------------------------------------
// Buttons and bars

void PreviewForm::PrintBtn_Click() {
  Trap("PrintBtn_Click", [this] {
    if (SpoolStillThere()) document_.PrintReport();
  });
  FocusPage();
}

void PreviewForm::SaveBtn_Click() {
  Trap("SaveBtn_Click", [this] {
    if (!SpoolStillThere()) return;
    const std::string name = document_.AskSaveFileName();
    if (name.empty()) return;
    // The name says the form: the dialog gives a CSV name ".csv".
    if (data_ != nullptr && data_->Keeping() && IsCsvFileName(name)) {
      if (!document_.PrinterFailed()) WriteCsvFile(*data_, name);
    } else {
      document_.SaveReport(name);
    }
  });
  FocusPage();
}

void PreviewForm::FindBtn_Click() {
  // Deliberately nothing: the find dialog is built but not connected.
  FocusPage();
}

bool PreviewForm::SpoolStillThere() {
  if (FileExists(spoolPath_)) return true;
  host_.MessageBox(host_.AppTitle(),
                   "The report's spool file " + spoolPath_ +
                       " has been removed, so the report can no longer be printed or saved. The preview still "
                       "shows it; run the report again to print or save it.",
                   MessageIcon::kExclamation, MessageButtons::kOk);
  return false;
}

void PreviewForm::PageScroll_Change(int value) {
  Trap("PageScroll_Change", [&] { ShowPage(static_cast<std::int16_t>(value)); });
  FocusPage();
}

void PreviewForm::PageScroll_Scroll(int value) { UpdatePageLabel(value); }

void PreviewForm::HScroll_Change(int value) {
  PageImg->move(-value, PageImg->y());
  FocusPage();
}

void PreviewForm::VScroll_Change(int value) {
  PageImg->move(PageImg->x(), -value);
  FocusPage();
}

void PreviewForm::UpdatePageLabel(int page) {
  PageLabel->setText(QStringLiteral("Page %1 of %2").arg(page).arg(pageCount_));
}

void PreviewForm::ZoomList_Click() {
  ZoomArea area;
  area.formScaleWidth = std::floor(width() * twipsPerPixelX_);
  area.panelHeight = Panel->height() * twipsPerPixelY_;
  area.vScrollWidth = VScroll->sizeHint().width() * twipsPerPixelX_;
  area.hScrollHeight = HScroll->sizeHint().height() * twipsPerPixelY_;
  area.vScrollShown = vScrollShown_;
  area.hScrollShown = hScrollShown_;
  area.pageWidth = pageWidth_;
  area.pageHeight = pageHeight_;
  if (const std::optional<double> factor = ZoomFactorFor(Utf8ToWin1252(ZoomList->currentText().toStdString()), area)) {
    zoom_ = *factor;
  }
  ShowPage(static_cast<std::int16_t>(PageScroll->value()));
}

// ---------------------------------------------------------------------------
// Pages

void PreviewForm::SetUpBar(QScrollBar& bar, int extent, int visible) {
  const QSignalBlocker quiet(&bar);
  bar.setRange(0, std::max(0, extent - visible));
  bar.setPageStep(std::max(1, visible));
  bar.setSingleStep(std::max(1, visible / 10));
  bar.setValue(0);
}

void PreviewForm::PlacePage() {
  const int pageWidth = Pixels(pageWidth_ * zoom_, twipsPerPixelX_);
  const int pageHeight = Pixels(pageHeight_ * zoom_, twipsPerPixelY_);
  const int panelWidth = Panel->width();
  const int panelHeight = Panel->height();
  const int barHeight = HScroll->sizeHint().height();
  const int barWidth = VScroll->sizeHint().width();

  // Each bar shown takes its thickness off the other direction's room, which
  // may call for the other bar in turn.
  bool horizontal = pageWidth > panelWidth;
  bool vertical = pageHeight > panelHeight;
  for (int pass = 0; pass < 2; ++pass) {
    vertical = pageHeight > panelHeight - (horizontal ? barHeight : 0);
    horizontal = pageWidth > panelWidth - (vertical ? barWidth : 0);
  }
  const int freeWidth = panelWidth - (vertical ? barWidth : 0);
  const int freeHeight = panelHeight - (horizontal ? barHeight : 0);

  // A page smaller than the room is centred; a larger one starts at the
  // bar's first position.
  PageImg->setGeometry(horizontal ? 0 : (freeWidth - pageWidth) / 2, vertical ? 0 : (freeHeight - pageHeight) / 2,
                       pageWidth, pageHeight);
  HScroll->setVisible(horizontal);
  VScroll->setVisible(vertical);
  if (horizontal) {
    HScroll->setGeometry(0, panelHeight - barHeight, freeWidth, barHeight);
    SetUpBar(*HScroll, pageWidth, freeWidth);
  }
  if (vertical) {
    VScroll->setGeometry(panelWidth - barWidth, 0, barWidth, freeHeight);
    SetUpBar(*VScroll, pageHeight, freeHeight);
  }
  // Between the two bars the page would show through.
  ScrollCorner->setVisible(horizontal && vertical);
  if (horizontal && vertical) {
    ScrollCorner->setGeometry(freeWidth, freeHeight, barWidth, barHeight);
    ScrollCorner->raise();
  }
  hScrollShown_ = horizontal;
  vScrollShown_ = vertical;
}

void PreviewForm::ShowPage(std::int16_t page) {
  if (!IsLoaded()) return;
  {
    // The hourglass while the page is drawn; the request's own busy state is
    // not the preview's to change.
    const CursorScope busy(Qt::WaitCursor);
    PlacePage();
    DrawPageRecords(page);
    currentPage_ = page;
    UpdatePageLabel(page);
  }
  PageImg->update();
}

std::int64_t PreviewForm::LocatePageRecord(std::int16_t page) {
  if (!IsLoaded()) return 0;
  const std::int64_t record = locator_->LocatePageRecord(page, currentPage_, position_);
  reader_->SeekRecord(record);
  position_ = record;
  return record;
}

void PreviewForm::DrawPageRecords(std::int16_t page) {
  const QSize pixels = PageImg->size();
  const double pixelsPerTwip = 1.0 / twipsPerPixelX_;
  if (!device_ || device_->Zoom() != zoom_ || device_->Pixels() != pixels) {
    device_.reset();
    device_ = std::make_unique<PreviewPageDevice>(zoom_, pixelsPerTwip, PageImg->Canvas(), pixels);
  }
  PreviewPageDevice& device = *device_;
  device.BeginPage();

  const std::int64_t start = LocatePageRecord(page);
  pageStart_ = start;
  const double unit = reader_->TwipsPerUnit();
  std::vector<std::string> missing;
  SpoolCommand command;
  std::int64_t lastRead = start - 1;
  bool pageEnded = false;
  while (reader_->Next(command)) {
    lastRead = command.recordNumber;
    if (!command.usable) continue;
    if (command.page != page || command.keyword == SpoolKeyword::kNewPage ||
        command.keyword == SpoolKeyword::kEndDoc) {
      pageEnded = true;
      break;
    }
    switch (command.keyword) {
      case SpoolKeyword::kSetFont: device.SetFont(command.font); break;
      case SpoolKeyword::kTextOut: device.Text(command.x1 * unit, command.y1 * unit, command.text); break;
      case SpoolKeyword::kLineOut:
        device.Line(command.x1 * unit, command.y1 * unit, command.x2 * unit, command.y2 * unit);
        break;
      case SpoolKeyword::kBoxOut:
        device.Box(command.x1 * unit, command.y1 * unit, command.x2 * unit, command.y2 * unit);
        break;
      case SpoolKeyword::kImageOut:
        // A picture that cannot be loaded leaves the page as drawn so far.
        if (!device.Image(command.text, command.x1 * unit, command.y1 * unit, command.ImageWidth() * unit,
                          command.ImageHeight() * unit)) {
          missing.push_back(command.text);
        }
        break;
      default: break;
    }
  }
  position_ = lastRead + 1;
  device.EndPage();

  for (const std::string& file : missing) {
    if (!reportedPictures_.insert(file).second) continue;
    host_.MessageBox(host_.AppTitle(),
                     "The picture file \"" + file + "\" cannot be loaded; page " + std::to_string(page) +
                         " is shown without it.",
                     MessageIcon::kExclamation, MessageButtons::kOk);
  }
  // The file ended before the records it held when the preview opened.
  if (!pageEnded && lastRead < recordCount_ && !reportedCut_) {
    reportedCut_ = true;
    host_.MessageBox(host_.AppTitle(),
                     "The report's spool file " + spoolPath_ + " has been cut short since the preview opened; page " +
                         std::to_string(page) + " cannot be shown whole.",
                     MessageIcon::kExclamation, MessageButtons::kOk);
  }
}

void PreviewForm::FindInReport(const std::string& text, bool fromTop) {
  if (!IsLoaded()) return;
  std::int16_t found = 0;
  Trap("FindInReport", [&] {
    const CursorScope busy(Qt::WaitCursor);
    const std::string wanted = UpperCase(text);
    if (!fromTop && currentPage_ >= pageCount_) return;
    // The search reads ahead; the page it finds is drawn from where drawing
    // left the file, so that it is drawn whole.
    const std::int64_t drawnTo = position_;
    LocatePageRecord(fromTop ? std::int16_t{1} : static_cast<std::int16_t>(currentPage_ + 1));
    position_ = drawnTo;
    SpoolCommand command;
    std::string field;
    while (reader_->Next(command)) {
      if (command.keyword != SpoolKeyword::kTextOut) continue;
      // The whole field, blank padding included, as it stands on disk.
      field = UpperCase(std::string_view(reader_->RawRecord() + spool::kText, spool::kTextWidth));
      if (field.find(wanted) != std::string::npos) {
        found = command.page;
        return;
      }
    }
  });
  if (found > 0) PageScroll->setValue(found);
  FocusPage();
}

}  // namespace cw
