#pragma once
// The bar-chart component the reports drive: the members they set, in the
// order they set them, and DrawChart, which draws the bars with Qt Charts
// onto an image of the picture surface's size. DrawBarChartBitmap is the
// hosts' side of the chart hand-over: a BarChartSpec in, a bitmap file out.
//
// Qt Charts draws with graphics widgets: the process needs a QApplication
// (not only a QGuiApplication) before DrawChart is called.

#include <QImage>
#include <QSize>
#include <QString>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "reports/report_host.h"

namespace cw {

class BarChart {
 public:
  // One data series, as Lines.Add receives it.
  struct Series {
    std::vector<std::int32_t> values;
    // The series' second argument. It sizes the points of line styles in
    // the component's other chart kinds; bars take their width from the
    // room each category has, so a bar series keeps it unused.
    std::int32_t width = 0;
    std::uint32_t color = 0;  // 0xBBGGRR
    std::string style;        // "Bar"
    std::string title;
  };

  class SeriesList {
   public:
    void Add(std::vector<std::int32_t> values, std::int32_t width, std::uint32_t color,
             std::string_view style, std::string_view title);
    const std::vector<Series>& Items() const { return items_; }
    void Clear() { items_.clear(); }

   private:
    std::vector<Series> items_;
  };

  // The picture surface: its size in pixels and its resolution, which turns
  // point sizes and the margin (twips) into pixels.
  QSize Picture;
  double PictureDotsPerInch = 150;
  std::uint32_t BackgroundColor = 0xFFFFFF;  // 0xBBGGRR
  std::int32_t MaxY = 0;                     // top of the value axis
  std::int32_t Ticks = 0;                    // distance between value-axis ticks
  std::int16_t Margin = 0;                   // twips around the plot
  std::string xTitle;
  std::vector<std::string> ColLabels;        // one per bar, Windows-1252
  SeriesList Lines;
  std::string FontName = "Arial";
  std::int16_t FontSize = 8;

  // Draws every series onto a new image of Picture's size. Error 5 when the
  // surface is empty, a series is not "Bar", or a series has a different
  // number of values than ColLabels has labels.
  QImage DrawChart() const;
};

// Resolution of the bitmaps the reports place on their pages.
inline constexpr double kChartBitmapDotsPerInch = 150;

// Draws chart with a BarChart (members set in the component's order) on a
// surface of the chart's size at kChartBitmapDotsPerInch, and writes it as a
// BMP file, atomically. Error 75 naming the file when it cannot be written.
void DrawBarChartBitmap(const BarChartSpec& chart, const std::string& bitmapFile);

}  // namespace cw
