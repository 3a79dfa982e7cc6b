#include "forms/save_report_dialog.h"

#include <QFile>
#include <QFileDialog>
#include <QStringList>

namespace cw {

std::string AskSaveReportFileName(QWidget* parent) {
  QFileDialog dialog(parent, QStringLiteral("Save Report"));
  dialog.setObjectName("SaveReportDialog");
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setFileMode(QFileDialog::AnyFile);
  dialog.setNameFilters({QStringLiteral("Text Files (*.txt)"), QStringLiteral("All Files (*.*)")});
  dialog.setDefaultSuffix(QStringLiteral("txt"));
  if (dialog.exec() != QDialog::Accepted) return {};
  const QStringList chosen = dialog.selectedFiles();
  if (chosen.isEmpty()) return {};
  return QFile::encodeName(chosen.first()).toStdString();
}

}  // namespace cw
