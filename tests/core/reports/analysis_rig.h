#pragma once
// What the report tests share: a report form over a call log in a scratch
// folder, a host that keeps the spool too, the text export compared with an
// expected file, the values read back out of its rows, and the error box.

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "testing/case_table.h"
#include "testing/expected_file.h"
#include "testing/temp_folder.h"
#include "printer/fixed_pitch_metrics.h"
#include "printer/scale_mode.h"
#include "printer/spool_format.h"
#include "printer/spool_reader.h"
#include "reports/report_form.h"
#include "support/runtime_error.h"
#include "support/text.h"
#include "testing/memory_settings_store.h"
#include "testing/recording_host.h"

namespace cw::testing {

inline std::string ReportFixture(std::string_view name) {
  return ExpectedFile("reports/" + std::string(name));
}

// Compares a text export with its expected file under tests/data/reports.
inline void ExpectMatchesFixture(const std::string& actual, std::string_view expectedName) {
  ExpectMatchesFile(actual, "reports/" + std::string(expectedName));
}

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

// What a request did, as an expected file shows it: its outcome, then every
// box it showed (title, icon and buttons, then the text, without the source
// line of an error, which moves with any change to the code). The boxes are
// taken from the host, so that the next request starts with none.
inline std::string TakeBoxes(RecordingHost& host, std::optional<RequestOutcome> outcome = {}) {
  static const char* const kOutcomes[] = {"produced", "produced with errors", "refused", "failed"};
  static const char* const kIcons[] = {"none", "critical", "question", "exclamation", "information"};
  std::string text = outcome ? std::string("outcome: ") + kOutcomes[static_cast<int>(*outcome)] + "\n" : "";
  for (const RecordingHost::Message& box : host.messages) {
    text += "box: " + box.title + " (" + kIcons[static_cast<int>(box.icon)] +
            (box.buttons == MessageButtons::kOk ? ", ok" : ", retry/cancel") + ")\n";
    for (const std::string& line : Lines(box.text)) {
      const bool sourceLine = line.starts_with("The error Occurred at line: ") || line.starts_with("Line: ");
      text += "  " + (sourceLine ? line.substr(0, line.find(':') + 1) + " N" : line) + "\n";
    }
  }
  host.messages.clear();
  return text;
}

// A recording host that also keeps the spool of every previewed document, to
// see where a chart went. With writeCharts off its chart component draws
// nothing, as one whose bitmap never reaches the disk.
class SpoolCapturingHost : public RecordingHost {
 public:
  struct Document {
    SpoolHeader header;
    std::vector<SpoolCommand> records;
  };

  void ShowPreview(OrlPrinter& document, const ReportData& data) override {
    SpoolReader reader(document.PrintFile());
    documents.push_back({reader.Header(), {}});
    for (SpoolCommand command; reader.Next(command);) documents.back().records.push_back(command);
    ExpectNoTextOverprinted(documents.back());
    RecordingHost::ShowPreview(document, data);
  }

  // A row drawn without moving down lands on the row before it; the text
  // export would still show both, one below the other, so look at the page:
  // no two texts may start, or end, at the same place. (Overlaps in general
  // cannot be judged here: the rig's fixed-pitch text is wider than the
  // report's fonts. Its widths are the ones the report aligned by, though, so
  // texts aligned right end where the report meant them to.)
  static void ExpectNoTextOverprinted(const Document& document) {
    const double unitsPerTwip = 1 / TwipsPerUnit(document.header.scaleMode).value_or(scale::kTwipsPerInch);
    // Page, y, and x in millionths of a unit, so that rounding in the
    // report's alignment does not hide a match.
    std::map<std::tuple<std::int16_t, double, std::int64_t>, std::string> starts, ends;
    FontSpec font;
    for (const SpoolCommand& command : document.records) {
      if (command.keyword == SpoolKeyword::kSetFont) font = command.font;
      if (command.keyword != SpoolKeyword::kTextOut) continue;
      if (command.text.find_first_not_of(' ') == std::string::npos) continue;
      const double end = command.x1 + FixedPitchMetrics().TextWidth(font, command.text) * unitsPerTwip;
      for (auto [edges, x] : {std::pair{&starts, command.x1}, std::pair{&ends, end}}) {
        const auto [at, fresh] = edges->try_emplace({command.page, command.y1, std::llround(x * 1e6)}, command.text);
        if (!fresh) {
          ADD_FAILURE() << "page " << command.page << ": \"" << command.text << "\" is printed over \""
                        << at->second << "\" at y " << command.y1;
          return;
        }
      }
    }
  }

  void DrawBarChart(const BarChartSpec& chart, const std::string& bitmapFile) override {
    if (writeCharts) return RecordingHost::DrawBarChart(chart, bitmapFile);
    charts.push_back(chart);
    chartFiles.push_back(bitmapFile);
  }

  // The records of that keyword in every previewed document.
  std::vector<SpoolCommand> Commands(SpoolKeyword keyword) const {
    std::vector<SpoolCommand> found;
    for (const Document& document : documents) {
      for (const SpoolCommand& command : document.records) {
        if (command.keyword == keyword) found.push_back(command);
      }
    }
    return found;
  }

  std::vector<Document> documents;
  bool writeCharts = true;
};

// A report form over a call log in a scratch folder that is also its "Path"
// and temporary folder. A host with a `form` member is given the form. With
// keepData the previews carry the CSV of their data too.
template <typename Host = SpoolCapturingHost, typename Settings = MemorySettingsStore>
struct BasicRig {
  TempFolder folder;
  Host host;
  FixedPitchMetrics metrics;
  Settings settings;
  std::unique_ptr<ReportForm> form;

  BasicRig(std::string_view logText, std::int16_t reportKind, std::int16_t activeLines = 4, bool keepData = false) {
    ReportEnvironment environment;
    environment.keepData = keepData;
    environment.logPath = folder.Write("CallLog.txt", logText);
    environment.pathFolder = environment.tempFolder = folder.Path().string();
    environment.activeLines = activeLines;
    Open(environment);
    Request().kind = reportKind;
    Request().direction = "InOut";
  }

  void Open(const ReportEnvironment& environment) {
    form = std::make_unique<ReportForm>(environment, host, metrics, settings);
    if constexpr (requires { host.form = form.get(); }) host.form = form.get();
  }

  ReportRequest& Request() { return form->Request(); }
  RequestOutcome Run() {
    const RequestOutcome outcome = form->cmdPrintQuery_Click();
    // No report leaves its chart's bitmap behind.
    for (const std::string& file : host.chartFiles) EXPECT_FALSE(std::filesystem::exists(file)) << file;
    return outcome;
  }
  RequestOutcome Run(std::string_view from, std::string_view to, bool chart = false) {
    Request().fromDate = from;
    Request().toDate = to;
    Request().chart = chart;
    return Run();
  }

  // Runs the request over the period and compares what it did (see
  // TakeBoxes), then the text export of the document it previewed, if any,
  // with an expected file, where the scratch folder is "<folder>".
  void ExpectRun(std::string_view from, std::string_view to, std::string_view expected, bool chart = false) {
    const std::size_t before = host.previews.size();
    std::string done = TakeBoxes(host, Run(from, to, chart));
    if (host.previews.size() > before) done += host.previews.back().text;
    ExpectMatchesFixture(Replaced(done, folder.Path().string(), "<folder>"), expected);
  }

  // The text export of the one document previewed.
  std::string Text() const {
    EXPECT_EQ(host.previews.size(), 1u);
    return host.previews.empty() ? std::string() : host.previews.back().text;
  }
};
using AnalysisRig = BasicRig<>;

}  // namespace cw::testing
