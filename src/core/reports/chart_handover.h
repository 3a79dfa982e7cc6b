#pragma once
// The hand-over of a report's bar chart: the chart as the chart component is
// asked for it (scale, labels, one series of bars), the bitmap file the host
// writes it to, the wait for that file, its place on the page, and its
// deletion after the report.
//
// One file name serves every step: JoinPath(folder, "Chart.bmp"), where the
// folder is the setting "Path" (the logging program's folder) or, when that
// is empty or cannot be written, the temporary folder.

#include <array>
#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "reports/report_host.h"

namespace cw {

class OrlPrinter;

inline constexpr std::string_view kChartBitmapName = "Chart.bmp";

// The chart's place on the page, in inches: ImageOut takes X, Y, Width and
// Height, so the picture is 5.5 wide and 2.1 high from the left edge given
// by the report and the current Y.
inline constexpr double kChartWidthInches = 5.5;
inline constexpr double kChartHeightInches = 2.1;
// The picture surface the component draws on has the shape it is placed at,
// so the bars are not stretched on the page.
inline constexpr double kChartSurfaceWidthTwips = kChartWidthInches * 1440;
inline constexpr double kChartSurfaceHeightTwips = kChartHeightInches * 1440;

// Left edges of the two reports' charts.
inline constexpr double kDailyChartLeft = 1.25;
inline constexpr double kLineChartLeft = 1.5;

// Scale rounding: the top of the value axis for the largest bar value.
// Below 11 gives 10, below 21 gives 20, below 41 gives 40 (there has never
// been a 30 step), below 51 gives 50, otherwise the next whole hundred above
// (51..99 give 100, 100 gives 200).
std::int32_t ChartMaxY(std::int32_t largest);
// Ticks on the value axis: MaxY / 4, the remainder dropped.
std::int32_t ChartTicks(std::int32_t maxY);

// A chart of one bar series with the component's fixed settings (white
// background, margin 150, no x title, series 210 / red / "Bar", Arial 8) on
// the chart surface, scaled to its largest value. Labels and values pair up;
// error 5 when their counts differ.
BarChartSpec MakeBarChart(std::vector<std::string> labels, std::vector<std::int32_t> values);

// The hourly chart of the daily call analysis and the all-lines-busy summary:
// always 24 bars, odd hours labelled.
BarChartSpec HourlyBarChart(const std::array<std::int32_t, 24>& perHour);

// The per-line chart of the line usage summary: bars "L1", "L2", ...
BarChartSpec LineBarChart(const std::vector<std::int32_t>& perLine);

// Where the chart bitmap goes: "Chart.bmp" in pathFolder when that folder
// exists and a file can be created there, else in tempFolder (the system's
// temporary folder when tempFolder is empty too).
std::string ChartBitmapPath(std::string_view pathFolder, std::string_view tempFolder);

// How long the report waits for the host to write the bitmap.
struct ChartWait {
  int tries = 100;
  std::chrono::milliseconds pause{20};
};

// Waits until the bitmap can be opened for reading, letting the host run its
// events between tries. Error 53 naming the file when it never appears.
void WaitForChartBitmap(ReportHost& host, const std::string& bitmapFile, ChartWait wait = {});

// The whole hand-over for one report: any bitmap left from an earlier run is
// removed, the host draws the chart into bitmapFile, the report waits for the
// file and places it on the page at (left, Y) with the chart's size.
void PlaceBarChart(OrlPrinter& document, ReportHost& host, const BarChartSpec& chart,
                   const std::string& bitmapFile, double left, ChartWait wait = {});

// Deletes the bitmap after the report; a file already gone is not an error.
void DeleteChartBitmap(const std::string& bitmapFile);

}  // namespace cw
