#include "reports/summary_tables.h"

#include <algorithm>
#include <string>
#include <vector>

#include "reports/detail_rules.h"
#include "reports/hour_labels.h"
#include "reports/report_data.h"
#include "reports/seconds_to_text.h"
#include "support/date_format.h"
#include "support/whole_numbers.h"

namespace cw::summary {

namespace {

std::string Figure(std::int32_t value, bool seconds) {
  return seconds ? SecondsToText(value, true) : std::to_string(value);
}

// The same figure in the data: a duration as h:mm:ss whatever its length.
std::string DataFigure(std::int32_t value, bool seconds) {
  return seconds ? TotalDurationText(value) : std::to_string(value);
}

DataRow TableRow(const ReportData& data, std::string_view title, std::string_view kind, std::string_view label) {
  DataRow row(data);
  row.Set(kTableColumn, std::string(title)).Set(kKindColumn, std::string(kind)).Set(kRowColumn, std::string(label));
  return row;
}

}  // namespace

std::vector<std::string> TableDataColumns(std::span<const std::string_view> first,
                                          std::span<const std::string_view> second) {
  std::vector<std::string> columns{std::string(kTableColumn), std::string(kKindColumn), std::string(kRowColumn)};
  for (const auto figures : {first, second}) {
    for (std::string_view figure : figures) {
      if (std::find(columns.begin(), columns.end(), figure) == columns.end()) columns.emplace_back(figure);
    }
  }
  return columns;
}

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
  ReportData& data = form_.Data();
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
    if (data.Keeping()) {
      DataRow row = TableRow(data, title, kDataRow, WeekdayName(weekday, false));
      for (const WeekdayColumn& column : columns) {
        row.Set(column.heading, DataFigure(day[column.cell], column.seconds));
      }
      data.AddRow(row.Cells());
    }
  }
  document_.NewLine();
  form_.SetHeadingFont();
  Right(kRowLabelX, "Totals");
  for (std::size_t i = 0; i < columns.size(); ++i) Right(columns[i].x, Figure(sums[i], columns[i].seconds));
  if (data.Keeping()) {
    DataRow row = TableRow(data, title, kTotalsRow, "Totals");
    for (std::size_t i = 0; i < columns.size(); ++i) row.Set(columns[i].heading, DataFigure(sums[i], columns[i].seconds));
    data.AddRow(row.Cells());
  }
}

void TableWriter::HourTable(std::string_view title, const HourRows& hours, bool totalsRow) {
  ReportData& data = form_.Data();
  // The data names an hour by its start on the 24-hour clock.
  auto dataRow = [&](std::string_view kind, std::string_view label, const auto& cells) {
    if (!data.Keeping()) return;
    DataRow row = TableRow(data, title, kind, label);
    for (int weekday = 1; weekday <= 7; ++weekday) {
      row.Set(WeekdayName(weekday, true), std::to_string(cells[static_cast<std::size_t>(weekday - 1)]));
    }
    row.Set(kHourTotalHeading, std::to_string(cells[kHourTotalCell]));
    data.AddRow(row.Cells());
  };
  Title(title);
  WeekdayHeadings(WeekdayColumnX);
  Right(kHourTotalX, kHourTotalHeading);
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
    dataRow(kDataRow, DataTime(hour * 3600), row);
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
  dataRow(kTotalsRow, "Totals", sums);
}

}  // namespace cw::summary
