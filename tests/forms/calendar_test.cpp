// fCalendar: the month grid, today's highlight, keys, clicks and PickDate.

#include <QImage>
#include <QLabel>
#include <QtTest>

#include "forms/calendar_form.h"
#include "forms/forms_rig.h"

using namespace cw;

namespace {

CivilDate Date(int month, int day, int year) { return CivilDate::FromYmd(year, month, day); }

QString Title(fCalendar& calendar) { return testing::Control<QLabel>(calendar, "lblTitle")->text(); }

// Pixels of pure blue in the painted month: today's number, when it is drawn.
int BluePixels(fCalendar& calendar) {
  const QImage month = testing::Control<QWidget>(calendar, "picMonth")->grab().toImage();
  int count = 0;
  for (int y = 0; y < month.height(); ++y) {
    for (int x = 0; x < month.width(); ++x) {
      const QColor colour = month.pixelColor(x, y);
      count += colour.blue() > 200 && colour.red() < 60 && colour.green() < 60;
    }
  }
  return count;
}

}  // namespace

class CalendarTest : public QObject {
  Q_OBJECT

 private slots:
  void keysAndArrowsMoveTheShownDateAndTodayIsBlue() {
    fCalendar calendar(Date(1, 31, 2024), Date(11, 22, 2026));
    calendar.show();
    QWidget* month = testing::Control<QWidget>(calendar, "picMonth");

    // Table: the key and the date shown after it, from January 31st, 2024.
    const std::pair<Qt::Key, CivilDate> steps[] = {
        {Qt::Key_Right, Date(2, 1, 2024)}, {Qt::Key_Left, Date(1, 31, 2024)},  {Qt::Key_Down, Date(2, 7, 2024)},
        {Qt::Key_Up, Date(1, 31, 2024)},   {Qt::Key_Up, Date(1, 24, 2024)},    {Qt::Key_PageDown, Date(2, 24, 2024)},
        {Qt::Key_PageUp, Date(1, 24, 2024)}, {Qt::Key_PageUp, Date(12, 24, 2023)}};
    for (const auto& [key, date] : steps) {
      QTest::keyClick(month, key);
      QCOMPARE(calendar.ShownDate(), date);
    }
    QCOMPARE(Title(calendar), QStringLiteral("December 2023"));
    QVERIFY(!calendar.Chosen());
    QVERIFY(calendar.isVisible());

    QTest::keyClick(month, Qt::Key_Return);
    QVERIFY(!calendar.isVisible());
    QCOMPARE(calendar.Chosen(), std::optional<CivilDate>(Date(12, 24, 2023)));

    // The arrows beside the title step a month, keeping the day where it
    // can; Escape closes the calendar with no date chosen.
    fCalendar stepped(Date(3, 31, 2024), Date(11, 22, 2026));
    stepped.show();
    QTest::mouseClick(testing::Control<QWidget>(stepped, "lblPrev"), Qt::LeftButton);
    QCOMPARE(stepped.ShownDate(), Date(2, 29, 2024));
    QTest::mouseClick(testing::Control<QWidget>(stepped, "lblNext"), Qt::LeftButton);
    QTest::mouseClick(testing::Control<QWidget>(stepped, "lblNext"), Qt::LeftButton);
    QCOMPARE(stepped.ShownDate(), Date(4, 29, 2024));
    QCOMPARE(Title(stepped), QStringLiteral("April 2024"));
    // Today is blue only in its own month and year.
    stepped.SetShownDate(Date(11, 5, 2026));
    QVERIFY(BluePixels(stepped) > 5);
    stepped.SetShownDate(Date(11, 5, 2025));
    QCOMPARE(Title(stepped), QStringLiteral("November 2025"));
    QCOMPARE(BluePixels(stepped), 0);
    stepped.SetShownDate(Date(10, 22, 2026));  // same day number, another month
    QCOMPARE(BluePixels(stepped), 0);

    QTest::keyClick(testing::Control<QWidget>(stepped, "picMonth"), Qt::Key_Escape);
    QVERIFY(!stepped.isVisible());
    QCOMPARE(stepped.result(), int(QDialog::Rejected));
    QVERIFY(!stepped.Chosen());
  }

  // June 2024 starts on a Saturday, and its 30 days need six rows, Sunday
  // first: a click picks the day in the cell (column, row) under the
  // pointer, and the cells before the 1st pick nothing.
  void aClickPicksTheDayUnderThePointer() {
    const std::pair<QPoint, std::optional<CivilDate>> clicks[] = {
        {{0, 0}, std::nullopt},       {{6, 0}, Date(6, 1, 2024)},  {{0, 1}, Date(6, 2, 2024)},
        {{2, 3}, Date(6, 18, 2024)}, {{0, 5}, Date(6, 30, 2024)}};
    for (const auto& [cell, day] : clicks) {
      fCalendar calendar(Date(6, 10, 2024), Date(11, 22, 2026));
      calendar.show();
      const QPoint at(cell.x() * calendar.CellWidth() + calendar.CellWidth() / 3,
                      cell.y() * calendar.CellHeight() + calendar.CellHeight() / 2);
      QTest::mouseClick(testing::Control<QWidget>(calendar, "picMonth"), Qt::LeftButton, {}, at);
      QCOMPARE(calendar.Chosen(), day);
      QCOMPARE(calendar.isVisible(), !day);
    }
  }

  void pickDateAnswersInCaptionForm() {
    const CivilDate today = Date(11, 22, 2026);
    // Once the calendar is up: one day later, then the key.
    const auto pressWhenShown = [](Qt::Key key) {
      testing::WhenModalShows([key](QWidget& calendar) {
        QWidget* month = testing::Control<QWidget>(calendar, "picMonth");
        QTest::keyClick(month, Qt::Key_Right);
        QTest::keyClick(month, key);
      });
    };

    pressWhenShown(Qt::Key_Enter);
    QCOMPARE(fCalendar::PickDate(nullptr, "02/28/2024", today), std::optional<std::string>("02/29/2024"));
    // Not a date: the calendar opens on today.
    pressWhenShown(Qt::Key_Return);
    QCOMPARE(fCalendar::PickDate(nullptr, "no date", today), std::optional<std::string>("11/23/2026"));
    pressWhenShown(Qt::Key_Escape);
    QCOMPARE(fCalendar::PickDate(nullptr, "02/28/2024", today), std::optional<std::string>());
  }
};

QTEST_MAIN(CalendarTest)
#include "calendar_test.moc"
