// The daily call analysis of tab 1: calls of the period counted by day of the
// week and by hour of the day, printed as two tables and, with "Include
// Graph", a chart of calls per hour.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "data/log_buffer.h"
#include "data/record_selection.h"
#include "reports/chart_handover.h"
#include "reports/hour_labels.h"
#include "reports/matrix_cells.h"
#include "reports/report_form.h"
#include "support/date_format.h"
#include "support/runtime_error.h"
#include "support/whole_numbers.h"

namespace cw {

namespace {

// Right edges of the columns, in inches.
constexpr double kRowLabelX = 2.0;
constexpr double kInboundX = 3.125;
constexpr double kOutboundX = 4.375;
constexpr double kTotalX = 5.5;
constexpr double kHourTotalX = 6.8;
constexpr double WeekdayColumnX(int weekday) { return 2.0 + 0.6 * weekday; }

// Kinds of call, the day matrix's columns.
constexpr int kInbound = 1;
constexpr int kOutbound = 2;
constexpr int kAllCalls = 3;
// The hour matrix's column that holds the hour's total over all days.
constexpr int kHourTotal = 7;

// Progress is reported every so many records, never per record.
constexpr std::int64_t kProgressEvery = 4096;

}  // namespace

void ReportForm::Process_DailySummary() {
  try {
    matrices_.day = {};
    matrices_.hour = {};
    const LogBuffer log = LogBuffer::Load(environment_.logPath);
    SelectionCriteria criteria;
    criteria.from = fromDate_;
    criteria.to = toDate_;
    criteria.direction = request_.direction;
    RecordSelection selection(log.Text(), criteria);
    std::int64_t nextProgress = kProgressEvery;

    while (const std::optional<CallRecord> record = selection.Next()) {
      Build_CallMatrix(*record);

      if (selection.RecordsRead() >= nextProgress) {
        host_.Progress(static_cast<std::int64_t>(selection.BytesConsumed()),
                       static_cast<std::int64_t>(selection.BufferSize()));
        host_.DoEvents();
        nextProgress = selection.RecordsRead() + kProgressEvery;
      }
    }
    Print_DailySummary();
    EraseMatrices();
  } catch (const RuntimeError& error) {
    ShowError(error, "Process_DailySummary");
  }
}

void ReportForm::Build_CallMatrix(const CallRecord& record) {
  try {
    Matrices& m = matrices_;
    // A call logged without a direction is counted with the kind of the call
    // before it; before the first "In" or "Out" it counts in the totals only.
    const int kind = CallKind(record);
    m.lastKind = static_cast<std::int16_t>(kind != 0 ? kind : m.lastKind);
    const int weekday = CallWeekday(m, record);
    // The hour as the "h" format gives it.
    const int hour = CallHour(record);

    auto& day = m.day[static_cast<std::size_t>(weekday)];
    auto& hourRow = m.hour[static_cast<std::size_t>(hour)];
    const std::int32_t dayAll = SumInt32(day[kAllCalls], 1);
    const std::int32_t dayKind = SumInt32(day[static_cast<std::size_t>(m.lastKind)], 1);
    const std::int32_t hourDay = SumInt32(hourRow[static_cast<std::size_t>(weekday - 1)], 1);
    const std::int32_t hourAll = SumInt32(hourRow[kHourTotal], 1);
    day[kAllCalls] = dayAll;
    day[static_cast<std::size_t>(m.lastKind)] = dayKind;
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
    auto right = [&](double x, std::string_view text) { document.TextOut(RightAlignedX(x, text), text); };

    // Day of week.
    SetHeadingFont();
    document.TextOut(-1, "Day Of Week Summary");
    document.NewLine();
    right(kInboundX, "Inbound");
    right(kOutboundX, "Outbound");
    right(kTotalX, "Total");
    SetBodyFont();
    std::array<std::int32_t, 4> kindSums{};
    for (int weekday = 1; weekday <= 7; ++weekday) {
      const auto& day = m.day[static_cast<std::size_t>(weekday)];
      document.NewLine();
      right(kRowLabelX, WeekdayName(weekday, false));
      right(kInboundX, std::to_string(day[kInbound]));
      right(kOutboundX, std::to_string(day[kOutbound]));
      right(kTotalX, std::to_string(day[kAllCalls]));
      for (int kind = kInbound; kind <= kAllCalls; ++kind) {
        kindSums[static_cast<std::size_t>(kind)] =
            AddInt32(kindSums[static_cast<std::size_t>(kind)], day[static_cast<std::size_t>(kind)]);
      }
    }
    document.NewLine();
    SetHeadingFont();
    right(kRowLabelX, "Totals");
    right(kInboundX, std::to_string(kindSums[kInbound]));
    right(kOutboundX, std::to_string(kindSums[kOutbound]));
    right(kTotalX, std::to_string(kindSums[kAllCalls]));

    document.NewLine();
    document.NewLine();
    document.NewLine();

    // Time of day.
    SetHeadingFont();
    document.TextOut(-1, "Time Of Day Summary");
    document.NewLine();
    for (int weekday = 1; weekday <= 7; ++weekday) right(WeekdayColumnX(weekday), WeekdayName(weekday, true));
    right(kHourTotalX, "Total");
    SetBodyFont();
    for (int hour = 0; hour < 24; ++hour) {
      const auto& hourRow = m.hour[static_cast<std::size_t>(hour)];
      document.NewLine();
      right(kRowLabelX, HourLabel(hour));
      for (int weekday = 1; weekday <= 7; ++weekday) {
        right(WeekdayColumnX(weekday), std::to_string(hourRow[static_cast<std::size_t>(weekday - 1)]));
      }
      right(kHourTotalX, std::to_string(hourRow[kHourTotal]));
    }

    if (request_.chart) {
      // ImageOut puts the picture's top at the current line, which still holds
      // the last hour: one line down, and one blank line before the chart.
      document.NewLine();
      document.NewLine();
      std::array<std::int32_t, 24> perHour{};
      for (std::size_t hour = 0; hour < perHour.size(); ++hour) perHour[hour] = m.hour[hour][kHourTotal];
      chartFile = ChartBitmapPath(environment_.pathFolder, environment_.tempFolder);
      PlaceBarChart(document, host_, HourlyBarChart(perHour), chartFile, kDailyChartLeft);
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
