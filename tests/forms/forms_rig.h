#pragma once
// What the desktop tests share: finding a form's controls by name,
// answering a modal window once the code under test has put it up, and
// comparing a whole text with its expected file.

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QObject>
#include <QStringList>
#include <QTimer>
#include <functional>
#include <string>
#include <vector>

namespace cw::testing {

// The form's control of that name; a missing one stops the test program,
// since every check after it would only crash.
template <class T>
T* Control(const QObject& form, const char* name) {
  T* control = form.findChild<T*>(QString::fromLatin1(name));
  if (control == nullptr) qFatal("no control %s", name);
  return control;
}

// The rows a list offers, in order.
inline QStringList Rows(const QComboBox& list) {
  QStringList rows;
  for (int row = 0; row < list.count(); ++row) rows << list.itemText(row);
  return rows;
}

// Runs `answer` on the next modal window once it is up. The window is opened
// by a call that only returns when it closes, so the answer comes from the
// event loop that window runs.
inline void WhenModalShows(std::function<void(QWidget&)> answer) {
  auto* timer = new QTimer;
  timer->setInterval(10);
  QObject::connect(timer, &QTimer::timeout, [timer, answer = std::move(answer)] {
    QWidget* window = QApplication::activeModalWidget();
    if (window == nullptr) return;
    timer->stop();
    timer->deleteLater();
    answer(*window);
  });
  timer->start();
}

// The rows of the table tests/data/forms/<name>: one case a line, its
// columns split at "|" and trimmed; lines starting with "#" say what the
// columns are.
inline std::vector<QStringList> TableRows(const QString& name) {
  QFile table(QStringLiteral(CW_TEST_DATA_DIR "/forms/") + name);
  if (!table.open(QIODevice::ReadOnly | QIODevice::Text)) qFatal("no table %s", qPrintable(name));
  std::vector<QStringList> rows;
  for (const QString& line : QString::fromUtf8(table.readAll()).split('\n', Qt::SkipEmptyParts)) {
    if (line.startsWith('#')) continue;
    QStringList columns = line.split('|');
    for (QString& column : columns) column = column.trimmed();
    rows.push_back(columns);
  }
  return rows;
}

// "" when the text is that of tests/data/forms/<name>; else where to read
// the actual text, written beside the test program.
inline QString FixtureDifference(const std::string& actual, const QString& name) {
  QFile expected(QStringLiteral(CW_TEST_DATA_DIR "/forms/") + name);
  if (expected.open(QIODevice::ReadOnly) && expected.readAll().toStdString() == actual) return {};
  const QString actualFile = QCoreApplication::applicationDirPath() + "/" + name + ".actual";
  QFile written(actualFile);
  if (written.open(QIODevice::WriteOnly)) written.write(actual.data(), static_cast<qint64>(actual.size()));
  return name + " differs; the actual text is in " + actualFile;
}

}  // namespace cw::testing
