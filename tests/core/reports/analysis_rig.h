#pragma once
// What the daily-analysis, line-usage and chart tests share: one report
// request over a call log in a scratch folder that is also the "Path"
// folder, the text export compared with an expected file, and the numbers
// read back out of the exported rows.

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "core/settings/temp_folder.h"
#include "printer/fixed_pitch_metrics.h"
#include "printer/spool_format.h"
#include "printer/spool_reader.h"
#include "reports/report_form.h"
#include "testing/memory_settings_store.h"
#include "testing/recording_host.h"

namespace cw::testing {

inline std::string ReportFixture(std::string_view name) {
  const std::string path = std::string(CW_TEST_DATA_DIR) + "/reports/" + std::string(name);
  std::ifstream in(path, std::ios::binary);
  EXPECT_TRUE(in.good()) << "missing fixture " << path;
  return std::string(std::istreambuf_iterator<char>(in), {});
}

// Compares a text export with its expected file; on a difference the actual
// text is left in the build folder for a look with diff.
inline void ExpectMatchesFixture(const std::string& actual, std::string_view expectedName) {
  const std::string expected = ReportFixture(expectedName);
  if (actual == expected) return;
  const std::string actualFile = std::string(CW_BINARY_DIR) + "/" + std::string(expectedName) + ".actual";
  std::ofstream(actualFile, std::ios::binary) << actual;
  ADD_FAILURE() << "text export differs from " << expectedName << "; actual text in " << actualFile;
}

// A call log of the given lines, each ended by CR LF.
inline std::string LogOf(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\r\n";
  return text;
}

// A recording host that also keeps the drawing commands of every previewed
// document, to see where a chart went.
class SpoolCapturingHost : public RecordingHost {
 public:
  void ShowPreview(OrlPrinter& document) override {
    SpoolReader reader(document.PrintFile());
    for (SpoolCommand command; reader.Next(command);) commands.push_back(command);
    RecordingHost::ShowPreview(document);
  }
  // With writeCharts off the chart component draws nothing, as one whose
  // bitmap never reaches the disk.
  void DrawBarChart(const BarChartSpec& chart, const std::string& bitmapFile) override {
    if (writeCharts) {
      RecordingHost::DrawBarChart(chart, bitmapFile);
    } else {
      charts.push_back(chart);
      chartFiles.push_back(bitmapFile);
    }
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
    ReportRequest& request = form->Request();
    request.kind = reportKind;
    request.direction = "InOut";
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

inline std::vector<std::string> TextLines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(line);
  }
  return lines;
}

inline std::vector<std::string> Words(const std::string& line) {
  std::vector<std::string> words;
  std::istringstream in(line);
  for (std::string word; in >> word;) words.push_back(word);
  return words;
}

// The words of the first exported row whose text starts (after blanks) with
// label, from the label's end on; skip passes over that many matching rows
// first. Empty when there is none. When a value would run into its label the
// export moves the row's values to the next line; they are taken from there.
inline std::vector<std::string> RowAfter(const std::string& text, std::string_view label, int skip = 0) {
  const std::vector<std::string> lines = TextLines(text);
  for (std::size_t k = 0; k < lines.size(); ++k) {
    const std::string& line = lines[k];
    const std::size_t start = line.find_first_not_of(' ');
    if (start == std::string::npos || line.compare(start, label.size(), label) != 0) continue;
    if (skip-- > 0) continue;
    std::vector<std::string> words = Words(line.substr(start + label.size()));
    if (words.empty() && k + 1 < lines.size()) words = Words(lines[k + 1]);
    return words;
  }
  return {};
}

}  // namespace cw::testing
