#pragma once
// The weekday and hour tables of the summary reports (daily call analysis,
// line usage summary, all-lines-busy summary): where their columns end, and
// how a table is written on the report form's document. Every figure and
// every column heading is right-aligned so that it ends at its column.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <string>
#include <type_traits>
#include <vector>

#include "printer/orl_printer.h"
#include "reports/report_form.h"

namespace cw::summary {

// Right ends of the columns, in inches: the row labels (weekday names, hour
// texts), the first three figures of a weekday table, and the hour's total.
inline constexpr double kRowLabelX = 2.0;
inline constexpr double kFirstFigureX = 3.125;
inline constexpr double kSecondFigureX = 4.375;
inline constexpr double kThirdFigureX = 5.5;
inline constexpr double kHourTotalX = 6.8;
// The weekday columns (1 = Sunday) of the time-of-day tables and of the line
// usage heading on later pages.
constexpr double WeekdayColumnX(int weekday) { return 2.0 + 0.6 * weekday; }

// The day and hour matrices of the daily analysis and the busy summary have
// one shape: a row per weekday with its figures from cell 1, and a row per
// hour with the weekdays in cells 0..6 and their total in cell 7.
using WeekdayRows = decltype(ReportForm::Matrices::day);
using HourRows = decltype(ReportForm::Matrices::hour);
static_assert(std::is_same_v<WeekdayRows, decltype(ReportForm::Matrices::busyDay)>);
static_assert(std::is_same_v<HourRows, decltype(ReportForm::Matrices::busyHour)>);
inline constexpr int kHourTotalCell = 7;
inline constexpr std::string_view kHourTotalHeading = "Total";

// The header of the data of a report made of two tables: the table, the kind
// of row and its label, then the figure columns of both tables (a heading
// the two share is one column).
std::vector<std::string> TableDataColumns(std::span<const std::string_view> first,
                                          std::span<const std::string_view> second);
// The weekday abbreviations and "Total": an hour table's figure columns.
inline constexpr std::array<std::string_view, 8> kHourTableFigures{"Sun", "Mon", "Tue", "Wed",
                                                                  "Thu", "Fri", "Sat", kHourTotalHeading};

// The hour totals (cell 7 of every hour row), as the hourly chart takes them.
std::array<std::int32_t, 24> HourTotals(const HourRows& hours);

// One figure column of a weekday table: where it ends, its heading, the cell
// of the weekday row it shows, and whether that cell holds seconds (written
// as a duration, "m:ss" under an hour) rather than a count.
struct WeekdayColumn {
  double x = 0;
  std::string_view heading;
  std::size_t cell = 0;
  bool seconds = false;
};

class TableWriter {
 public:
  TableWriter(ReportForm& form, OrlPrinter& document) : form_(form), document_(document) {}

  // The text in the current font, ending at x.
  void Right(double x, std::string_view text);
  // A table's title, centred in the heading font; the next line is begun.
  void Title(std::string_view title);
  // "Sun" .. "Sat", each ending at its column.
  void WeekdayHeadings(double (*columnX)(int weekday));
  // The blank lines between two tables.
  void Gap();

  // Title and column headings, a row per weekday under its full name, and a
  // "Totals" row in the heading font with each column's sum (error 6 when a
  // sum outgrows 32 bits). The rows go to the report's data as well, under
  // the columns' headings.
  void WeekdayTable(std::string_view title, const WeekdayRows& days, std::span<const WeekdayColumn> columns);
  // Title and weekday headings with "Total", a row per hour 0..23, and with
  // totalsRow a "Totals" row in the heading font with the sum of every column
  // (error 6 when a sum outgrows 32 bits). The rows go to the report's data
  // as well, under kHourTableFigures.
  void HourTable(std::string_view title, const HourRows& hours, bool totalsRow);

 private:
  ReportForm& form_;
  OrlPrinter& document_;
};

}  // namespace cw::summary
