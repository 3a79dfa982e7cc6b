#include "forms/save_report_dialog.h"

#include <QFile>
#include <QFileDialog>
#include <QStringList>

namespace cw {

namespace {

const QString kTextFilter = QStringLiteral("Text Files (*.txt)");
const QString kCsvFilter = QStringLiteral("CSV Files (*.csv)");

}  // namespace

std::string AskSaveReportFileName(QWidget* parent) {
  QFileDialog dialog(parent, QStringLiteral("Save Report"));
  dialog.setObjectName("SaveReportDialog");
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setFileMode(QFileDialog::AnyFile);
  dialog.setNameFilters({kTextFilter, kCsvFilter, QStringLiteral("All Files (*.*)")});
  dialog.setDefaultSuffix(QStringLiteral("txt"));
  // A name typed without an extension takes the one of the kind chosen.
  QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, [&dialog](const QString& filter) {
    dialog.setDefaultSuffix(filter == kCsvFilter ? QStringLiteral("csv") : QStringLiteral("txt"));
  });
  if (dialog.exec() != QDialog::Accepted) return {};
  const QStringList chosen = dialog.selectedFiles();
  if (chosen.isEmpty()) return {};
  return QFile::encodeName(chosen.first()).toStdString();
}

}  // namespace cw
