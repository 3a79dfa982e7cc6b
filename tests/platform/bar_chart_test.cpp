#include "platform/bar_chart.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QImageReader>
#include <algorithm>
#include <array>
#include <cstdio>
#include <string>
#include <vector>

#include "reports/chart_handover.h"
#include "support/file_helpers.h"
#include "support/runtime_error.h"

namespace cw {
namespace {

bool IsRed(QRgb pixel) { return qRed(pixel) > 200 && qGreen(pixel) < 80 && qBlue(pixel) < 80; }

// Height in pixels of the red run in column x.
int RedHeight(const QImage& image, int x) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y) count += IsRed(image.pixel(x, y)) ? 1 : 0;
  return count;
}

// Separate red runs along row y: one per bar that reaches that height.
int RedRuns(const QImage& image, int y) {
  int runs = 0;
  bool inside = false;
  for (int x = 0; x < image.width(); ++x) {
    const bool red = IsRed(image.pixel(x, y));
    if (red && !inside) ++runs;
    inside = red;
  }
  return runs;
}

// The lowest row that holds red: just above the category axis.
int LowestRedRow(const QImage& image) {
  for (int y = image.height() - 1; y >= 0; --y) {
    for (int x = 0; x < image.width(); ++x) {
      if (IsRed(image.pixel(x, y))) return y;
    }
  }
  return -1;
}

class TempBitmap {
 public:
  TempBitmap() : path_(GetTempFile("CWC")) {}
  ~TempBitmap() { std::remove(path_.c_str()); }
  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

TEST(BarChartTest, HourlyChartIsABitmapOfTheSurfaceSizeWithOneRedBarPerHour) {
  std::array<std::int32_t, 24> perHour{};
  perHour.fill(5);
  const TempBitmap file;
  DrawBarChartBitmap(HourlyBarChart(perHour), file.Path());

  QImageReader reader(QString::fromStdString(file.Path()));
  EXPECT_EQ(reader.format(), "bmp");
  const QImage image = reader.read();
  ASSERT_FALSE(image.isNull()) << reader.errorString().toStdString();
  // 5.5 x 2.1 inches at the bitmap resolution.
  EXPECT_EQ(image.width(), 825);
  EXPECT_EQ(image.height(), 315);
  EXPECT_EQ(image.pixel(2, 2), qRgb(255, 255, 255));  // white background

  // Every hour keeps its own bar, although the even hours share the blank label.
  const int base = LowestRedRow(image);
  ASSERT_GT(base, 0);
  EXPECT_EQ(RedRuns(image, base - 2), 24);
}

TEST(BarChartTest, BarHeightsFollowTheValuesOnTheScale) {
  // Two bars, 5 and 10, on a scale 0..10: the second is twice as tall, and a
  // zero bar draws nothing.
  const BarChartSpec spec = MakeBarChart({"L1", "L2", "L3"}, {5, 10, 0});
  ASSERT_EQ(spec.maxY, 10);
  const TempBitmap file;
  DrawBarChartBitmap(spec, file.Path());
  const QImage image(QString::fromStdString(file.Path()));
  ASSERT_FALSE(image.isNull());

  const int third = image.width() / 3;
  int first = 0;
  int second = 0;
  int last = 0;
  for (int x = 0; x < third; ++x) first = std::max(first, RedHeight(image, x));
  for (int x = third; x < 2 * third; ++x) second = std::max(second, RedHeight(image, x));
  for (int x = 2 * third; x < image.width(); ++x) last = std::max(last, RedHeight(image, x));
  ASSERT_GT(first, 20);
  EXPECT_NEAR(static_cast<double>(second) / first, 2.0, 0.1);
  EXPECT_EQ(last, 0);
}

TEST(BarChartTest, RejectsWhatItCannotDraw) {
  BarChart chart;
  chart.ColLabels = {"A", "B"};
  chart.MaxY = 10;
  chart.Ticks = 2;
  chart.Lines.Add({1, 2}, 210, 255, "Bar", "");
  try {
    (void)chart.DrawChart();  // no surface
    FAIL() << "drew without a surface";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), err::kInvalidCall);
  }

  chart.Picture = QSize(200, 100);
  EXPECT_FALSE(chart.DrawChart().isNull());

  chart.Lines.Add({1}, 210, 255, "Bar", "");  // one value for two labels
  EXPECT_THROW((void)chart.DrawChart(), RuntimeError);
  chart.Lines.Clear();
  chart.Lines.Add({1, 2}, 210, 255, "Pie", "");
  EXPECT_THROW((void)chart.DrawChart(), RuntimeError);
}

TEST(BarChartTest, UnwritableBitmapIsError75NamingTheFile) {
  const std::string file = "/nonexistent-folder-cw/Chart.bmp";
  try {
    DrawBarChartBitmap(MakeBarChart({"L1"}, {3}), file);
    FAIL() << "wrote into a missing folder";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), err::kPathFileAccess);
    EXPECT_NE(error.Description().find(file), std::string::npos) << error.Description();
  }
}

}  // namespace
}  // namespace cw
