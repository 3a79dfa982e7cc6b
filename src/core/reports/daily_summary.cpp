// The daily call analysis of tab 1: calls of the period counted by day of the
// week and by hour of the day, printed as two tables and, with "Include
// Graph", a chart of calls per hour.

#include <array>
#include <cstdint>
#include <string>

#include "data/log_buffer.h"
#include "data/record_selection.h"
#include "reports/chart_handover.h"
#include "reports/matrix_cells.h"
#include "reports/progress_interval.h"
#include "reports/report_form.h"
#include "reports/summary_tables.h"
#include "support/runtime_error.h"

namespace cw {

namespace {

// Kinds of call, the day matrix's columns.
constexpr int kInbound = 1;
constexpr int kOutbound = 2;
constexpr int kAllCalls = 3;
// The hour matrix's column that holds the hour's total over all days.
constexpr int kHourTotal = summary::kHourTotalCell;

// The day-of-week table: calls in, out and in all, per weekday.
constexpr std::array<summary::WeekdayColumn, 3> kDayColumns{{
    {summary::kFirstFigureX, "Inbound", kInbound},
    {summary::kSecondFigureX, "Outbound", kOutbound},
    {summary::kThirdFigureX, "Total", kAllCalls},
}};

}  // namespace

[[gnu::flatten]] void ReportForm::Process_DailySummary() {
  try {
    matrices_.day = {};
    matrices_.hour = {};
    const LogBuffer log = LogBuffer::Load(environment_.logPath);
    SelectionCriteria criteria;
    criteria.from = fromDate_;
    criteria.to = toDate_;
    criteria.direction = request_.direction;
    RecordSelection selection(log.Text(), criteria);
    selection.ForEach([this](const CallRecord& record, CivilDate date) { Build_CallMatrix(record, date); },
                      kProgressEvery,
                      SelectionProgress(host_, selection));
    Print_DailySummary();
    EraseMatrices();
  } catch (const RuntimeError& error) {
    ShowError(error, "Process_DailySummary");
  }
}

void ReportForm::Build_CallMatrix(const CallRecord& record, CivilDate date) {
  try {
    Matrices& m = matrices_;
    // A call logged without a direction is counted with the kind of the call
    // before it; before the first "In" or "Out" it counts in the totals only.
    const int kind = CallKind(record);
    const auto lastKind = static_cast<std::size_t>(kind != 0 ? kind : m.lastKind);
    m.lastKind = static_cast<std::int16_t>(lastKind);
    const int weekday = CallWeekday(m, date);
    // The hour as the "h" format gives it.
    const int hour = CallHour(record);

    auto& day = m.day[static_cast<std::size_t>(weekday)];
    auto& hourRow = m.hour[static_cast<std::size_t>(hour)];
    CellSums sums;
    const std::int32_t dayAll = sums.Add(day[kAllCalls], 1);
    const std::int32_t dayKind = sums.Add(day[lastKind], 1);
    const std::int32_t hourDay = sums.Add(hourRow[static_cast<std::size_t>(weekday - 1)], 1);
    const std::int32_t hourAll = sums.Add(hourRow[kHourTotal], 1);
    sums.Check();
    day[kAllCalls] = dayAll;
    day[lastKind] = dayKind;
    hourRow[static_cast<std::size_t>(weekday - 1)] = hourDay;
    hourRow[kHourTotal] = hourAll;
  } catch (RuntimeError& error) {
    error.SetProcessing(std::string(record.Text()));
    ShowError(error, "Build_CallMatrix");
  }
}

void ReportForm::Print_DailySummary() {
  OrlPrinter& document = *document_;
  std::string chartFile;  // set once a chart is asked for: deleted after the report
  try {
    const Matrices& m = matrices_;
    summary::TableWriter table(*this, document);
    table.WeekdayTable("Day Of Week Summary", m.day, kDayColumns);
    table.Gap();
    table.HourTable("Time Of Day Summary", m.hour, false);

    if (request_.chart) {
      // ImageOut puts the picture's top at the current line, which still holds
      // the last hour: one line down, and one blank line before the chart.
      document.NewLine();
      document.NewLine();
      chartFile = ChartBitmapPath(environment_.pathFolder, environment_.tempFolder);
      PlaceBarChart(document, host_, HourlyBarChart(summary::HourTotals(m.hour)), chartFile, kDailyChartLeft);
    }

    document.EndDoc();
    document.PreviewReport();
    document.DestroyReport();
  } catch (const RuntimeError& error) {
    ShowError(error, "Print_DailySummary");
  }
  if (!chartFile.empty()) DeleteChartBitmap(chartFile);
}

}  // namespace cw
