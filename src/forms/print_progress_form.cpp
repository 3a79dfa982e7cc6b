#include "forms/print_progress_form.h"

#include <QCloseEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <cmath>

#include "forms/window_appearance.h"
#include "support/runtime_error.h"
#include "support/whole_numbers.h"

namespace cw {

namespace {

constexpr double kTwipsPerInch = 1440;

}  // namespace

PrintProgressForm::PrintProgressForm(const QString& title, const QString& printer, QWidget* parent)
    : QDialog(parent) {
  setObjectName(QStringLiteral("PrintProgressForm"));
  setWindowTitle(QStringLiteral("Printing"));
  setModal(true);

  lblTitle = new QLabel(title.isEmpty() ? QStringLiteral("Printing...") : QStringLiteral("Printing %1").arg(title),
                        this);
  lblTitle->setObjectName(QStringLiteral("lblTitle"));
  lblPrinter = new QLabel(QStringLiteral("On %1").arg(printer), this);
  lblPrinter->setObjectName(QStringLiteral("lblPrinter"));
  lblPrinter->setVisible(!printer.isEmpty());

  ProgressBarFrame = new QFrame(this);
  ProgressBarFrame->setObjectName(QStringLiteral("ProgressBarFrame"));
  ProgressBarFrame->setFixedHeight(22);
  ProgressBarFrame->setMinimumWidth(320);
  ProgressBarFrame->setAutoFillBackground(true);
  QPalette track = ProgressBarFrame->palette();
  track.setColor(QPalette::Window, Qt::white);
  ProgressBarFrame->setPalette(track);
  ProgressBarFrame->installEventFilter(this);

  ProgressBar = new QFrame(ProgressBarFrame);
  ProgressBar->setObjectName(QStringLiteral("ProgressBar"));
  ProgressBar->setAutoFillBackground(true);
  QPalette fill = ProgressBar->palette();
  fill.setColor(QPalette::Window, QColor(0, 0, 128));
  ProgressBar->setPalette(fill);

  cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
  cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
  connect(cmdCancel, &QPushButton::clicked, this, [this] { cancelRequested_ = true; });

  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(cmdCancel);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(lblTitle);
  layout->addWidget(lblPrinter);
  layout->addWidget(ProgressBarFrame);
  layout->addLayout(buttons);

  // Form_Load
  ApplyWindowFont(this, GetWinVersion());
  SmartEdgeAttach(ProgressBarFrame, kBorderThinSunken);
  SetProgress(0);
}

double PrintProgressForm::TwipsPerPixel() const {
  const int dpi = ProgressBarFrame->logicalDpiX();
  return kTwipsPerInch / (dpi > 0 ? dpi : 96);
}

double PrintProgressForm::FrameWidthTwips() const { return ProgressBarFrame->width() * TwipsPerPixel(); }

void PrintProgressForm::SetProgress(float fraction) {
  fraction_ = fraction;
  barTwips_ = ToInt16(FrameWidthTwips() * static_cast<double>(fraction));
  PlaceBar();
}

void PrintProgressForm::PlaceBar() {
  const int pixels = static_cast<int>(std::lround(barTwips_ / TwipsPerPixel()));
  ProgressBar->setGeometry(0, 0, pixels, ProgressBarFrame->height());
  ProgressBar->setVisible(pixels > 0);
}

bool PrintProgressForm::eventFilter(QObject* watched, QEvent* event) {
  // The bar keeps its share of a frame that the layout has resized.
  if (watched == ProgressBarFrame && event->type() == QEvent::Resize) SetProgress(fraction_);
  return QDialog::eventFilter(watched, event);
}

void PrintProgressForm::reject() { cancelRequested_ = true; }

void PrintProgressForm::closeEvent(QCloseEvent* event) {
  // The printing routine closes the window when it is done; the user's close
  // box is a request to stop, answered by that routine.
  cancelRequested_ = true;
  event->ignore();
}

}  // namespace cw
