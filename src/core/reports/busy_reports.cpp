// The all-lines-busy reports of tab 3: the occurrence listing ("Detailed")
// and the day-of-week and time-of-day summary ("Summary"), both read from the
// logging program's BusyLines.log rather than from the call log.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "data/log_buffer.h"
#include "data/log_conversions.h"
#include "data/record_selection.h"
#include "reports/busy_columns.h"
#include "reports/busy_log.h"
#include "reports/chart_handover.h"
#include "reports/detail_rules.h"
#include "reports/progress_interval.h"
#include "reports/report_form.h"
#include "reports/seconds_to_text.h"
#include "reports/summary_tables.h"
#include "support/date_format.h"
#include "support/runtime_error.h"
#include "support/time_text.h"
#include "support/whole_numbers.h"

namespace cw {

namespace {

// Columns of the busy matrices: the day matrix counts occurrences and their
// seconds per weekday; the hour matrix counts occurrences per weekday
// (weekday - 1), their total over the week, and their seconds.
constexpr int kOccurred = 1;
constexpr int kSeconds = 2;
constexpr int kHourTotal = summary::kHourTotalCell;
constexpr int kHourSeconds = 8;

// The day-of-week table: how often all lines were busy, and for how long in
// all, in the columns of the daily call analysis's first two figures.
constexpr std::array<summary::WeekdayColumn, 2> kDayColumns{{
    {summary::kFirstFigureX, "Occurred", kOccurred},
    {summary::kSecondFigureX, "Duration", kSeconds, true},
}};

// The busy log is in time order like the call log and carries its date in
// the same first ten characters, so the call log's period test serves it:
// stop at the first line after To, take everything from the first line on or
// after From.
constexpr std::string_view kEveryDirection = "InOut";

// Attaches the line being worked on to an error, so that the box shows which
// line of the busy log is wrong.
[[noreturn]] void RethrowWithLine(RuntimeError& error, std::string_view line) {
  if (error.Processing().empty()) error.SetProcessing(std::string(line));
  throw;
}

}  // namespace

void ReportForm::Print_BusyReport() {
  OrlPrinter& document = *document_;
  try {
    const LogBuffer log = LoadBusyLog(environment_.pathFolder);
    RecordSelection selection(log.Text(), PeriodCriteria(kEveryDirection, kBusyLogName));
    std::int32_t occurrences = 0;
    std::int32_t totalSeconds = 0;

    SetBodyFont();
    ReportData& data = *data_;
    data.Begin({"Date", "Start Time", "End Time", "Duration", "Seconds", "Lines"});
    selection.ForEach(
        [&](const CallRecord& record, CivilDate date) {
          const std::string_view text = record.Text();
          BusyLine line;
          std::string start;
          std::string end;
          std::string duration;
          TimeOfDay startClock = 0;
          TimeOfDay endClock = 0;
          std::int32_t seconds = 0;
          try {
            line = SplitBusyLine(text);
            startClock = ParseTimeText(line.start);
            endClock = ParseTimeText(line.end);
            start = FormatTime(startClock, "h:mmampm");
            end = FormatTime(endClock, "h:mmampm");
            seconds = BusySeconds(line.seconds);
            duration = SecondsToText(seconds, true);
            occurrences = AddInt32(occurrences, 1);
            totalSeconds = AddInt32(totalSeconds, seconds);
          } catch (RuntimeError& error) {
            RethrowWithLine(error, text);
          }
          document.TextOut(busy::kDateX, line.date);
          document.TextOut(RightAlignedX(busy::kStartTimeX, start), start);
          document.TextOut(RightAlignedX(busy::kEndTimeX, end), end);
          document.TextOut(RightAlignedX(busy::kDurationX, duration), duration);
          document.TextOut(RightAlignedX(busy::kLinesX, line.lines), line.lines);
          document.NewLine();
          if (data.Keeping()) {
            const std::string cells[] = {DataDate(date),           DataTime(startClock),   DataTime(endClock),
                                         TotalDurationText(seconds), std::to_string(seconds), std::string(line.lines)};
            data.AddRow(cells);
          }
        },
        kProgressEvery, SelectionProgress(host_, selection));

    // One blank line, then the totals with their headings above them.
    document.NewLine();
    document.NewLine();
    SetHeadingFont();
    document.TextOut(RightAlignedX(busy::kOccurrencesX, "Occurrences"), "Occurrences");
    document.TextOut(RightAlignedX(busy::kTotalDurationX, "Duration"), "Duration");
    SetBodyFont();
    document.NewLine();
    const std::string count = std::to_string(occurrences);
    const std::string total = SecondsToText(totalSeconds, true);
    document.TextOut(RightAlignedX(busy::kOccurrencesX, count), count);
    document.TextOut(RightAlignedX(busy::kTotalDurationX, total), total);

    document.EndDoc();
    document.PreviewReport();
    document.DestroyReport();
  } catch (const RuntimeError& error) {
    ShowError(error, "Print_BusyReport");
  }
}

void ReportForm::Process_BusySummary() {
  try {
    matrices_.busyDay = {};
    matrices_.busyHour = {};
    const LogBuffer log = LoadBusyLog(environment_.pathFolder);
    RecordSelection selection(log.Text(), PeriodCriteria(kEveryDirection, kBusyLogName));
    selection.ForEach(
        [&](const CallRecord& record, CivilDate) {
          const std::string_view text = record.Text();
          BusyLine line;
          std::int32_t seconds = 0;
          try {
            line = SplitBusyLine(text);
            seconds = BusySeconds(line.seconds);
          } catch (RuntimeError& error) {
            RethrowWithLine(error, text);
          }
          processingRecord_ = text;
          Build_BusyMatrix(line.date, line.start, seconds);
        },
        kProgressEvery, SelectionProgress(host_, selection));
    processingRecord_ = {};
    Print_BusySummary();
  } catch (const RuntimeError& error) {
    processingRecord_ = {};
    ShowError(error, "Process_BusySummary");
  }
}

void ReportForm::Build_BusyMatrix(std::string_view date, std::string_view start,
                                  std::int32_t seconds) {
  try {
    const int weekday = ParseLogDate(date).Weekday();
    // The hour at which all lines became busy, as the "h" format gives it.
    const int hour = ParseTimeText(start) / 3600;
    auto& day = matrices_.busyDay[weekday];
    auto& hourRow = matrices_.busyHour[hour];
    // Everything is worked out before anything is added, so an overflow
    // leaves the tables as they were.
    const std::int32_t dayCount = AddInt32(day[kOccurred], 1);
    const std::int32_t daySeconds = AddInt32(day[kSeconds], seconds);
    const std::int32_t hourCount = AddInt32(hourRow[weekday - 1], 1);
    const std::int32_t hourTotal = AddInt32(hourRow[kHourTotal], 1);
    const std::int32_t hourSeconds = AddInt32(hourRow[kHourSeconds], seconds);
    day[kOccurred] = dayCount;
    day[kSeconds] = daySeconds;
    hourRow[weekday - 1] = hourCount;
    hourRow[kHourTotal] = hourTotal;
    hourRow[kHourSeconds] = hourSeconds;
  } catch (RuntimeError& error) {
    error.SetProcessing(std::string(processingRecord_));
    ShowError(error, "Build_BusyMatrix");
  }
}

void ReportForm::Print_BusySummary() {
  OrlPrinter& document = *document_;
  std::string chartFile;  // the bitmap to delete after the report, once one was asked for
  try {
    const Matrices& m = matrices_;
    summary::TableWriter table(*this, document);
    constexpr std::string_view kDayFigures[] = {"Occurred", "Duration"};
    data_->Begin(summary::TableDataColumns(kDayFigures, summary::kHourTableFigures));
    table.WeekdayTable("All Lines Busy Day Of Week Summary", m.busyDay, kDayColumns);
    table.Gap();
    // Time of day: occurrences by the hour at which all lines became busy,
    // with a totals row so that the table can be checked against the first.
    table.HourTable("All Lines Busy Time Of Day Summary", m.busyHour, true);

    if (request_.chart) {
      // ImageOut puts the picture's top at the current line, which still
      // holds the totals: one line down, and one blank line before the chart.
      document.NewLine();
      document.NewLine();
      chartFile = ChartBitmapPath(environment_.pathFolder, environment_.tempFolder);
      PlaceBarChart(document, host_, HourlyBarChart(summary::HourTotals(m.busyHour)), chartFile, kDailyChartLeft);
    }

    document.EndDoc();
    document.PreviewReport();
    document.DestroyReport();
  } catch (const RuntimeError& error) {
    ShowError(error, "Print_BusySummary");
  }
  if (!chartFile.empty()) DeleteChartBitmap(chartFile);
}

}  // namespace cw
