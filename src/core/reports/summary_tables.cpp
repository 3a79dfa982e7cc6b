#include "reports/summary_tables.h"

#include <string>
#include <vector>

#include "reports/hour_labels.h"
#include "reports/seconds_to_text.h"
#include "support/date_format.h"
#include "support/whole_numbers.h"

namespace cw::summary {

namespace {

std::string Figure(std::int32_t value, bool seconds) {
  return seconds ? SecondsToText(value, true) : std::to_string(value);
}

}  // namespace

std::array<std::int32_t, 24> HourTotals(const HourRows& hours) {
  std::array<std::int32_t, 24> totals{};
  for (std::size_t hour = 0; hour < totals.size(); ++hour) totals[hour] = hours[hour][kHourTotalCell];
  return totals;
}

void TableWriter::Right(double x, std::string_view text) { document_.TextOut(form_.RightAlignedX(x, text), text); }

void TableWriter::Title(std::string_view title) {
  form_.SetHeadingFont();
  document_.TextOut(-1, title);
  document_.NewLine();
}

void TableWriter::WeekdayHeadings(double (*columnX)(int weekday)) {
  for (int weekday = 1; weekday <= 7; ++weekday) Right(columnX(weekday), WeekdayName(weekday, true));
}

void TableWriter::Gap() {
  document_.NewLine();
  document_.NewLine();
  document_.NewLine();
}

void TableWriter::WeekdayTable(std::string_view title, const WeekdayRows& days,
                               std::span<const WeekdayColumn> columns) {
  Title(title);
  for (const WeekdayColumn& column : columns) Right(column.x, column.heading);
  form_.SetBodyFont();
  std::vector<std::int32_t> sums(columns.size(), 0);
  for (int weekday = 1; weekday <= 7; ++weekday) {
    const auto& day = days[static_cast<std::size_t>(weekday)];
    document_.NewLine();
    Right(kRowLabelX, WeekdayName(weekday, false));
    for (const WeekdayColumn& column : columns) Right(column.x, Figure(day[column.cell], column.seconds));
    for (std::size_t i = 0; i < columns.size(); ++i) sums[i] = AddInt32(sums[i], day[columns[i].cell]);
  }
  document_.NewLine();
  form_.SetHeadingFont();
  Right(kRowLabelX, "Totals");
  for (std::size_t i = 0; i < columns.size(); ++i) Right(columns[i].x, Figure(sums[i], columns[i].seconds));
}

void TableWriter::HourTable(std::string_view title, const HourRows& hours, bool totalsRow) {
  Title(title);
  WeekdayHeadings(WeekdayColumnX);
  Right(kHourTotalX, "Total");
  form_.SetBodyFont();
  // Cells 0..6 are the weekdays, 7 the hour's total.
  std::array<std::int32_t, kHourTotalCell + 1> sums{};
  for (int hour = 0; hour < 24; ++hour) {
    const auto& row = hours[static_cast<std::size_t>(hour)];
    document_.NewLine();
    Right(kRowLabelX, HourLabel(hour));
    for (int weekday = 1; weekday <= 7; ++weekday) {
      Right(WeekdayColumnX(weekday), std::to_string(row[static_cast<std::size_t>(weekday - 1)]));
    }
    Right(kHourTotalX, std::to_string(row[kHourTotalCell]));
    if (totalsRow) {
      for (std::size_t cell = 0; cell < sums.size(); ++cell) sums[cell] = AddInt32(sums[cell], row[cell]);
    }
  }
  if (!totalsRow) return;
  document_.NewLine();
  form_.SetHeadingFont();
  Right(kRowLabelX, "Totals");
  for (int weekday = 1; weekday <= 7; ++weekday) {
    Right(WeekdayColumnX(weekday), std::to_string(sums[static_cast<std::size_t>(weekday - 1)]));
  }
  Right(kHourTotalX, std::to_string(sums[kHourTotalCell]));
}

}  // namespace cw::summary
