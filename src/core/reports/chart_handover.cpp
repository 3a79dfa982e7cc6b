#include "reports/chart_handover.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <thread>

#include "printer/orl_printer.h"
#include "reports/hour_labels.h"
#include "support/file_helpers.h"
#include "support/runtime_error.h"

namespace cw {

namespace {

namespace fs = std::filesystem;

// Whether a file of that name can be made (or opened for writing) in its
// folder. The probe is the bitmap itself: when it did not exist before, the
// empty file is taken away again.
bool CanWriteBitmap(const std::string& bitmapFile) {
  std::error_code error;
  const bool existed = fs::exists(bitmapFile, error);
  std::ofstream probe(bitmapFile, std::ios::binary | std::ios::app);
  const bool writable = probe.is_open();
  probe.close();
  if (writable && !existed) fs::remove(bitmapFile, error);
  return writable;
}

std::string SystemTempFolder() {
  std::error_code error;
  const fs::path folder = fs::temp_directory_path(error);
  return error ? std::string("/tmp") : folder.string();
}

bool CanOpenForReading(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  return in.is_open();
}

}  // namespace

std::int32_t ChartMaxY(std::int32_t largest) {
  if (largest < 11) return 10;
  if (largest < 21) return 20;
  if (largest < 41) return 40;
  if (largest < 51) return 50;
  return (largest / 100 + 1) * 100;
}

std::int32_t ChartTicks(std::int32_t maxY) { return maxY / 4; }

BarChartSpec MakeBarChart(std::vector<std::string> labels, std::vector<std::int32_t> values) {
  if (labels.size() != values.size()) throw RuntimeError(err::kInvalidCall);
  BarChartSpec chart;
  chart.widthTwips = kChartSurfaceWidthTwips;
  chart.heightTwips = kChartSurfaceHeightTwips;
  const std::int32_t largest = values.empty() ? 0 : *std::max_element(values.begin(), values.end());
  chart.maxY = ChartMaxY(largest);
  chart.ticks = ChartTicks(chart.maxY);
  chart.colLabels = std::move(labels);
  chart.values = std::move(values);
  return chart;
}

BarChartSpec HourlyBarChart(const std::array<std::int32_t, 24>& perHour) {
  return MakeBarChart(HourChartLabels(), std::vector<std::int32_t>(perHour.begin(), perHour.end()));
}

BarChartSpec LineBarChart(const std::vector<std::int32_t>& perLine) {
  std::vector<std::string> labels;
  labels.reserve(perLine.size());
  for (std::size_t line = 1; line <= perLine.size(); ++line) labels.push_back("L" + std::to_string(line));
  return MakeBarChart(std::move(labels), perLine);
}

std::string ChartBitmapPath(std::string_view pathFolder, std::string_view tempFolder) {
  if (!pathFolder.empty()) {
    std::error_code error;
    if (fs::is_directory(std::string(pathFolder), error)) {
      std::string inPath = JoinPath(pathFolder, kChartBitmapName);
      if (CanWriteBitmap(inPath)) return inPath;
    }
  }
  return JoinPath(tempFolder.empty() ? std::string_view(SystemTempFolder()) : tempFolder, kChartBitmapName);
}

void WaitForChartBitmap(ReportHost& host, const std::string& bitmapFile, ChartWait wait) {
  for (int attempt = 0; attempt < std::max(wait.tries, 1); ++attempt) {
    if (CanOpenForReading(bitmapFile)) return;
    host.DoEvents();
    std::this_thread::sleep_for(wait.pause);
  }
  throw RuntimeError(err::kFileNotFound, "The chart bitmap " + bitmapFile + " was not written");
}

void PlaceBarChart(OrlPrinter& document, ReportHost& host, const BarChartSpec& chart,
                   const std::string& bitmapFile, double left, ChartWait wait) {
  // A bitmap left by an earlier run must not pass for this chart.
  DeleteChartBitmap(bitmapFile);
  host.DrawBarChart(chart, bitmapFile);
  host.DoEvents();
  WaitForChartBitmap(host, bitmapFile, wait);
  document.ImageOut(bitmapFile, left, document.Y(), kChartWidthInches, kChartHeightInches);
}

void DeleteChartBitmap(const std::string& bitmapFile) {
  std::error_code error;
  fs::remove(bitmapFile, error);
}

}  // namespace cw
