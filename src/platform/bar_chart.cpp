#include "platform/bar_chart.h"

#include <QApplication>
#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QBuffer>
#include <QChart>
#include <QFontMetricsF>
#include <QGraphicsLayout>
#include <QGraphicsScene>
#include <QPainter>
#include <QValueAxis>
#include <algorithm>
#include <cmath>
#include <memory>

#include "platform/font_mapping.h"
#include "support/ansi_text.h"
#include "support/file_helpers.h"
#include "support/runtime_error.h"

namespace cw {

namespace {

QString AnsiToQString(const std::string& bytes) { return QString::fromStdString(Win1252ToUtf8(bytes)); }

QColor FromBgr(std::uint32_t bgr) {
  return QColor(static_cast<int>(bgr & 0xFF), static_cast<int>((bgr >> 8) & 0xFF),
                static_cast<int>((bgr >> 16) & 0xFF));
}

// Gap between the plot's bottom edge and the column labels, in points.
constexpr double kLabelGapPoints = 3;

}  // namespace

void BarChart::SeriesList::Add(std::vector<std::int32_t> values, std::int32_t width, std::uint32_t color,
                               std::string_view style, std::string_view title) {
  items_.push_back({std::move(values), width, color, std::string(style), std::string(title)});
}

QImage BarChart::DrawChart() const {
  if (Picture.isEmpty()) throw RuntimeError(err::kInvalidCall, "The chart has no picture surface to draw on");
  if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr) {
    throw RuntimeError(err::kInvalidCall, "Charts are drawn with Qt widgets: the program needs a QApplication");
  }
  for (const Series& line : Lines.Items()) {
    if (line.style != "Bar") throw RuntimeError(err::kInvalidCall, "Chart style \"" + line.style + "\" is not drawn");
    if (line.values.size() != ColLabels.size()) {
      throw RuntimeError(err::kInvalidCall, "A chart series needs one value per column label");
    }
  }
  const double pixelsPerTwip = PictureDotsPerInch / 1440.0;
  const QColor background = FromBgr(BackgroundColor);

  QFont font = MakeLayoutFont(FontSpec{FontName, static_cast<double>(FontSize)});
  // Points become pixels at the surface's resolution, whatever the screen's.
  font.setPixelSize(std::max(1, static_cast<int>(std::lround(FontSize * PictureDotsPerInch / 72.0))));

  // The scene owns the chart, the chart its series and axes.
  QGraphicsScene scene;
  auto* chart = new QChart();
  scene.addItem(chart);
  chart->setAnimationOptions(QChart::NoAnimation);
  chart->setBackgroundBrush(background);
  chart->setBackgroundRoundness(0);
  chart->setDropShadowEnabled(false);
  chart->legend()->hide();
  const int margin = static_cast<int>(std::lround(Margin * pixelsPerTwip));
  const QFontMetricsF metrics(font);
  const double labelGap = kLabelGapPoints * PictureDotsPerInch / 72.0;
  const double labelRows = xTitle.empty() ? 1 : 2;
  const int labelRoom = static_cast<int>(std::ceil(labelGap + labelRows * metrics.height()));
  chart->setMargins(QMargins(margin, margin, margin, margin + labelRoom));
  chart->layout()->setContentsMargins(0, 0, 0, 0);

  auto* series = new QBarSeries();
  chart->addSeries(series);
  for (const Series& line : Lines.Items()) {
    auto* set = new QBarSet(AnsiToQString(line.title));
    set->setColor(FromBgr(line.color));
    set->setBorderColor(FromBgr(line.color));
    for (const std::int32_t value : line.values) *set << value;
    series->append(set);
  }

  // The column labels are written under the bars by hand: the category axis
  // keeps one category per distinct text (the hourly chart repeats a blank
  // under every even hour), and it hides a label that is wider than its
  // column at either end of the plot ("11PM" under the last hour).
  auto* categories = new QBarCategoryAxis();
  for (std::size_t column = 0; column < ColLabels.size(); ++column) categories->append(QString::number(column));
  categories->setLabelsVisible(false);
  categories->setGridLineVisible(false);
  chart->addAxis(categories, Qt::AlignBottom);
  series->attachAxis(categories);

  auto* values = new QValueAxis();
  values->setRange(0, MaxY > 0 ? MaxY : 10);
  values->setLabelFormat("%d");
  values->setLabelsFont(font);
  if (Ticks > 0) {
    values->setTickType(QValueAxis::TicksDynamic);
    values->setTickAnchor(0);
    values->setTickInterval(Ticks);
  }
  chart->addAxis(values, Qt::AlignLeft);
  series->attachAxis(values);

  const QRectF area(QPointF(0, 0), QSizeF(Picture));
  chart->setGeometry(area);
  scene.setSceneRect(area);

  QImage image(Picture, QImage::Format_RGB32);
  const int dotsPerMeter = static_cast<int>(std::lround(PictureDotsPerInch / 0.0254));
  image.setDotsPerMeterX(dotsPerMeter);
  image.setDotsPerMeterY(dotsPerMeter);
  image.fill(background);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing, false);
  scene.render(&painter, area, area);

  const QRectF plot = chart->plotArea();
  painter.setFont(font);
  painter.setPen(QColor(0x40, 0x40, 0x40));
  const double columnWidth = ColLabels.empty() ? 0 : plot.width() / static_cast<double>(ColLabels.size());
  const double labelTop = plot.bottom() + labelGap;
  for (std::size_t column = 0; column < ColLabels.size(); ++column) {
    const QString label = AnsiToQString(ColLabels[column]);
    const double width = metrics.horizontalAdvance(label);
    const double centre = plot.left() + (static_cast<double>(column) + 0.5) * columnWidth;
    // A label wider than its column may reach into its neighbours, never off the picture.
    const double left = std::clamp(centre - width / 2, 0.0, std::max(0.0, area.width() - width));
    painter.drawText(QRectF(left, labelTop, width, metrics.height()), Qt::AlignCenter, label);
  }
  if (!xTitle.empty()) {
    painter.drawText(QRectF(plot.left(), labelTop + metrics.height(), plot.width(), metrics.height()),
                     Qt::AlignCenter, AnsiToQString(xTitle));
  }
  painter.end();
  return image;
}

void DrawBarChartBitmap(const BarChartSpec& wanted, const std::string& bitmapFile) {
  BarChart chart;
  chart.Picture = QSize(static_cast<int>(std::lround(wanted.widthTwips / 1440.0 * kChartBitmapDotsPerInch)),
                        static_cast<int>(std::lround(wanted.heightTwips / 1440.0 * kChartBitmapDotsPerInch)));
  chart.PictureDotsPerInch = kChartBitmapDotsPerInch;
  chart.FontName = wanted.fontName;
  chart.FontSize = wanted.fontSize;
  chart.BackgroundColor = wanted.backgroundColor;
  chart.MaxY = wanted.maxY;
  chart.Ticks = wanted.ticks;
  chart.Margin = wanted.margin;
  chart.xTitle = wanted.xTitle;
  chart.ColLabels = wanted.colLabels;
  chart.Lines.Add(wanted.values, wanted.seriesWidth, wanted.seriesColor, wanted.seriesStyle, "");
  const QImage image = chart.DrawChart();

  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  if (!image.save(&buffer, "BMP")) {
    throw RuntimeError(err::kPathFileAccess, "The chart bitmap " + bitmapFile + " could not be encoded");
  }
  buffer.close();
  WriteFileAtomically(bitmapFile, std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
}

}  // namespace cw
