// The chart hand-over: scale rounding, where the bitmap goes, the bounded
// wait for it, its place on the page.

#include "reports/chart_handover.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "analysis_rig.h"
#include "core/printer/engine_test_rig.h"
#include "core/support/error_number.h"
#include "testing/case_table.h"
#include "testing/temp_folder.h"
#include "printer/orl_printer.h"
#include "printer/spool_reader.h"
#include "support/file_helpers.h"
#include "support/runtime_error.h"
#include "testing/recording_host.h"

namespace cw {
namespace {

using testing::RecordingHost;
using testing::TempFolder;

constexpr ChartWait kShortWait{3, std::chrono::milliseconds(1)};

TEST(ChartScale, RoundsTheLargestValueUpToTheAxisTopForEveryChart) {
  for (const std::vector<std::string>& c : testing::TableCases("reports/chart-scales.txt")) {
    EXPECT_EQ(ChartMaxY(std::stoi(c[0])), std::stoi(c[1])) << c[0];
    EXPECT_EQ(ChartTicks(ChartMaxY(std::stoi(c[0]))), std::stoi(c[2])) << c[0];
  }
  const BarChartSpec lines = LineBarChart({3, 51, 0});
  EXPECT_EQ(lines.colLabels, (std::vector<std::string>{"L1", "L2", "L3"}));
  EXPECT_EQ(lines.maxY, 100);
  EXPECT_THROW(MakeBarChart({"A", "B"}, {1}), RuntimeError);
}

TEST(ChartBitmapPath, PathFolderWhenWritableElseTheTemporaryFolder) {
  TempFolder path;
  TempFolder temp;
  const std::string inPath = JoinPath(path.Path().string(), "Chart.bmp");
  const std::string inTemp = JoinPath(temp.Path().string(), "Chart.bmp");
  EXPECT_EQ(ChartBitmapPath(path.Path().string(), temp.Path().string()), inPath);
  EXPECT_FALSE(std::filesystem::exists(inPath));  // the test for a writable folder leaves nothing
  path.Write("Chart.bmp", RecordingHost::TinyBitmap());
  EXPECT_EQ(ChartBitmapPath(path.Path().string(), temp.Path().string()), inPath);
  EXPECT_EQ(testing::ReadBytes(inPath), RecordingHost::TinyBitmap());  // nor takes one away

  EXPECT_EQ(ChartBitmapPath("", temp.Path().string()), inTemp);
  EXPECT_EQ(ChartBitmapPath(path.File("missing"), temp.Path().string()), inTemp);
  EXPECT_EQ(ChartBitmapPath(inPath, temp.Path().string()), inTemp);  // a file, not a folder
  EXPECT_EQ(ChartBitmapPath("/proc", temp.Path().string()), inTemp);  // no one may create files there
  EXPECT_EQ(ChartBitmapPath("", ""), JoinPath(std::filesystem::temp_directory_path().string(), "Chart.bmp"));
}

// A document that placed a chart at Y = 3: the error number PlaceBarChart
// raised (0 for none) and the IMAGEOUT records of its spool.
struct Placed {
  int error = 0;
  std::vector<SpoolCommand> images;
};

Placed PlaceAndRead(ReportHost& host, const std::string& bitmap) {
  testing::EngineTestRig engine;
  OrlPrinter document(engine.Environment());
  document.BeginDoc();
  document.SetScaleMode(5);  // inches
  document.SetY(3.0);
  Placed placed;
  placed.error =
      test::ErrorNumberOf([&] { PlaceBarChart(document, host, LineBarChart({1, 2}), bitmap, kLineChartLeft, kShortWait); });
  document.EndDoc();
  SpoolReader reader(document.PrintFile());
  for (SpoolCommand command; reader.Next(command);) {
    if (command.keyword == SpoolKeyword::kImageOut) placed.images.push_back(command);
  }
  document.DestroyReport();
  return placed;
}

TEST(PlaceBarChartTest, DrawsWaitsAndPlacesTheBitmapAtTheCurrentLine) {
  TempFolder folder;
  const std::string bitmap = folder.File("Chart.bmp");
  RecordingHost host;
  const Placed placed = PlaceAndRead(host, bitmap);
  EXPECT_EQ(placed.error, 0);
  const std::vector<SpoolCommand>& images = placed.images;
  EXPECT_EQ(host.chartFiles, std::vector<std::string>{bitmap});
  ASSERT_EQ(images.size(), 1u);
  EXPECT_EQ(images[0].text, bitmap);
  // ImageOut's last two values are the picture's width and height.
  EXPECT_EQ((std::vector<double>{images[0].x1, images[0].y1, images[0].ImageWidth(), images[0].ImageHeight()}),
            (std::vector<double>{1.5, 3.0, 5.5, 2.1}));
  DeleteChartBitmap(bitmap);
  EXPECT_FALSE(std::filesystem::exists(bitmap));
  DeleteChartBitmap(bitmap);  // already gone: nothing to report

  // A bitmap left by an earlier run does not pass for a chart the host
  // never drew: the bounded wait ends in an error, events run between tries.
  folder.Write("Chart.bmp", RecordingHost::TinyBitmap());
  testing::SpoolCapturingHost silent;
  silent.writeCharts = false;
  const Placed none = PlaceAndRead(silent, bitmap);
  EXPECT_EQ(none.error, err::kFileNotFound);
  EXPECT_TRUE(none.images.empty());
  EXPECT_EQ(silent.charts.size(), 1u);
  EXPECT_EQ(silent.eventsRun, 1 + kShortWait.tries);
}

}  // namespace
}  // namespace cw
