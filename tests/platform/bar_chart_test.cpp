#include "platform/bar_chart.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QImageReader>
#include <algorithm>
#include <array>
#include <cstdio>
#include <string>

#include "core/support/error_number.h"
#include "reports/chart_handover.h"
#include "support/file_helpers.h"
#include "support/runtime_error.h"

namespace cw {
namespace {

bool IsRed(QRgb pixel) { return qRed(pixel) > 200 && qGreen(pixel) < 80 && qBlue(pixel) < 80; }

// The tallest red run in columns [from, to).
int RedHeight(const QImage& image, int from, int to) {
  int tallest = 0;
  for (int x = from; x < to; ++x) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) count += IsRed(image.pixel(x, y)) ? 1 : 0;
    tallest = std::max(tallest, count);
  }
  return tallest;
}

// Separate red runs along row y: one per bar that reaches that height.
int RedRuns(const QImage& image, int y) {
  int runs = 0;
  for (int x = 0; x < image.width(); ++x) runs += IsRed(image.pixel(x, y)) && (x == 0 || !IsRed(image.pixel(x - 1, y)));
  return runs;
}

// Draws the chart into a scratch bitmap and reads it back.
QImage DrawnBitmap(const BarChartSpec& chart, QByteArray* format = nullptr) {
  const std::string file = GetTempFile("CWC");
  DrawBarChartBitmap(chart, file);
  QImageReader reader(QString::fromStdString(file));
  if (format != nullptr) *format = reader.format();
  QImage image = reader.read();
  std::remove(file.c_str());
  return image;
}

TEST(BarChartTest, ABitmapOfTheSurfaceSizeWithOneRedBarPerLabelAsTallAsItsValue) {
  std::array<std::int32_t, 24> perHour{};
  perHour.fill(5);
  QByteArray format;
  const QImage image = DrawnBitmap(HourlyBarChart(perHour), &format);
  ASSERT_FALSE(image.isNull());
  EXPECT_EQ(format, "bmp");
  // 5.5 x 2.1 inches at the bitmap resolution, on white.
  EXPECT_EQ(image.size(), QSize(825, 315));
  EXPECT_EQ(image.pixel(2, 2), qRgb(255, 255, 255));
  // Every hour keeps its own bar, although the even hours share the blank label.
  int base = image.height() - 1;
  while (base > 0 && RedRuns(image, base) == 0) --base;
  EXPECT_EQ(RedRuns(image, base - 2), 24);

  // 5 and 10 on a scale of 0..10: the second bar is twice as tall; 0 draws nothing.
  const QImage three = DrawnBitmap(MakeBarChart({"L1", "L2", "L3"}, {5, 10, 0}));
  ASSERT_FALSE(three.isNull());
  const int third = three.width() / 3;
  const int first = RedHeight(three, 0, third);
  ASSERT_GT(first, 20);
  EXPECT_NEAR(static_cast<double>(RedHeight(three, third, 2 * third)) / first, 2.0, 0.1);
  EXPECT_EQ(RedHeight(three, 2 * third, three.width()), 0);
}

TEST(BarChartTest, WhatCannotBeDrawnOrWrittenIsAnError) {
  BarChart chart;
  chart.ColLabels = {"A", "B"};
  chart.Lines.Add({1, 2}, 210, 255, "Bar", "");
  EXPECT_THROW((void)chart.DrawChart(), RuntimeError);  // no surface
  chart.Picture = QSize(200, 100);
  EXPECT_FALSE(chart.DrawChart().isNull());
  chart.Lines.Add({1}, 210, 255, "Bar", "");  // one value for two labels
  EXPECT_THROW((void)chart.DrawChart(), RuntimeError);
  chart.Lines.Clear();
  chart.Lines.Add({1, 2}, 210, 255, "Pie", "");
  EXPECT_THROW((void)chart.DrawChart(), RuntimeError);

  const std::string file = "/nonexistent-folder-cw/Chart.bmp";
  const test::RaisedError error = test::ErrorOf([&] { DrawBarChartBitmap(MakeBarChart({"L1"}, {3}), file); });
  EXPECT_EQ(error.number, err::kPathFileAccess);
  EXPECT_NE(error.description.find(file), std::string::npos) << error.description;
}

}  // namespace
}  // namespace cw
