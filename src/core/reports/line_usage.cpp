// The line usage summary of tab 2: per telephone line, the calls in and out
// and the time the line was in use, as totals and by day of the week, with
// "Include Graph" a chart of calls per line.

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "data/log_buffer.h"
#include "data/log_conversions.h"
#include "data/record_decoder.h"
#include "data/record_selection.h"
#include "reports/chart_handover.h"
#include "reports/detail_rules.h"
#include "reports/progress_interval.h"
#include "reports/report_form.h"
#include "reports/seconds_to_text.h"
#include "reports/summary_tables.h"
#include "support/runtime_error.h"
#include "support/whole_numbers.h"

namespace cw {

namespace {

// Columns of the totals matrix.
constexpr std::size_t kInbound = 1;
constexpr std::size_t kOutbound = 2;
constexpr std::size_t kAllCalls = 3;
constexpr std::size_t kSeconds = 4;
// Columns of the week matrix after the seven weekdays.
constexpr std::size_t kWeekCalls = 8;
constexpr std::size_t kWeekSeconds = 9;

// Positions, in inches: row labels start at 1.5, values end at their column;
// the calls end where the daily call analysis's figures do. The weekday
// columns are wider than the other reports' (summary::WeekdayColumnX); the
// two spacings have always differed.
constexpr double kRowLabelX = 1.5;
constexpr double kInboundX = summary::kFirstFigureX;
constexpr double kOutboundX = summary::kSecondFigureX;
constexpr double kTotalCallsX = summary::kThirdFigureX;
constexpr double kTotalTimeX = 6.5;
constexpr double WeekdayColumnX(int weekday) { return 2.0 + 0.7 * weekday; }

// Up to this many lines the tables leave room for the chart on the first
// page; from 17 lines on the chart goes to a new page when the tables end low.
constexpr int kLinesForChartPage = 17;
constexpr double kChartPageLimitY = 8.5;
// Below 16 lines the totals table starts one line lower.
constexpr int kLinesForExtraLine = 16;

// Durations in this report are written "m:ss" under an hour.
constexpr bool kShortMinutes = true;

}  // namespace

void ReportForm::Process_LineUsage() {
  try {
    const int lines = environment_.activeLines;
    const std::size_t rows = lines > 0 ? static_cast<std::size_t>(lines) : 0;
    matrices_.lineTotals.assign(rows + 1, {});
    matrices_.lineWeek.assign(rows + 2, {});
    const LogBuffer log = LogBuffer::Load(environment_.logPath);
    RecordSelection selection(log.Text(), PeriodCriteria(request_.direction, environment_.logPath));
    WalkLineUsage(selection);
    Print_LineUsage();
    EraseMatrices();
  } catch (const RuntimeError& error) {
    ShowError(error, "Process_LineUsage");
  }
}

// The record loop is compiled as one piece with the builder inside it, and
// the day's counts are its own locals.
[[gnu::flatten]] void ReportForm::WalkLineUsage(RecordSelection& selection) {
  const int lines = environment_.activeLines;
  LineUsageDay day(matrices_.lineTotals.size() - 1);
  std::int64_t aboveActiveLines = 0;
  selection.ForEach(
      [&](const CallRecord& record, CivilDate date) {
        // Nearly every call is an ordinary one: in or out, on a counted
        // line, of the day before it, with its fields in the logging
        // program's shape. It is counted here; any other call goes through
        // Build_LineMatrix, which decides about it field by field.
        const DecodedRecord call(record);
        if (call.Common() && call.Kind() != kNoKind && call.Line() >= 1 && call.Line() <= lines &&
            day.HasRoomFor(date, call.Seconds())) [[likely]] {
          day.Count(static_cast<std::size_t>(call.Line()), static_cast<std::size_t>(call.Kind()), call.Seconds());
          return;
        }
        // A line field that is not a number, or a line beyond the active
        // lines, leaves the record out; the loop goes on.
        std::int16_t line = 0;
        try {
          line = call.Line();
        } catch (const RuntimeError&) {
          return;
        }
        if (line <= lines) {
          Build_LineMatrix(line, record, date, day);
        } else {
          ++aboveActiveLines;
        }
      },
      kProgressEvery, SelectionProgress(host_, selection));
  AddLineUsageDay(day);
  // Only the active lines are reported; that is the rule, but a log that
  // holds calls on other lines would otherwise look complete.
  if (aboveActiveLines > 0) {
    const bool one = aboveActiveLines == 1;
    host_.MessageBox("Note",
                     std::to_string(aboveActiveLines) + (one ? " call on a line" : " calls on lines") +
                         " above line " + std::to_string(lines) + (one ? " is" : " are") +
                         " not counted: the logging program's settings give " + std::to_string(lines) +
                         (lines == 1 ? " active line." : " active lines."),
                     MessageIcon::kInformation, MessageButtons::kOk);
  }
}

void ReportForm::Build_LineMatrix(std::int16_t line, const CallRecord& record, CivilDate date, LineUsageDay& day) {
  try {
    // A call that is neither in nor out is not counted (its duration cannot
    // raise an error, so it need not be read first).
    const DecodedRecord call(record);
    const auto kind = static_cast<std::size_t>(call.Kind());
    if (kind == kNoKind) return;
    const std::int32_t seconds = call.Seconds();
    // Lines count from 1.
    if (line < 1 || static_cast<std::size_t>(line) >= day.lines.size()) throw RuntimeError(err::kSubscript);
    const auto row = static_cast<std::size_t>(line);
    if (date != day.date) {
      AddLineUsageDay(day);
      day.date = date;
      day.weekday = date.Weekday();
    }
    if (!day.HasRoomFor(date, seconds)) {
      // Near the limit of a cell: the calls so far go in first, then this
      // one on its own, tested cell by cell.
      AddLineUsageDay(day);
      AddLineCall(row, kind, seconds, day);
      return;
    }
    day.Count(row, kind, seconds);
  } catch (RuntimeError& error) {
    error.SetProcessing(std::string(record.Text()));
    ShowError(error, "Build_LineMatrix");
  }
}

void ReportForm::AddLineUsageDay(LineUsageDay& day) {
  Matrices& m = matrices_;
  const auto weekday = static_cast<std::size_t>(day.weekday);
  std::int32_t highest = day.highestCell;
  // Counts cannot outgrow 32 bits: a log holds fewer than 2^31 calls
  // (GetRecord refuses one of 2^31 bytes or more, and a call takes at least
  // three: a character, CR and LF). Seconds fit: the day stayed within the
  // headroom of every cell.
  for (std::size_t line = 1; line <= day.highestLine; ++line) {
    LineUsageDay::LineCalls& calls = day.lines[line];
    const std::int32_t all = calls.calls[kInbound] + calls.calls[kOutbound];
    auto& totals = m.lineTotals[line];
    auto& week = m.lineWeek[line];
    totals[kInbound] += calls.calls[kInbound];
    totals[kOutbound] += calls.calls[kOutbound];
    totals[kAllCalls] += all;
    totals[kSeconds] += calls.seconds;
    week[weekday] += all;
    week[kWeekCalls] += all;
    week[kWeekSeconds] += calls.seconds;
    highest = std::max({highest, totals[kSeconds], week[kWeekSeconds]});
    calls = {};
  }
  auto& secondsRow = m.lineWeek.back();
  secondsRow[weekday] += static_cast<std::int32_t>(day.Seconds());
  day.RoomAfter(std::max(highest, secondsRow[weekday]));
  day.highestLine = 0;
}

void ReportForm::AddLineCall(std::size_t line, std::size_t kind, std::int32_t seconds, LineUsageDay& day) {
  Matrices& m = matrices_;
  auto& totals = m.lineTotals[line];
  auto& week = m.lineWeek[line];
  auto& secondsRow = m.lineWeek.back();
  const auto weekday = static_cast<std::size_t>(day.weekday);
  // An overflow leaves every cell as it was.
  const std::int32_t lineSeconds = AddInt32(totals[kSeconds], seconds);
  const std::int32_t weekSeconds = AddInt32(week[kWeekSeconds], seconds);
  const std::int32_t daySeconds = AddInt32(secondsRow[weekday], seconds);
  totals[kSeconds] = lineSeconds;
  week[kWeekSeconds] = weekSeconds;
  secondsRow[weekday] = daySeconds;
  ++totals[kind];
  ++totals[kAllCalls];
  ++week[weekday];
  ++week[kWeekCalls];
  day.RoomAfter(std::max({lineSeconds, weekSeconds, daySeconds}));
}

void ReportForm::Print_LineUsage() {
  OrlPrinter& document = *document_;
  std::string chartFile;  // set once a chart is asked for: deleted after the report
  try {
    const Matrices& m = matrices_;
    // The matrices are made by Process_LineUsage; the seconds row is their last.
    if (m.lineWeek.empty()) throw RuntimeError(err::kSubscript);
    const int lines = m.lineTotals.empty() ? 0 : static_cast<int>(m.lineTotals.size()) - 1;
    summary::TableWriter table(*this, document);
    auto rowLabel = [&](std::string_view label) {
      SetHeadingFont();
      document.TextOut(kRowLabelX, label);
      SetBodyFont();
    };
    constexpr std::string_view kTotalsTitle = "Line Usage Totals";
    constexpr std::string_view kWeekTitle = "Day of the Week Line Usage Summary";
    constexpr std::string_view kTotalsFigures[] = {"Inbound", "Outbound", "Total Calls", "Total Time"};
    const std::span<const std::string_view> weekdays(summary::kHourTableFigures.data(), 7);
    ReportData& data = *data_;
    data.Begin(summary::TableDataColumns(kTotalsFigures, weekdays));
    // A row of the data: the table, the kind of row, its label, then its
    // figures under the given headings.
    auto dataRow = [&](std::string_view title, std::string_view kind, const std::string& label,
                       std::span<const std::string_view> headings, std::span<const std::string> figures) {
      if (!data.Keeping()) return;
      DataRow row(data);
      row.Set(kTableColumn, std::string(title)).Set(kKindColumn, std::string(kind)).Set(kRowColumn, label);
      for (std::size_t i = 0; i < headings.size(); ++i) row.Set(headings[i], figures[i]);
      data.AddRow(row.Cells());
    };

    // Totals per line.
    if (lines < kLinesForExtraLine) document.NewLine();
    // The column headings go on their own line under the title, as in the
    // other tables; on the title's line they would run into it.
    table.Title(kTotalsTitle);
    table.Right(kInboundX, "Inbound");
    table.Right(kOutboundX, "Outbound");
    table.Right(kTotalCallsX, "Total Calls");
    table.Right(kTotalTimeX, "Total Time");
    std::int32_t inbound = 0;
    std::int32_t outbound = 0;
    std::int32_t allCalls = 0;
    // The time of all lines together is the one sum that outgrows 32 bits
    // on a log of some years (four busy lines pass 2^31 seconds in about
    // eight); it is added up in 64.
    std::int64_t allSeconds = 0;
    for (int line = 1; line <= lines; ++line) {
      const auto& totals = m.lineTotals[static_cast<std::size_t>(line)];
      document.NewLine();
      rowLabel("Line " + std::to_string(line));
      table.Right(kInboundX, std::to_string(totals[kInbound]));
      table.Right(kOutboundX, std::to_string(totals[kOutbound]));
      table.Right(kTotalCallsX, std::to_string(totals[kAllCalls]));
      table.Right(kTotalTimeX, SecondsToText(totals[kSeconds], kShortMinutes));
      const std::string figures[] = {std::to_string(totals[kInbound]), std::to_string(totals[kOutbound]),
                                     std::to_string(totals[kAllCalls]), TotalDurationText(totals[kSeconds])};
      dataRow(kTotalsTitle, kDataRow, "Line " + std::to_string(line), kTotalsFigures, figures);
      inbound = AddInt32(inbound, totals[kInbound]);
      outbound = AddInt32(outbound, totals[kOutbound]);
      allCalls = AddInt32(allCalls, totals[kAllCalls]);
      allSeconds += totals[kSeconds];
    }
    document.NewLine();
    rowLabel("Total Calls");
    table.Right(kInboundX, std::to_string(inbound));
    table.Right(kOutboundX, std::to_string(outbound));
    table.Right(kTotalCallsX, std::to_string(allCalls));
    table.Right(kTotalTimeX, SecondsToText(allSeconds, kShortMinutes));
    {
      const std::string figures[] = {std::to_string(inbound), std::to_string(outbound), std::to_string(allCalls),
                                     TotalDurationText(allSeconds)};
      dataRow(kTotalsTitle, kTotalsRow, "Total Calls", kTotalsFigures, figures);
    }

    table.Gap();

    // Calls per line and weekday; the last row is the time of all lines.
    table.Title(kWeekTitle);
    // A row of the weekday table's data: the seven figures of a row.
    auto weekRow = [&](std::string_view kind, const std::string& label, auto figureOf) {
      std::array<std::string, 7> figures;
      for (std::size_t day = 1; day <= 7; ++day) figures[day - 1] = figureOf(day);
      dataRow(kWeekTitle, kind, label, weekdays, figures);
    };
    table.WeekdayHeadings(WeekdayColumnX);
    std::array<std::int32_t, 8> daySums{};
    for (int line = 1; line <= lines; ++line) {
      const auto& week = m.lineWeek[static_cast<std::size_t>(line)];
      document.NewLine();
      rowLabel("Line " + std::to_string(line));
      for (std::size_t day = 1; day <= 7; ++day) {
        table.Right(WeekdayColumnX(static_cast<int>(day)), std::to_string(week[day]));
        daySums[day] = AddInt32(daySums[day], week[day]);
      }
      weekRow(kDataRow, "Line " + std::to_string(line), [&](std::size_t day) { return std::to_string(week[day]); });
    }
    document.NewLine();
    rowLabel("Total Calls");
    for (std::size_t day = 1; day <= 7; ++day) {
      table.Right(WeekdayColumnX(static_cast<int>(day)), std::to_string(daySums[day]));
    }
    weekRow(kTotalsRow, "Total Calls", [&](std::size_t day) { return std::to_string(daySums[day]); });
    document.NewLine();
    rowLabel("Total Time");
    const auto& secondsRow = m.lineWeek.back();
    for (std::size_t day = 1; day <= 7; ++day) {
      table.Right(WeekdayColumnX(static_cast<int>(day)), SecondsToText(secondsRow[day], kShortMinutes));
    }
    weekRow(kTotalsRow, "Total Time", [&](std::size_t day) { return TotalDurationText(secondsRow[day]); });

    if (request_.chart) {
      if (lines >= kLinesForChartPage) {
        // Many lines leave little room: the chart starts a page of its own
        // when the tables end low, else it goes under the last row.
        if (document.Y() >= kChartPageLimitY) {
          document.NewPage();
        } else {
          document.NewLine();
        }
      } else {
        document.NewLine();
        document.NewLine();
        document.NewLine();
      }
      std::vector<std::int32_t> perLine;
      perLine.reserve(static_cast<std::size_t>(lines));
      for (int line = 1; line <= lines; ++line) perLine.push_back(m.lineWeek[static_cast<std::size_t>(line)][kWeekCalls]);
      chartFile = ChartBitmapPath(environment_.pathFolder, environment_.tempFolder);
      PlaceBarChart(document, host_, LineBarChart(perLine), chartFile, kLineChartLeft);
    }

    document.EndDoc();
    document.PreviewReport();
    document.DestroyReport();
  } catch (const RuntimeError& error) {
    ShowError(error, "Print_LineUsage");
  }
  if (!chartFile.empty()) DeleteChartBitmap(chartFile);
}

}  // namespace cw
