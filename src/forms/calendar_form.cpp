#include "forms/calendar_form.h"

#include <QFontMetrics>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QVBoxLayout>
#include <algorithm>

#include "forms/window_appearance.h"
#include "support/date_format.h"
#include "support/runtime_error.h"

namespace cw {

namespace {

constexpr int kColumns = 7;
constexpr int kGridRows = 6;  // the most a month needs
// The classic colour value 0xFF0000 in blue-green-red order: pure blue.
const QColor kTodayColour(0, 0, 255);

CivilDate FirstOfMonth(CivilDate date) { return CivilDate::FromYmd(date.Year(), date.Month(), 1); }

int DaysInMonth(CivilDate date) {
  const CivilDate first = FirstOfMonth(date);
  return CivilDate::FromYmd(first.Year(), first.Month() + 1, 1).Serial() - first.Serial();
}

}  // namespace

// ---------------------------------------------------------------------------
// The month grid

std::vector<CalendarCell> MonthGrid(CivilDate shown) {
  const int offset = FirstOfMonth(shown).Weekday() - 1;
  const int days = DaysInMonth(shown);
  std::vector<CalendarCell> cells;
  cells.reserve(static_cast<std::size_t>(days));
  for (int day = 1; day <= days; ++day) {
    const int index = offset + day - 1;
    cells.push_back({day, index % kColumns, index / kColumns});
  }
  return cells;
}

int MonthGridRows(CivilDate shown) { return MonthGrid(shown).back().row + 1; }

bool IsTodayCell(CivilDate shown, int day, CivilDate today) {
  return shown.Month() == today.Month() && shown.Year() == today.Year() && day == today.Day();
}

CivilDate AddMonths(CivilDate date, int months) {
  const CivilDate first = CivilDate::FromYmd(date.Year(), date.Month() + months, 1);
  return CivilDate::FromYmd(first.Year(), first.Month(), std::min(date.Day(), DaysInMonth(first)));
}

// ---------------------------------------------------------------------------
// picMonth and the arrows

MonthPicture::MonthPicture(fCalendar& calendar, QWidget* parent) : QWidget(parent), calendar_(calendar) {
  setObjectName(QStringLiteral("picMonth"));
  setFocusPolicy(Qt::StrongFocus);
  setAutoFillBackground(true);
  QPalette white = palette();
  white.setColor(QPalette::Window, Qt::white);
  setPalette(white);
}

void MonthPicture::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  calendar_.picMonth_Paint(painter);
}

void MonthPicture::keyPressEvent(QKeyEvent* event) {
  if (!calendar_.picMonth_KeyDown(event->key())) QWidget::keyPressEvent(event);
}

void MonthPicture::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    const QPoint at = event->position().toPoint();
    calendar_.picMonth_MouseDown(at.x(), at.y());
  }
}

ArrowLabel::ArrowLabel(bool pointsLeft, QWidget* parent) : QLabel(parent), pointsLeft_(pointsLeft) {
  setFixedSize(22, 22);
  setCursor(Qt::PointingHandCursor);
  setToolTip(pointsLeft ? QStringLiteral("Previous month") : QStringLiteral("Next month"));
}

void ArrowLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing, true);
  const QRectF box = QRectF(rect()).adjusted(6, 5, -6, -5);
  QPainterPath triangle;
  if (pointsLeft_) {
    triangle.moveTo(box.right(), box.top());
    triangle.lineTo(box.left(), box.center().y());
    triangle.lineTo(box.right(), box.bottom());
  } else {
    triangle.moveTo(box.left(), box.top());
    triangle.lineTo(box.right(), box.center().y());
    triangle.lineTo(box.left(), box.bottom());
  }
  triangle.closeSubpath();
  painter.fillPath(triangle, palette().color(QPalette::WindowText));
}

void ArrowLabel::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) emit clicked();
}

// ---------------------------------------------------------------------------
// fCalendar

fCalendar::fCalendar(CivilDate shown, CivilDate today, QWidget* parent)
    : QDialog(parent), shown_(shown), today_(today) {
  setObjectName(QStringLiteral("fCalendar"));
  setWindowTitle(QStringLiteral("Calendar"));
  setModal(true);

  lblPrev = new ArrowLabel(true, this);
  lblPrev->setObjectName(QStringLiteral("lblPrev"));
  lblNext = new ArrowLabel(false, this);
  lblNext->setObjectName(QStringLiteral("lblNext"));
  lblTitle = new QLabel(this);
  lblTitle->setObjectName(QStringLiteral("lblTitle"));
  lblTitle->setAlignment(Qt::AlignCenter);
  QFont titleFont = lblTitle->font();
  titleFont.setBold(true);
  lblTitle->setFont(titleFont);

  auto* weekdays = new QHBoxLayout;
  weekdays->setSpacing(0);
  for (int weekday = 1; weekday <= kColumns; ++weekday) {
    auto* name = new QLabel(QString::fromStdString(std::string(WeekdayName(weekday, true)).substr(0, 2)), this);
    name->setAlignment(Qt::AlignCenter);
    weekdays->addWidget(name, 1);
  }

  picMonth = new MonthPicture(*this, this);
  picMonth->setFixedSize(kColumns * 30, kGridRows * 22);

  auto* header = new QHBoxLayout;
  header->addWidget(lblPrev);
  header->addWidget(lblTitle, 1);
  header->addWidget(lblNext);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(header);
  layout->addLayout(weekdays);
  layout->addWidget(picMonth);
  layout->setSizeConstraint(QLayout::SetFixedSize);

  connect(lblPrev, &ArrowLabel::clicked, this, [this] { SetShownDate(AddMonths(shown_, -1)); });
  connect(lblNext, &ArrowLabel::clicked, this, [this] { SetShownDate(AddMonths(shown_, 1)); });

  ApplyWindowFont(this, GetWinVersion());
  lblTitle->setText(QString::fromStdString(FormatDate(shown_, "mmmm yyyy")));
  picMonth->setFocus();
}

std::optional<std::string> fCalendar::PickDate(QWidget* parent, const std::string& captionDate, CivilDate today) {
  CivilDate shown = today;
  if (!captionDate.empty()) {
    try {
      shown = ParseCaptionDate(captionDate);
    } catch (const RuntimeError&) {
      shown = today;  // not a date: the calendar opens on today
    }
  }
  fCalendar calendar(shown, today, parent);
  calendar.exec();
  if (!calendar.Chosen()) return std::nullopt;
  return FormatDate(*calendar.Chosen(), "mm/dd/yyyy");
}

void fCalendar::SetShownDate(CivilDate date) {
  shown_ = date;
  lblTitle->setText(QString::fromStdString(FormatDate(shown_, "mmmm yyyy")));
  picMonth->update();
}

int fCalendar::CellWidth() const { return picMonth->width() / kColumns; }

int fCalendar::CellHeight() const { return picMonth->height() / kGridRows; }

void fCalendar::picMonth_Paint(QPainter& painter) {
  painter.fillRect(picMonth->rect(), Qt::white);
  const int cellWidth = CellWidth();
  const int cellHeight = CellHeight();
  QFont plain = picMonth->font();
  plain.setBold(false);
  QFont bold = plain;
  bold.setBold(true);
  for (const CalendarCell& cell : MonthGrid(shown_)) {
    const int left = cell.column * cellWidth;
    const int top = cell.row * cellHeight;
    const bool today = IsTodayCell(shown_, cell.day, today_);
    painter.setFont(today ? bold : plain);
    painter.setPen(today ? kTodayColour : QColor(Qt::black));
    const QString text = QString::number(cell.day);
    const QFontMetrics metrics(painter.font());
    const int x = left + (cellWidth - metrics.horizontalAdvance(text)) / 2;
    const int y = top + (cellHeight - metrics.height()) / 2;
    painter.drawText(x, y + metrics.ascent(), text);
    // The shown date is framed, so that the keys can be followed.
    if (cell.day == shown_.Day()) {
      painter.setPen(QPen(QColor(128, 128, 128), 1, Qt::DotLine));
      painter.drawRect(left + 1, top + 1, cellWidth - 3, cellHeight - 3);
    }
  }
}

bool fCalendar::picMonth_KeyDown(int key) {
  switch (key) {
    case Qt::Key_Right: SetShownDate(shown_.AddDays(1)); break;
    case Qt::Key_Left: SetShownDate(shown_.AddDays(-1)); break;
    case Qt::Key_Down: SetShownDate(shown_.AddDays(7)); break;
    case Qt::Key_Up: SetShownDate(shown_.AddDays(-7)); break;
    case Qt::Key_PageDown: SetShownDate(AddMonths(shown_, 1)); break;
    case Qt::Key_PageUp: SetShownDate(AddMonths(shown_, -1)); break;
    case Qt::Key_Escape: reject(); break;
    case Qt::Key_Return:
    case Qt::Key_Enter: Choose(shown_); break;
    default: return false;
  }
  return true;
}

void fCalendar::picMonth_MouseDown(int x, int y) {
  const int cellWidth = CellWidth();
  const int cellHeight = CellHeight();
  if (x < 0 || y < 0 || cellWidth <= 0 || cellHeight <= 0) return;
  const int column = x / cellWidth;
  const int row = y / cellHeight;
  if (column >= kColumns) return;
  for (const CalendarCell& cell : MonthGrid(shown_)) {
    if (cell.column == column && cell.row == row) {
      Choose(CivilDate::FromYmd(shown_.Year(), shown_.Month(), cell.day));
      return;
    }
  }
}

void fCalendar::Choose(CivilDate date) {
  shown_ = date;
  chosen_ = date;
  accept();
}

}  // namespace cw
