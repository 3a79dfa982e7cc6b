#pragma once
// PrintProgressForm: shown while a report goes to the printer. A bar grows
// inside its frame as records go out; Cancel (or the close box) asks the
// printing routine to stop, which it sees the next time it looks.

#include <QDialog>
#include <cstdint>

class QFrame;
class QLabel;
class QPushButton;

namespace cw {

class PrintProgressForm : public QDialog {
  Q_OBJECT

 public:
  // title: the document's title (UTF-8), shown above the bar; printer: the
  // printer the job goes to, shown under the title (none shown when empty).
  explicit PrintProgressForm(const QString& title = {}, const QString& printer = {}, QWidget* parent = nullptr);

  // fraction 0..1 of the work done: the bar becomes the frame's width times
  // fraction, rounded to a whole 16-bit number of twips.
  void SetProgress(float fraction);

  // The bar's and the frame's widths in twips.
  std::int16_t ProgressBarWidthTwips() const { return barTwips_; }
  double FrameWidthTwips() const;

  // Cancel was pressed or the window was closed.
  bool CancelRequested() const { return cancelRequested_; }

 protected:
  void closeEvent(QCloseEvent* event) override;
  // Escape: the same request as Cancel; the window stays until printing ends.
  void reject() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void PlaceBar();
  double TwipsPerPixel() const;

  QLabel* lblTitle;
  QLabel* lblPrinter;
  QFrame* ProgressBarFrame;
  QFrame* ProgressBar;
  QPushButton* cmdCancel;
  float fraction_ = 0;
  std::int16_t barTwips_ = 0;
  bool cancelRequested_ = false;
};

}  // namespace cw
