#pragma once
// PrintOptForm: the print dialog of a report document. The engine fills
// FromPage, ToPage and Copies, shows the form modally and, when DialogResult
// is 1, takes back those values and PrinterName.

#include <QDialog>
#include <QStringList>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace cw {

class OrlPrinter;

// The printers the system offers, by device name in the system's order, and
// the name of the current one.
struct PrinterCatalog {
  QStringList names;
  QString current;
};
PrinterCatalog SystemPrinters();
// The catalogue of these printers: the current one is the system's default
// when it is among them, else the first (a system need not name a default).
PrinterCatalog MakePrinterCatalog(QStringList names, const QString& systemDefault);

// The numeric value of a box's text as the boxes are read on OK: the leading
// number (an optional sign, digits, a fraction; blanks anywhere are ignored;
// nothing that reads as a number gives 0), rounded half to even to a 16-bit
// whole number. Empty when it does not fit in 16 bits.
std::optional<std::int16_t> BoxNumber(const QString& text);

class PrintOptForm : public QDialog {
  Q_OBJECT

 public:
  // engine: the document being printed; the printer list is filled only when
  // there is one. printers: the system's, or a fixed list in tests.
  explicit PrintOptForm(OrlPrinter* engine, PrinterCatalog printers = SystemPrinters(),
                        QWidget* parent = nullptr);

  // Read after the form has closed.
  std::int16_t DialogResult = 0;  // 1 after OK
  std::string PrinterName;        // Windows-1252, as the engine keeps names
  std::int16_t FromPage = 0;
  std::int16_t ToPage = 0;
  std::int16_t Copies = 0;

  // Fills PrinterList with every printer and shows the one named exactly
  // `wantedName` (Windows-1252) as chosen; an empty (or blank) name means the
  // current printer. No match leaves the list's text empty.
  void FillPrinterList(const std::string& wantedName);

  // The key filter of the three number boxes: digits and Backspace (8) pass;
  // any other character code becomes 0 and the bell sounds.
  void FilterDigitKey(int& keyAscii);

  // What FilterDigitKey sounds; QApplication::beep unless replaced (tests count).
  std::function<void()> beep;

 protected:
  void showEvent(QShowEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Form_Activate();
  void OKBtn_Click();
  void CancelBtn_Click();

  OrlPrinter* engine_;
  PrinterCatalog printers_;
  bool activated_ = false;

  QComboBox* PrinterList;
  QLineEdit* FromPageEdit;
  QLineEdit* ToPageEdit;
  QLineEdit* CopiesEdit;
  QPushButton* OKBtn;
  QPushButton* CancelBtn;
  QLabel* lblMessage;
};

}  // namespace cw
