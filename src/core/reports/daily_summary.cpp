// The daily call analysis of tab 1: calls of the period counted by day of the
// week and by hour of the day, printed as two tables and, with "Include
// Graph", a chart of calls per hour.

#include <array>
#include <cstdint>
#include <string>

#include "data/log_buffer.h"
#include "data/record_decoder.h"
#include "data/record_selection.h"
#include "reports/chart_handover.h"
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
    RecordSelection selection(log.Text(), PeriodCriteria(request_.direction, environment_.logPath));
    CallHourRun run;
    selection.ForEach([&](const CallRecord& record, CivilDate date) { Build_CallMatrix(record, date, run); },
                      kProgressEvery, SelectionProgress(host_, selection));
    AddCallRun(run);
    Print_DailySummary();
    EraseMatrices();
  } catch (const RuntimeError& error) {
    ShowError(error, "Process_DailySummary");
  }
}

void ReportForm::Build_CallMatrix(const CallRecord& record, CivilDate date, CallHourRun& run) {
  try {
    const DecodedRecord call(record);
    // A call logged without a direction is counted with the kind of the call
    // before it; before the first "In" or "Out" it counts in the totals only.
    const int kind = call.Kind();
    if (kind != kNoKind) run.lastKind = kind;
    // The hour as the "h" format gives it.
    const int hour = call.Hour();
    if (date != run.date || hour != run.hour) {
      AddCallRun(run);
      run.date = date;
      run.weekday = date.Weekday();
      run.hour = hour;
    }
    ++run.calls;
    ++run.ofKind[static_cast<std::size_t>(run.lastKind)];
  } catch (RuntimeError& error) {
    error.SetProcessing(std::string(record.Text()));
    ShowError(error, "Build_CallMatrix");
  }
}

void ReportForm::AddCallRun(CallHourRun& run) {
  if (run.calls == 0) return;
  // Counts cannot outgrow 32 bits: a log holds fewer than 2^31 calls
  // (GetRecord refuses one of 2^31 bytes or more, and a call takes at least
  // three: a character, CR and LF).
  auto& day = matrices_.day[static_cast<std::size_t>(run.weekday)];
  auto& hourRow = matrices_.hour[static_cast<std::size_t>(run.hour)];
  day[kAllCalls] += run.calls;
  day[kInbound] += run.ofKind[kInCall];
  day[kOutbound] += run.ofKind[kOutCall];
  hourRow[static_cast<std::size_t>(run.weekday - 1)] += run.calls;
  hourRow[kHourTotal] += run.calls;
  run.calls = 0;
  run.ofKind = {};
}

void ReportForm::Print_DailySummary() {
  OrlPrinter& document = *document_;
  std::string chartFile;  // set once a chart is asked for: deleted after the report
  try {
    const Matrices& m = matrices_;
    summary::TableWriter table(*this, document);
    constexpr std::string_view kDayFigures[] = {"Inbound", "Outbound", "Total"};
    data_->Begin(summary::TableDataColumns(kDayFigures, summary::kHourTableFigures));
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
