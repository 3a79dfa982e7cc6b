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
  void monthGridPlacesDaysSundayFirst() {
    // June 2024 starts on a Saturday: its 30 days need six rows.
    const std::vector<CalendarCell> june = MonthGrid(Date(6, 15, 2024));
    QCOMPARE(june.size(), std::size_t{30});
    QCOMPARE(june.front().column, 6);
    QCOMPARE(june.front().row, 0);
    QCOMPARE(june[1].column, 0);  // the 2nd, a Sunday, opens the next row
    QCOMPARE(june[1].row, 1);
    QCOMPARE(june.back().column, 0);
    QCOMPARE(june.back().row, 5);
    QCOMPARE(MonthGridRows(Date(6, 1, 2024)), 6);
    // February 2015: 28 days from a Sunday fill exactly four rows.
    QCOMPARE(MonthGridRows(Date(2, 10, 2015)), 4);
    QCOMPARE(MonthGrid(Date(2, 1, 2015)).back().column, 6);
  }

  void todayIsBlueOnlyInTheCurrentMonthAndYear() {
    fCalendar calendar(Date(11, 5, 2026), Date(11, 22, 2026));
    calendar.show();
    QCOMPARE(Title(calendar), QStringLiteral("November 2026"));
    QVERIFY(BluePixels(calendar) > 5);
    calendar.SetShownDate(Date(11, 5, 2025));  // same month, another year
    QCOMPARE(Title(calendar), QStringLiteral("November 2025"));
    QCOMPARE(BluePixels(calendar), 0);
    calendar.SetShownDate(Date(10, 22, 2026));  // same day number, another month
    QCOMPARE(BluePixels(calendar), 0);
  }

  void keysAndArrowsMoveTheShownDate() {
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

    fCalendar closed(Date(5, 5, 2024), Date(11, 22, 2026));
    closed.show();
    QTest::keyClick(testing::Control<QWidget>(closed, "picMonth"), Qt::Key_Escape);
    QVERIFY(!closed.isVisible());
    QCOMPARE(closed.result(), int(QDialog::Rejected));
    QVERIFY(!closed.Chosen());

    // The arrows beside the title step a month, keeping the day where it can.
    fCalendar stepped(Date(3, 31, 2024), Date(11, 22, 2026));
    stepped.show();
    QTest::mouseClick(testing::Control<QWidget>(stepped, "lblPrev"), Qt::LeftButton);
    QCOMPARE(stepped.ShownDate(), Date(2, 29, 2024));
    QTest::mouseClick(testing::Control<QWidget>(stepped, "lblNext"), Qt::LeftButton);
    QTest::mouseClick(testing::Control<QWidget>(stepped, "lblNext"), Qt::LeftButton);
    QCOMPARE(stepped.ShownDate(), Date(4, 29, 2024));
    QCOMPARE(Title(stepped), QStringLiteral("April 2024"));
  }

  void aClickPicksTheDayUnderThePointer() {
    // June 2024: the 1st is in the last column of the first row, the 18th a
    // Tuesday in the fourth row.
    fCalendar calendar(Date(6, 10, 2024), Date(11, 22, 2026));
    calendar.show();
    QWidget* month = testing::Control<QWidget>(calendar, "picMonth");
    const int w = calendar.CellWidth();
    const int h = calendar.CellHeight();
    QVERIFY(w > 0 && h > 0);

    // The empty cells before the 1st pick nothing.
    QTest::mouseClick(month, Qt::LeftButton, {}, QPoint(w / 2, h / 2));
    QVERIFY(calendar.isVisible());
    QVERIFY(!calendar.Chosen());

    QTest::mouseClick(month, Qt::LeftButton, {}, QPoint(2 * w + w / 3, 3 * h + h / 2));
    QVERIFY(!calendar.isVisible());
    QCOMPARE(calendar.Chosen(), std::optional<CivilDate>(Date(6, 18, 2024)));
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
