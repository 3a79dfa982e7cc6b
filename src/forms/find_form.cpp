#include "forms/find_form.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <algorithm>

#include "support/ansi_text.h"
#include "support/text.h"

namespace cw {

namespace {

// Rows of the list that are copied back into the history.
constexpr int kHistoryKept = 10;

}  // namespace

FindForm::FindForm(FindValues& values, QWidget* parent) : QDialog(parent), values_(values) {
  setObjectName("FindForm");
  setWindowTitle(QStringLiteral("Find"));

  SearchText = new QComboBox(this);
  SearchText->setObjectName("SearchText");
  SearchText->setEditable(true);
  // The list changes only on OK, by the history's rules; typing neither adds
  // rows nor completes from them (completion would change the text's case).
  SearchText->setInsertPolicy(QComboBox::NoInsert);
  SearchText->setCompleter(nullptr);
  SearchText->setMinimumContentsLength(30);

  StartTopChk = new QCheckBox(QStringLiteral("Start from top"), this);
  StartTopChk->setObjectName("StartTopChk");
  OKBtn = new QPushButton(QStringLiteral("OK"), this);
  OKBtn->setObjectName("OKBtn");
  OKBtn->setDefault(true);
  CancelBtn = new QPushButton(QStringLiteral("Cancel"), this);
  CancelBtn->setObjectName("CancelBtn");

  auto* label = new QLabel(QStringLiteral("Find what:"), this);
  label->setBuddy(SearchText);
  auto* layout = new QGridLayout(this);
  layout->addWidget(label, 0, 0);
  layout->addWidget(SearchText, 0, 1);
  layout->addWidget(StartTopChk, 1, 1);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(OKBtn);
  buttons->addWidget(CancelBtn);
  layout->addLayout(buttons, 2, 0, 1, 2);

  connect(OKBtn, &QPushButton::clicked, this, &FindForm::OKBtn_Click);
  connect(CancelBtn, &QPushButton::clicked, this, &QDialog::reject);

  // Form_Load.
  for (const std::string& entry : values_.FindHistory) {
    if (!Trim(entry).empty()) SearchText->addItem(QString::fromStdString(Win1252ToUtf8(entry)));
  }
  if (SearchText->count() > 0) SearchText->setCurrentIndex(0);
  StartTopChk->setChecked(values_.StartFromTop);
}

void FindForm::OKBtn_Click() {
  const QString typed = SearchText->currentText();
  // Only a text unlike the latest search, case counting, becomes a new row.
  if (SearchText->count() == 0 || typed != SearchText->itemText(0)) SearchText->insertItem(0, typed);
  const int kept = std::min(SearchText->count(), kHistoryKept);
  for (int row = 0; row < kept; ++row) {
    values_.FindHistory[static_cast<std::size_t>(row)] = Utf8ToWin1252(SearchText->itemText(row).toStdString());
  }
  values_.FindWhat = Utf8ToWin1252(typed.toStdString());
  values_.StartFromTop = StartTopChk->isChecked();
  accept();
}

}  // namespace cw
