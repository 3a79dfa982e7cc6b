// The chart hand-over: scale rounding, the charts of the reports, where the
// bitmap goes, the bounded wait for it, its place on the page.

#include "reports/chart_handover.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "core/printer/engine_test_rig.h"
#include "core/settings/temp_folder.h"
#include "printer/orl_printer.h"
#include "printer/spool_reader.h"
#include "reports/hour_labels.h"
#include "support/file_helpers.h"
#include "support/runtime_error.h"
#include "testing/recording_host.h"

namespace cw {
namespace {

using testing::RecordingHost;
using testing::TempFolder;

// A host whose chart component never writes its file.
class SilentChartHost : public RecordingHost {
 public:
  void DrawBarChart(const BarChartSpec& chart, const std::string& bitmapFile) override {
    charts.push_back(chart);
    chartFiles.push_back(bitmapFile);
  }
};

TEST(ChartScale, RoundsTheLargestValueUpToTheAxisTop) {
  struct Case {
    std::int32_t largest, maxY, ticks;
  };
  const Case cases[] = {{0, 10, 2},   {10, 10, 2},   {11, 20, 5},   {20, 20, 5},    {21, 40, 10},
                        {25, 40, 10}, {40, 40, 10},  {41, 50, 12},  {50, 50, 12},   {51, 100, 25},
                        {99, 100, 25}, {100, 200, 50}, {199, 200, 50}, {250, 300, 75}, {1000, 1100, 275}};
  for (const Case& c : cases) {
    EXPECT_EQ(ChartMaxY(c.largest), c.maxY) << c.largest;
    EXPECT_EQ(ChartTicks(ChartMaxY(c.largest)), c.ticks) << c.largest;
  }
}

TEST(ChartSpec, HourlyAndPerLineChartsOfTheReports) {
  std::array<std::int32_t, 24> perHour{};
  perHour[9] = 30;
  perHour[23] = 4;
  const BarChartSpec hourly = HourlyBarChart(perHour);
  EXPECT_EQ(hourly.values, std::vector<std::int32_t>(perHour.begin(), perHour.end()));
  EXPECT_EQ(hourly.colLabels, HourChartLabels());
  EXPECT_EQ(hourly.maxY, 40);
  EXPECT_EQ(hourly.ticks, 10);
  // The component's fixed settings, on a surface of the shape it is placed at.
  EXPECT_EQ(hourly.backgroundColor, 0xFFFFFFu);
  EXPECT_EQ(hourly.margin, 150);
  EXPECT_EQ(hourly.xTitle, "");
  EXPECT_EQ(hourly.seriesWidth, 210);
  EXPECT_EQ(hourly.seriesColor, 255u);
  EXPECT_EQ(hourly.seriesStyle, "Bar");
  EXPECT_DOUBLE_EQ(hourly.widthTwips / hourly.heightTwips, kChartWidthInches / kChartHeightInches);

  // Even an empty day has 24 bars.
  const BarChartSpec empty = HourlyBarChart({});
  EXPECT_EQ(empty.values.size(), 24u);
  EXPECT_EQ(empty.maxY, 10);
  EXPECT_EQ(empty.ticks, 2);

  const BarChartSpec lines = LineBarChart({3, 51, 0});
  EXPECT_EQ(lines.colLabels, (std::vector<std::string>{"L1", "L2", "L3"}));
  EXPECT_EQ(lines.maxY, 100);
  EXPECT_EQ(lines.ticks, 25);

  EXPECT_THROW(MakeBarChart({"A", "B"}, {1}), RuntimeError);
}

TEST(ChartBitmapPath, PathFolderWhenWritableElseTheTemporaryFolder) {
  TempFolder path;
  TempFolder temp;
  const std::string inPath = JoinPath(path.Path().string(), "Chart.bmp");
  const std::string inTemp = JoinPath(temp.Path().string(), "Chart.bmp");
  EXPECT_EQ(ChartBitmapPath(path.Path().string(), temp.Path().string()), inPath);
  // The test for a writable folder leaves nothing behind ...
  EXPECT_FALSE(std::filesystem::exists(inPath));
  // ... and does not take away a bitmap already there.
  path.Write("Chart.bmp", RecordingHost::TinyBitmap());
  EXPECT_EQ(ChartBitmapPath(path.Path().string(), temp.Path().string()), inPath);
  EXPECT_EQ(TempFolder::Read(inPath), RecordingHost::TinyBitmap());

  EXPECT_EQ(ChartBitmapPath("", temp.Path().string()), inTemp);
  EXPECT_EQ(ChartBitmapPath(path.File("missing"), temp.Path().string()), inTemp);
  EXPECT_EQ(ChartBitmapPath(inPath, temp.Path().string()), inTemp);  // a file, not a folder
  // A folder nobody may create files in, whoever runs the test.
  EXPECT_EQ(ChartBitmapPath("/proc", temp.Path().string()), inTemp);
  // No temporary folder named: the system's.
  EXPECT_EQ(ChartBitmapPath("", ""), JoinPath(std::filesystem::temp_directory_path().string(), "Chart.bmp"));
}

TEST(ChartWaitTest, EndsInAnErrorNamingTheFileWhenTheHostNeverWritesIt) {
  TempFolder folder;
  const std::string bitmap = folder.File("Chart.bmp");
  RecordingHost host;
  try {
    WaitForChartBitmap(host, bitmap, ChartWait{5, std::chrono::milliseconds(1)});
    FAIL() << "waited for a file that never came";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), err::kFileNotFound);
    EXPECT_NE(error.Description().find(bitmap), std::string::npos) << error.Description();
  }
  // Events ran between the tries.
  EXPECT_EQ(host.eventsRun, 5);

  folder.Write("Chart.bmp", RecordingHost::TinyBitmap());
  host.eventsRun = 0;
  WaitForChartBitmap(host, bitmap, ChartWait{5, std::chrono::milliseconds(1)});
  EXPECT_EQ(host.eventsRun, 0);
}

struct DocumentRig {
  testing::EngineTestRig engine;
  OrlPrinter document{engine.Environment()};
  DocumentRig() {
    document.BeginDoc();
    document.SetScaleMode(5);  // inches
    document.SetY(3.0);
  }
  std::vector<SpoolCommand> Images() {
    document.EndDoc();
    std::vector<SpoolCommand> images;
    SpoolReader reader(document.PrintFile());
    for (SpoolCommand command; reader.Next(command);) {
      if (command.keyword == SpoolKeyword::kImageOut) images.push_back(command);
    }
    document.DestroyReport();
    return images;
  }
};

TEST(PlaceBarChartTest, DrawsWaitsAndPlacesTheBitmapAtTheCurrentLine) {
  TempFolder folder;
  const std::string bitmap = folder.File("Chart.bmp");
  RecordingHost host;
  DocumentRig rig;
  PlaceBarChart(rig.document, host, LineBarChart({1, 2}), bitmap, kLineChartLeft);
  ASSERT_EQ(host.chartFiles, std::vector<std::string>{bitmap});
  EXPECT_EQ(host.charts[0].colLabels, (std::vector<std::string>{"L1", "L2"}));
  const std::vector<SpoolCommand> images = rig.Images();
  ASSERT_EQ(images.size(), 1u);
  EXPECT_EQ(images[0].text, bitmap);
  EXPECT_DOUBLE_EQ(images[0].x1, 1.5);
  EXPECT_DOUBLE_EQ(images[0].y1, 3.0);
  // ImageOut's last two values are the picture's width and height.
  EXPECT_DOUBLE_EQ(images[0].ImageWidth(), 5.5);
  EXPECT_DOUBLE_EQ(images[0].ImageHeight(), 2.1);

  EXPECT_TRUE(std::filesystem::exists(bitmap));
  DeleteChartBitmap(bitmap);
  EXPECT_FALSE(std::filesystem::exists(bitmap));
  DeleteChartBitmap(bitmap);  // already gone: nothing to report
}

TEST(PlaceBarChartTest, StaleBitmapDoesNotPassForANewChart) {
  TempFolder folder;
  const std::string bitmap = folder.Write("Chart.bmp", RecordingHost::TinyBitmap());
  SilentChartHost host;
  DocumentRig rig;
  try {
    PlaceBarChart(rig.document, host, LineBarChart({1}), bitmap, kLineChartLeft,
                  ChartWait{3, std::chrono::milliseconds(1)});
    FAIL() << "placed a bitmap the host never drew";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), err::kFileNotFound);
  }
  EXPECT_EQ(host.charts.size(), 1u);
  EXPECT_TRUE(rig.Images().empty());
}

}  // namespace
}  // namespace cw
