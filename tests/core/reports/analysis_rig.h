#pragma once
// What the daily-analysis and line-usage tests share: one report request over
// a call log in a scratch folder that is also the "Path" folder, a host that
// keeps the drawing commands too, the text export compared with an expected
// file, and the values read back out of its rows.

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "testing/temp_folder.h"
#include "printer/fixed_pitch_metrics.h"
#include "printer/spool_format.h"
#include "printer/spool_reader.h"
#include "reports/report_form.h"
#include "support/runtime_error.h"
#include "testing/memory_settings_store.h"
#include "testing/recording_host.h"

namespace cw::testing {

inline std::string ReportFixture(std::string_view name) {
  std::ifstream in(std::string(CW_TEST_DATA_DIR) + "/reports/" + std::string(name), std::ios::binary);
  EXPECT_TRUE(in.good()) << "missing fixture " << name;
  return std::string(std::istreambuf_iterator<char>(in), {});
}

// Compares a text export with its expected file; on a difference the actual
// text is left in the build folder for a look with diff.
inline void ExpectMatchesFixture(const std::string& actual, std::string_view expectedName) {
  if (actual == ReportFixture(expectedName)) return;
  const std::string actualFile = std::string(CW_BINARY_DIR) + "/" + std::string(expectedName) + ".actual";
  std::ofstream(actualFile, std::ios::binary) << actual;
  ADD_FAILURE() << "text export differs from " << expectedName << "; actual text in " << actualFile;
}

// What a conversion gives: its value and 0, or -1 and its error number.
template <typename Call>
std::pair<int, int> Outcome(Call&& call) {
  try {
    return {static_cast<int>(call()), 0};
  } catch (const RuntimeError& error) {
    return {-1, error.Number()};
  }
}

// A call log of the given lines, each ended by CR LF.
inline std::string LogOf(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\r\n";
  return text;
}

// A recording host that also keeps the drawing commands of every previewed
// document, to see where a chart went. With writeCharts off its chart
// component draws nothing, as one whose bitmap never reaches the disk.
class SpoolCapturingHost : public RecordingHost {
 public:
  void ShowPreview(OrlPrinter& document, const ReportData& data) override {
    SpoolReader reader(document.PrintFile());
    for (SpoolCommand command; reader.Next(command);) commands.push_back(command);
    RecordingHost::ShowPreview(document, data);
  }
  void DrawBarChart(const BarChartSpec& chart, const std::string& bitmapFile) override {
    if (writeCharts) return RecordingHost::DrawBarChart(chart, bitmapFile);
    charts.push_back(chart);
    chartFiles.push_back(bitmapFile);
  }

  std::vector<SpoolCommand> Commands(SpoolKeyword keyword) const {
    std::vector<SpoolCommand> found;
    for (const SpoolCommand& command : commands) {
      if (command.keyword == keyword) found.push_back(command);
    }
    return found;
  }

  std::vector<SpoolCommand> commands;
  bool writeCharts = true;
};

struct AnalysisRig {
  TempFolder folder;
  SpoolCapturingHost host;
  FixedPitchMetrics metrics;
  MemorySettingsStore settings;
  std::unique_ptr<ReportForm> form;

  AnalysisRig(std::string_view logText, std::int16_t reportKind, std::int16_t activeLines = 4) {
    ReportEnvironment environment;
    environment.logPath = folder.Write("CallLog.txt", logText);
    environment.pathFolder = folder.Path().string();
    environment.activeLines = activeLines;
    form = std::make_unique<ReportForm>(environment, host, metrics, settings);
    form->Request().kind = reportKind;
    form->Request().direction = "InOut";
  }

  RequestOutcome Run(std::string_view from, std::string_view to, bool chart = false) {
    ReportRequest& request = form->Request();
    request.fromDate = from;
    request.toDate = to;
    request.chart = chart;
    return form->cmdPrintQuery_Click();
  }

  // The text export of the one document previewed.
  std::string Text() const {
    EXPECT_EQ(host.previews.size(), 1u);
    return host.previews.empty() ? std::string() : host.previews.back().text;
  }

  std::string ChartFile() const { return folder.File("Chart.bmp"); }
};

// The lines of a text export, without their line ends.
inline std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(line);
  }
  return lines;
}

inline std::vector<std::string> Words(const std::string& line) {
  std::vector<std::string> found;
  std::istringstream in(line);
  for (std::string word; in >> word;) found.push_back(word);
  return found;
}

// The words of the first exported row that starts (after blanks) with label,
// from the label's end on; skip passes over that many matching rows first.
// Empty when there is none. When a value would run into its label the export
// moves the row's values to the next line; they are taken from there.
inline std::vector<std::string> RowAfter(const std::string& text, std::string_view label, int skip = 0) {
  const std::vector<std::string> lines = Lines(text);
  for (std::size_t k = 0; k < lines.size(); ++k) {
    const std::size_t start = lines[k].find_first_not_of(' ');
    if (start == std::string::npos || lines[k].compare(start, label.size(), label) != 0 || skip-- > 0) continue;
    std::vector<std::string> row = Words(lines[k].substr(start + label.size()));
    if (row.empty() && k + 1 < lines.size()) row = Words(lines[k + 1]);
    return row;
  }
  return {};
}

}  // namespace cw::testing
