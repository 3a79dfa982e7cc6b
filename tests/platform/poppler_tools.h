#pragma once
// Reading a PDF back with the poppler tools (pdftotext, pdfinfo, pdffonts,
// pdftoppm), as a reader of the exported file would see it.

#include <QProcess>
#include <QString>
#include <QStringList>
#include <gtest/gtest.h>

#include <string>

namespace cw::testing {

// The standard output of the tool; a failure to run it fails the test.
inline std::string RunTool(const QString& program, const QStringList& arguments) {
  QProcess process;
  process.start(program, arguments);
  EXPECT_TRUE(process.waitForFinished(60000)) << program.toStdString();
  EXPECT_EQ(process.exitCode(), 0) << program.toStdString() << ": " << process.readAllStandardError().toStdString();
  return process.readAllStandardOutput().toStdString();
}

// The text of one page (1-based), laid out as on the page.
inline std::string PdfPageText(const QString& pdf, int page) {
  return RunTool("pdftotext", {"-layout", "-f", QString::number(page), "-l", QString::number(page), pdf, "-"});
}

}  // namespace cw::testing
