#pragma once
// fCalendar: the date picker that the From and To buttons of the report form
// open. One month is painted as a grid of day numbers on picMonth (Sunday
// first), today in bold blue when the current month is on display; the arrow
// labels and Page Up / Page Down step a month, the arrow keys a day or a week,
// Enter or a click on a day chooses, Escape closes without a choice.

#include <QDialog>
#include <QLabel>
#include <optional>
#include <string>
#include <vector>

#include "support/civil_date.h"

namespace cw {

// One day of the month grid.
struct CalendarCell {
  int day = 0;
  int column = 0;  // 0 = Sunday
  int row = 0;
};

// The days of the shown date's month in their cells.
std::vector<CalendarCell> MonthGrid(CivilDate shown);
// Rows the month needs (4 to 6).
int MonthGridRows(CivilDate shown);
// True when `day` of the shown month is today: only in the current month of
// the current year.
bool IsTodayCell(CivilDate shown, int day, CivilDate today);
// The same day `months` months away, the day cut back to the end of a
// shorter month (Jan 31 + 1 month = Feb 29 in a leap year).
CivilDate AddMonths(CivilDate date, int months);

class fCalendar;

// picMonth: the surface the month is painted on; keys and clicks go to the
// calendar.
class MonthPicture : public QWidget {
  Q_OBJECT

 public:
  explicit MonthPicture(fCalendar& calendar, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  fCalendar& calendar_;
};

// lblPrev / lblNext: a painted triangle pointing left or right.
class ArrowLabel : public QLabel {
  Q_OBJECT

 public:
  ArrowLabel(bool pointsLeft, QWidget* parent);

 signals:
  void clicked();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  bool pointsLeft_;
};

class fCalendar : public QDialog {
  Q_OBJECT

 public:
  // shown: the date whose month opens; today: the date drawn in bold blue.
  fCalendar(CivilDate shown, CivilDate today, QWidget* parent = nullptr);

  // Opens the calendar on the caption's date ("mm/dd/yyyy"; today when the
  // caption is empty or not a date) and returns the chosen date as
  // "mm/dd/yyyy", or nothing when it was closed without a choice.
  static std::optional<std::string> PickDate(QWidget* parent, const std::string& captionDate, CivilDate today);

  CivilDate ShownDate() const { return shown_; }
  void SetShownDate(CivilDate date);
  // The date chosen with Enter or a click; empty until then.
  std::optional<CivilDate> Chosen() const { return chosen_; }

  // Cell size in picMonth's pixels: a seventh of its width, a sixth of its height.
  int CellWidth() const;
  int CellHeight() const;

  // The month painted onto picMonth.
  void picMonth_Paint(QPainter& painter);
  // Key-down on picMonth; true when the key was one of the calendar's.
  bool picMonth_KeyDown(int key);
  // A press on picMonth at (x, y): chooses the day in that cell, if any.
  void picMonth_MouseDown(int x, int y);

 private:
  void Choose(CivilDate date);

  CivilDate shown_;
  CivilDate today_;
  std::optional<CivilDate> chosen_;
  QLabel* lblTitle;
  ArrowLabel* lblPrev;
  ArrowLabel* lblNext;
  MonthPicture* picMonth;
};

}  // namespace cw
