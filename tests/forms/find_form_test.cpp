// The find dialog's history: what OK and Cancel keep between uses.

#include "forms/find_form.h"

#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QtTest>
#include <string>
#include <vector>

#include "forms/forms_rig.h"

namespace cw {

class FindFormTest : public QObject {
  Q_OBJECT

 private:
  // Opens the dialog on the values, types the text, sets the box and
  // presses OK (or Cancel); returns what the dialog showed on opening: the
  // rows of its list, and "[x]" when its box was ticked.
  static QStringList Search(FindValues& values, const QString& text, bool fromTop = false, bool ok = true) {
    FindForm form(values);
    auto* search = testing::Control<QComboBox>(form, "SearchText");
    auto* fromTopBox = testing::Control<QCheckBox>(form, "StartTopChk");
    QStringList offered = testing::Rows(*search);
    if (fromTopBox->isChecked()) offered << "[x]";
    search->setEditText(text);
    fromTopBox->setChecked(fromTop);
    QTest::mouseClick(form.findChild<QPushButton*>(ok ? "OKBtn" : "CancelBtn"), Qt::LeftButton);
    return offered;
  }

  static std::vector<std::string> Kept(const FindValues& values) {
    std::vector<std::string> kept;
    for (const std::string& entry : values.FindHistory) {
      if (!entry.empty()) kept.push_back(entry);
    }
    return kept;
  }

 private slots:
  void elevenSearchesKeepTheTenLatest() {
    FindValues values;
    for (int i = 1; i <= 11; ++i) Search(values, QString("text %1").arg(i));
    const std::vector<std::string> expected = {"text 11", "text 10", "text 9", "text 8", "text 7",
                                               "text 6",  "text 5",  "text 4", "text 3", "text 2"};
    QCOMPARE(Kept(values), expected);
    QVERIFY(values.FindHistory[10].empty());  // never written
    QCOMPARE(values.FindWhat, std::string("text 11"));
    // The next opening offers them in that order, the latest selected.
    FindForm form(values);
    auto* search = form.findChild<QComboBox*>("SearchText");
    QCOMPARE(search->count(), 10);
    QCOMPARE(search->currentIndex(), 0);
    QCOMPARE(search->currentText(), QString("text 11"));
  }

  // The texts are kept as Windows bytes.
  void sameTextIsNotRepeatedButOtherCaseIs() {
    FindValues values;
    Search(values, "Total");
    Search(values, QString::fromUtf8("Caf\u00e9"));
    Search(values, QString::fromUtf8("Caf\u00e9"));
    QCOMPARE(Kept(values), (std::vector<std::string>{"Caf\xe9", "Total"}));
    Search(values, QString::fromUtf8("CAF\u00c9"));
    QCOMPARE(Kept(values), (std::vector<std::string>{"CAF\xc9", "Caf\xe9", "Total"}));
    // Only the latest is compared: an older text comes back as a new row.
    Search(values, "Total");
    QCOMPARE(Kept(values), (std::vector<std::string>{"Total", "CAF\xc9", "Caf\xe9", "Total"}));
    QCOMPARE(values.FindWhat, std::string("Total"));
  }

  void startFromTopAndCancel() {
    FindValues values;
    Search(values, "Total", true);
    QVERIFY(values.StartFromTop);
    // Cancel changes nothing: the dialog opens again as OK left it.
    QCOMPARE(Search(values, "Other", false, false), QStringList({"Total", "[x]"}));
    QCOMPARE(values.FindWhat, std::string("Total"));
    QCOMPARE(Search(values, "Total", false), QStringList({"Total", "[x]"}));
    QVERIFY(!values.StartFromTop);

    // Blank entries are not offered.
    values.FindHistory[0] = "   ";
    values.FindHistory[1] = "Line 2";
    QCOMPARE(Search(values, "", false, false), QStringList({"Line 2"}));
  }
};

}  // namespace cw

QTEST_MAIN(cw::FindFormTest)
#include "find_form_test.moc"
