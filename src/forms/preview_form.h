#pragma once
// PreviewForm: a finished report on screen, one page at a time, replayed from
// the document's spool file onto PageImg at the zoom chosen in ZoomList. The
// window pages with PageScroll and the keyboard, scrolls a page larger than
// its panel, prints (the engine's PrintReport) and saves (the engine's
// SaveReport). It only reads the spool; the engine deletes it.
//
// The desktop host's ShowPreview opens it modally:
//
//   PreviewForm preview(document, host, paper, parentWindow);
//   preview.exec();  // returns when CloseBtn or the close box closes it
//
// Messages (a spool that cannot be read, a missing picture, a failed print
// or save) go through the host's message box; the window stays usable.
//
// FindBtn, F and F3 do nothing on purpose. FindInReport is complete, to be
// connected with FindForm: show FindForm modally, and after OK call
// FindInReport(FindWhat, StartFromTop).
//
// Placement: a document that is not PreviewSizable, or has no window size,
// opens maximised; otherwise the window opens PreviewWindowWidth by
// PreviewWindowHeight twips (at most the work area) at the work area's top
// left corner.

#include <QDialog>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>

#include "printer/page_device.h"
#include "printer/page_locator.h"
#include "printer/spool_reader.h"

class QComboBox;
class QKeyEvent;
class QLabel;
class QPushButton;
class QScrollBar;
class QWheelEvent;
class QWidget;

namespace cw {

class OrlPrinter;
class PreviewPageDevice;
class PreviewPageImage;
class ReportData;
class ReportHost;

class PreviewForm : public QDialog {
  Q_OBJECT

 public:
  static constexpr double kTwipsPerInch = 1440;
  // Neither side of the window is ever smaller.
  static constexpr double kMinimumSideTwips = 2000;
  static constexpr double kCloseButtonMinimumTwips = 975;
  // Space right of the close button's caption, in screen pixels.
  static constexpr int kCloseButtonPaddingPixels = 20;

  // Form_Load: opens the spool named by the document's PrintFile and sizes
  // the page. paper: the page the document was laid out on (what the
  // engine's printer measured at BeginDoc), turned to the spool's
  // orientation. A spool that cannot be opened is reported through the host;
  // IsLoaded() is then false and exec() returns at once.
  // data: the report's rows, which Save offers as CSV beside the text when
  // the report kept them.
  PreviewForm(OrlPrinter& document, ReportHost& host, PageSetup paper, QWidget* parent = nullptr,
              const ReportData* data = nullptr);
  ~PreviewForm() override;

  bool IsLoaded() const { return reader_ != nullptr; }
  int exec() override;

  // Draws one page (ShowPage) and makes it the current page.
  void ShowPage(std::int16_t page);
  // The first record of `page`, found from where the spool file stands and
  // read, so that drawing continues from there.
  std::int64_t LocatePageRecord(std::int16_t page);
  // Searches the TEXTOUT texts, ignoring case, from page 1 (fromTop) or the
  // page after the current one, and shows the page of the first hit. text is
  // single-byte Windows-1252.
  void FindInReport(const std::string& text, bool fromTop);

  std::int16_t CurrentPage() const { return currentPage_; }
  std::int16_t PageCount() const { return pageCount_; }
  double ZoomFactor() const { return zoom_; }
  double TwipsPerPixelX() const { return twipsPerPixelX_; }
  double TwipsPerPixelY() const { return twipsPerPixelY_; }
  double PageWidthTwips() const { return pageWidth_; }
  double PageHeightTwips() const { return pageHeight_; }
  // The next record the spool file reads; ShowPage leaves it past the page.
  std::int64_t RecordPosition() const { return position_; }
  // Moves the file as reading elsewhere in it would.
  void SetRecordPosition(std::int64_t record) { position_ = record; }
  // The record at which the current page's drawing started.
  std::int64_t PageStartRecord() const { return pageStart_; }

 protected:
  void showEvent(QShowEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void done(int result) override;

 private:
  void BuildControls();
  void OpenSpool();
  void Form_Activate();
  void Form_Resize();
  // True when the key is one of the preview's own.
  bool Form_KeyDown(int key, Qt::KeyboardModifiers modifiers);
  // The wheel scrolls the page; Ctrl+wheel zooms, as in other viewers.
  void Form_Wheel(const QWheelEvent& wheel);
  void ZoomList_Click();
  void PageScroll_Change(int value);
  void PageScroll_Scroll(int value);
  void HScroll_Change(int value);
  void VScroll_Change(int value);
  void PrintBtn_Click();
  void SaveBtn_Click();
  void FindBtn_Click();

  void PlaceWindow();
  void SizeCloseButton();
  void LayoutControls();
  void PlacePage();
  void DrawPageRecords(std::int16_t page);
  void UpdatePageLabel(int page);
  // The bar is shown and its step keeps the page reachable to its last pixel.
  static void SetUpBar(QScrollBar& bar, int extent, int visible);
  int Pixels(double twips, double twipsPerPixel) const;
  // A spool that is no longer there cannot be printed or saved: says so.
  bool SpoolStillThere();
  // Runs a handler; an error becomes the standard error box naming it.
  template <class Handler>
  void Trap(const char* procedure, Handler handler);
  void FocusPage();

  OrlPrinter& document_;
  const ReportData* data_ = nullptr;
  ReportHost& host_;

  std::unique_ptr<SpoolReader> reader_;
  std::optional<PageLocator> locator_;
  std::string spoolPath_;
  std::int64_t recordCount_ = 0;
  std::int16_t pageCount_ = 0;
  std::int16_t currentPage_ = 0;
  std::int64_t position_ = 2;
  std::int64_t pageStart_ = 0;
  double zoom_ = 1.0;
  double pageWidth_ = 0;
  double pageHeight_ = 0;
  bool vScrollShown_ = false;
  bool hScrollShown_ = false;
  double twipsPerPixelX_ = 15;
  double twipsPerPixelY_ = 15;
  bool activated_ = false;
  bool reportedCut_ = false;
  std::set<std::string> reportedPictures_;

  QWidget* toolbar_ = nullptr;
  QWidget* Panel = nullptr;
  PreviewPageImage* PageImg = nullptr;
  QScrollBar* HScroll = nullptr;
  QScrollBar* VScroll = nullptr;
  QWidget* ScrollCorner = nullptr;  // covers the page between the two bars
  QScrollBar* PageScroll = nullptr;
  QLabel* PageLabel = nullptr;
  QComboBox* ZoomList = nullptr;
  QPushButton* CloseBtn = nullptr;
  QPushButton* PrintBtn = nullptr;
  QPushButton* SaveBtn = nullptr;
  QPushButton* FindBtn = nullptr;
  std::unique_ptr<PreviewPageDevice> device_;
};

}  // namespace cw
