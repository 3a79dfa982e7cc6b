// The all-lines-busy reports of tab 3: the occurrence listing ("Detailed")
// and the day-of-week and time-of-day summary ("Summary"), both read from the
// logging program's BusyLines.log rather than from the call log.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "data/log_buffer.h"
#include "data/log_conversions.h"
#include "data/record_selection.h"
#include "reports/busy_columns.h"
#include "reports/busy_log.h"
#include "reports/chart_handover.h"
#include "reports/hour_labels.h"
#include "reports/report_form.h"
#include "reports/seconds_to_text.h"
#include "support/date_format.h"
#include "support/runtime_error.h"
#include "support/time_text.h"
#include "support/whole_numbers.h"

namespace cw {

namespace {

// Right edges of the summary tables, as in the daily call analysis.
constexpr double kRowLabelX = 2.0;
constexpr double kOccurredX = 3.125;
constexpr double kDayDurationX = 4.375;
constexpr double kHourTotalX = 6.8;
constexpr double WeekdayColumnX(int weekday) { return 2.0 + 0.6 * weekday; }

// Progress is reported every so many lines, never per line.
constexpr std::int64_t kProgressEvery = 4096;

// The busy log is in time order like the call log and carries its date in
// the same first ten characters, so the call log's period test serves it:
// stop at the first line after To, take everything from the first line on or
// after From.
SelectionCriteria BusyPeriod(CivilDate from, CivilDate to) {
  SelectionCriteria criteria;
  criteria.from = from;
  criteria.to = to;
  criteria.direction = "InOut";
  return criteria;
}

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
    RecordSelection selection(log.Text(), BusyPeriod(fromDate_, toDate_));
    std::int32_t occurrences = 0;
    std::int32_t totalSeconds = 0;
    std::int64_t nextProgress = kProgressEvery;

    SetBodyFont();
    while (const std::optional<CallRecord> record = selection.Next()) {
      const std::string_view text = record->Text();
      BusyLine line;
      std::string start;
      std::string end;
      std::string duration;
      try {
        line = SplitBusyLine(text);
        start = FormatTime(ParseTimeText(line.start), "h:mmampm");
        end = FormatTime(ParseTimeText(line.end), "h:mmampm");
        const std::int32_t seconds = BusySeconds(line.seconds);
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

      if (selection.RecordsRead() >= nextProgress) {
        host_.Progress(static_cast<std::int64_t>(selection.BytesConsumed()),
                       static_cast<std::int64_t>(selection.BufferSize()));
        host_.DoEvents();
        nextProgress = selection.RecordsRead() + kProgressEvery;
      }
    }

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
    RecordSelection selection(log.Text(), BusyPeriod(fromDate_, toDate_));
    std::int64_t nextProgress = kProgressEvery;

    while (const std::optional<CallRecord> record = selection.Next()) {
      const std::string_view text = record->Text();
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

      if (selection.RecordsRead() >= nextProgress) {
        host_.Progress(static_cast<std::int64_t>(selection.BytesConsumed()),
                       static_cast<std::int64_t>(selection.BufferSize()));
        host_.DoEvents();
        nextProgress = selection.RecordsRead() + kProgressEvery;
      }
    }
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
    const int hour = ParseTimeText(start) / 3600;
    auto& day = matrices_.busyDay[weekday];
    auto& hourRow = matrices_.busyHour[hour];
    // Everything is worked out before anything is added, so an overflow
    // leaves the tables as they were.
    const std::int32_t dayCount = AddInt32(day[1], 1);
    const std::int32_t daySeconds = AddInt32(day[2], seconds);
    const std::int32_t hourCount = AddInt32(hourRow[weekday - 1], 1);
    const std::int32_t hourTotal = AddInt32(hourRow[7], 1);
    const std::int32_t hourSeconds = AddInt32(hourRow[8], seconds);
    day[1] = dayCount;
    day[2] = daySeconds;
    hourRow[weekday - 1] = hourCount;
    hourRow[7] = hourTotal;
    hourRow[8] = hourSeconds;
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

    // Day of week: occurrences and how long all lines were busy in total.
    SetHeadingFont();
    document.TextOut(-1, "All Lines Busy Day Of Week Summary");
    document.NewLine();
    document.TextOut(RightAlignedX(kOccurredX, "Occurred"), "Occurred");
    document.TextOut(RightAlignedX(kDayDurationX, "Duration"), "Duration");
    SetBodyFont();
    std::int32_t dayCountSum = 0;
    std::int32_t daySecondsSum = 0;
    for (int weekday = 1; weekday <= 7; ++weekday) {
      document.NewLine();
      const std::string_view name = WeekdayName(weekday, false);
      const std::string count = std::to_string(m.busyDay[weekday][1]);
      const std::string duration = SecondsToText(m.busyDay[weekday][2], true);
      document.TextOut(RightAlignedX(kRowLabelX, name), name);
      document.TextOut(RightAlignedX(kOccurredX, count), count);
      document.TextOut(RightAlignedX(kDayDurationX, duration), duration);
      dayCountSum = AddInt32(dayCountSum, m.busyDay[weekday][1]);
      daySecondsSum = AddInt32(daySecondsSum, m.busyDay[weekday][2]);
    }
    document.NewLine();
    SetHeadingFont();
    {
      const std::string count = std::to_string(dayCountSum);
      const std::string duration = SecondsToText(daySecondsSum, true);
      document.TextOut(RightAlignedX(kRowLabelX, "Totals"), "Totals");
      document.TextOut(RightAlignedX(kOccurredX, count), count);
      document.TextOut(RightAlignedX(kDayDurationX, duration), duration);
    }

    document.NewLine();
    document.NewLine();
    document.NewLine();

    // Time of day: occurrences by the hour at which all lines became busy.
    document.TextOut(-1, "All Lines Busy Time Of Day Summary");
    document.NewLine();
    for (int weekday = 1; weekday <= 7; ++weekday) {
      const std::string_view name = WeekdayName(weekday, true);
      document.TextOut(RightAlignedX(WeekdayColumnX(weekday), name), name);
    }
    document.TextOut(RightAlignedX(kHourTotalX, "Total"), "Total");
    SetBodyFont();
    std::array<std::int32_t, 8> columnSums{};
    for (int hour = 0; hour < 24; ++hour) {
      document.NewLine();
      const std::string label = HourLabel(hour);
      document.TextOut(RightAlignedX(kRowLabelX, label), label);
      for (int weekday = 1; weekday <= 7; ++weekday) {
        const std::int32_t value = m.busyHour[hour][weekday - 1];
        const std::string count = std::to_string(value);
        document.TextOut(RightAlignedX(WeekdayColumnX(weekday), count), count);
        columnSums[weekday - 1] = AddInt32(columnSums[weekday - 1], value);
      }
      const std::string total = std::to_string(m.busyHour[hour][7]);
      document.TextOut(RightAlignedX(kHourTotalX, total), total);
      columnSums[7] = AddInt32(columnSums[7], m.busyHour[hour][7]);
    }
    document.NewLine();
    SetHeadingFont();
    document.TextOut(RightAlignedX(kRowLabelX, "Totals"), "Totals");
    for (int weekday = 1; weekday <= 7; ++weekday) {
      const std::string count = std::to_string(columnSums[weekday - 1]);
      document.TextOut(RightAlignedX(WeekdayColumnX(weekday), count), count);
    }
    {
      const std::string total = std::to_string(columnSums[7]);
      document.TextOut(RightAlignedX(kHourTotalX, total), total);
    }

    if (request_.chart) {
      // One blank line between the totals and the chart: ImageOut places the
      // picture's top at the current line.
      document.NewLine();
      document.NewLine();
      std::array<std::int32_t, 24> perHour{};
      for (int hour = 0; hour < 24; ++hour) perHour[hour] = m.busyHour[hour][7];
      chartFile = ChartBitmapPath(environment_.pathFolder, environment_.tempFolder);
      PlaceBarChart(document, host_, HourlyBarChart(perHour), chartFile, kDailyChartLeft);
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
