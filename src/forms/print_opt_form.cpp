#include "forms/print_opt_form.h"

#include <QApplication>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPrinterInfo>
#include <QPushButton>
#include <QVBoxLayout>
#include <cmath>
#include <limits>
#include <utility>

#include "forms/window_appearance.h"
#include "printer/orl_printer.h"
#include "support/ansi_text.h"
#include "support/whole_numbers.h"

namespace cw {

namespace {

constexpr int kBackspace = 8;

QString FromAnsi(const std::string& text) { return QString::fromStdString(Win1252ToUtf8(text)); }

}  // namespace

PrinterCatalog SystemPrinters() {
  QStringList names;
  for (const QPrinterInfo& printer : QPrinterInfo::availablePrinters()) names << printer.printerName();
  return MakePrinterCatalog(std::move(names), QPrinterInfo::defaultPrinterName());
}

PrinterCatalog MakePrinterCatalog(QStringList names, const QString& systemDefault) {
  PrinterCatalog catalog;
  catalog.names = std::move(names);
  catalog.current = systemDefault;
  if (!catalog.names.contains(catalog.current) && !catalog.names.isEmpty()) catalog.current = catalog.names.first();
  return catalog;
}

std::optional<std::int16_t> BoxNumber(const QString& text) {
  QString compact;
  for (QChar c : text) {
    if (c != QLatin1Char(' ') && c != QLatin1Char('\t')) compact += c;
  }
  qsizetype end = 0;
  if (end < compact.size() && (compact[end] == QLatin1Char('+') || compact[end] == QLatin1Char('-'))) ++end;
  const qsizetype digitsStart = end;
  while (end < compact.size() && compact[end].isDigit() && compact[end].unicode() < 128) ++end;
  if (end < compact.size() && compact[end] == QLatin1Char('.')) {
    ++end;
    while (end < compact.size() && compact[end].isDigit() && compact[end].unicode() < 128) ++end;
  }
  bool ok = false;
  const double value = end > digitsStart ? compact.left(end).toDouble(&ok) : 0.0;
  const double rounded = RoundHalfEven(ok ? value : 0.0);
  if (rounded < std::numeric_limits<std::int16_t>::min() || rounded > std::numeric_limits<std::int16_t>::max()) {
    return std::nullopt;
  }
  return static_cast<std::int16_t>(rounded);
}

PrintOptForm::PrintOptForm(OrlPrinter* engine, PrinterCatalog printers, QWidget* parent)
    : QDialog(parent), beep([] { QApplication::beep(); }), engine_(engine), printers_(std::move(printers)) {
  setObjectName(QStringLiteral("PrintOptForm"));
  setWindowTitle(QStringLiteral("Print"));
  setModal(true);

  PrinterList = new QComboBox(this);
  PrinterList->setObjectName(QStringLiteral("PrinterList"));
  PrinterList->setMinimumContentsLength(28);
  FromPageEdit = new QLineEdit(this);
  FromPageEdit->setObjectName(QStringLiteral("FromPageEdit"));
  ToPageEdit = new QLineEdit(this);
  ToPageEdit->setObjectName(QStringLiteral("ToPageEdit"));
  CopiesEdit = new QLineEdit(this);
  CopiesEdit->setObjectName(QStringLiteral("CopiesEdit"));
  OKBtn = new QPushButton(QStringLiteral("OK"), this);
  OKBtn->setObjectName(QStringLiteral("OKBtn"));
  OKBtn->setDefault(true);
  CancelBtn = new QPushButton(QStringLiteral("Cancel"), this);
  CancelBtn->setObjectName(QStringLiteral("CancelBtn"));
  lblMessage = new QLabel(this);
  lblMessage->setObjectName(QStringLiteral("lblMessage"));
  lblMessage->setWordWrap(true);
  lblMessage->setStyleSheet(QStringLiteral("color: #b00000"));
  lblMessage->hide();

  for (QLineEdit* box : {FromPageEdit, ToPageEdit, CopiesEdit}) {
    box->setMaximumWidth(80);
    box->installEventFilter(this);
  }

  auto* range = new QHBoxLayout;
  range->addWidget(new QLabel(QStringLiteral("From page:"), this));
  range->addWidget(FromPageEdit);
  range->addSpacing(12);
  range->addWidget(new QLabel(QStringLiteral("To page:"), this));
  range->addWidget(ToPageEdit);
  range->addStretch();

  auto* fields = new QFormLayout;
  fields->addRow(QStringLiteral("Printer:"), PrinterList);
  fields->addRow(QStringLiteral("Pages:"), range);
  fields->addRow(QStringLiteral("Copies:"), CopiesEdit);

  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(OKBtn);
  buttons->addWidget(CancelBtn);

  auto* layout = new QVBoxLayout(this);
  layout->addLayout(fields);
  layout->addWidget(lblMessage);
  layout->addLayout(buttons);

  connect(OKBtn, &QPushButton::clicked, this, &PrintOptForm::OKBtn_Click);
  connect(CancelBtn, &QPushButton::clicked, this, &PrintOptForm::CancelBtn_Click);

  // Form_Load
  ApplyWindowFont(this, GetWinVersion());
}

void PrintOptForm::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  if (!activated_) {
    activated_ = true;
    Form_Activate();
  }
}

void PrintOptForm::Form_Activate() {
  if (engine_ != nullptr) FillPrinterList(engine_->Options().defaultPrinter);
  CopiesEdit->setText(QString::number(Copies));
  FromPageEdit->setText(QString::number(FromPage));
  ToPageEdit->setText(QString::number(ToPage));
}

void PrintOptForm::FillPrinterList(const std::string& wantedName) {
  QString wanted = FromAnsi(wantedName);
  if (wanted.trimmed().isEmpty()) wanted = printers_.current;
  PrinterList->clear();
  int found = -1;
  for (const QString& name : printers_.names) {
    PrinterList->addItem(name);
    if (name == wanted) found = PrinterList->count() - 1;
  }
  PrinterList->setCurrentIndex(found);
}

void PrintOptForm::FilterDigitKey(int& keyAscii) {
  if ((keyAscii >= '0' && keyAscii <= '9') || keyAscii == kBackspace) return;
  keyAscii = 0;
  if (beep) beep();
}

bool PrintOptForm::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress ||
      (watched != FromPageEdit && watched != ToPageEdit && watched != CopiesEdit)) {
    return QDialog::eventFilter(watched, event);
  }
  const auto* key = static_cast<QKeyEvent*>(event);
  // Only typed characters go through the filter. Keys that type nothing
  // (arrows, Delete, Tab), Enter and Escape (the dialog's buttons) and the
  // Ctrl shortcuts (paste among them, which is not filtered) keep working.
  const QString text = key->text();
  if (text.isEmpty() || key->modifiers().testFlag(Qt::ControlModifier) ||
      key->modifiers().testFlag(Qt::AltModifier) || key->key() == Qt::Key_Return ||
      key->key() == Qt::Key_Enter || key->key() == Qt::Key_Escape || key->key() == Qt::Key_Tab ||
      key->key() == Qt::Key_Backtab || key->key() == Qt::Key_Delete) {
    return QDialog::eventFilter(watched, event);
  }
  int keyAscii = text.at(0).unicode();
  FilterDigitKey(keyAscii);
  return keyAscii == 0;
}

void PrintOptForm::OKBtn_Click() {
  // Page numbers and copies are 16-bit values: a larger number is refused
  // here, with the box named, rather than failing after the dialog.
  struct Box {
    QLineEdit* edit;
    const char* caption;
    std::int16_t* value;
  };
  const Box boxes[] = {{FromPageEdit, "From page", &FromPage}, {ToPageEdit, "To page", &ToPage},
                       {CopiesEdit, "Copies", &Copies}};
  std::int16_t values[3] = {};
  for (std::size_t i = 0; i < std::size(boxes); ++i) {
    const std::optional<std::int16_t> number = BoxNumber(boxes[i].edit->text());
    if (!number) {
      lblMessage->setText(QStringLiteral("%1: \"%2\" is too large; enter a number from 0 to 32767.")
                              .arg(QLatin1String(boxes[i].caption), boxes[i].edit->text()));
      lblMessage->show();
      boxes[i].edit->setFocus();
      boxes[i].edit->selectAll();
      return;
    }
    values[i] = *number;
  }
  DialogResult = 1;
  PrinterName = Utf8ToWin1252(PrinterList->currentText().toStdString());
  for (std::size_t i = 0; i < std::size(boxes); ++i) *boxes[i].value = values[i];
  accept();
}

void PrintOptForm::CancelBtn_Click() { reject(); }

}  // namespace cw
