#pragma once
// FindForm: asks for the text to find in the previewed report and whether to
// start at the first page. It keeps the ten most recent distinct searches.
//
// Not connected to the preview (its Find button does nothing on purpose). To
// connect it: keep one FindValues for as long as the program runs, then
//
//   FindForm find(values, preview);
//   if (find.exec() == QDialog::Accepted) preview->FindInReport(values.FindWhat, values.StartFromTop);

#include <QDialog>
#include <array>
#include <string>

class QCheckBox;
class QComboBox;
class QPushButton;

namespace cw {

// What the dialog keeps between uses. Texts are single-byte Windows-1252.
struct FindValues {
  // Earlier searches, most recent first; only indices 0 to 9 are written.
  std::array<std::string, 11> FindHistory;
  // The text of the last accepted search.
  std::string FindWhat;
  // StartTopChk at the last OK.
  bool StartFromTop = false;
};

class FindForm : public QDialog {
  Q_OBJECT

 public:
  // Form_Load: the history fills SearchText's list, its first row selected.
  explicit FindForm(FindValues& values, QWidget* parent = nullptr);

 private:
  void OKBtn_Click();

  FindValues& values_;
  QComboBox* SearchText = nullptr;
  QCheckBox* StartTopChk = nullptr;
  QPushButton* OKBtn = nullptr;
  QPushButton* CancelBtn = nullptr;
};

}  // namespace cw
