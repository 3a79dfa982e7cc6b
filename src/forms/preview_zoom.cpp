#include "forms/preview_zoom.h"

#include <algorithm>

namespace cw {

int ZoomRowValue(std::string_view row) {
  int value = 0;
  for (char c : row) {
    if (c < '0' || c > '9') break;
    value = value * 10 + (c - '0');
    if (value > 100000) break;  // no row is anywhere near; stops an overflow
  }
  return value;
}

std::optional<std::size_t> InitialZoomRow(int zoomPercent) {
  auto rowOf = [](std::string_view text) {
    return static_cast<std::size_t>(std::find(kZoomRows.begin(), kZoomRows.end(), text) - kZoomRows.begin());
  };
  if (zoomPercent == -1) return rowOf(kFullPageRow);
  if (zoomPercent == -2) return rowOf(kPageWidthRow);
  if (zoomPercent < 0) return std::nullopt;
  for (std::size_t row = 0; row < kZoomRows.size(); ++row) {
    const int value = ZoomRowValue(kZoomRows[row]);
    if (value != 0 && value == zoomPercent) return row;
  }
  return rowOf("100%");
}

std::optional<double> ZoomFactorFor(std::string_view row, const ZoomArea& area) {
  const double freeHeight = area.panelHeight - (area.hScrollShown ? area.hScrollHeight : 0);
  const double heightFit = freeHeight / area.pageHeight - kFitMargin;
  double factor = 0;
  if (row == kPageWidthRow) {
    const double width = area.formScaleWidth - (area.vScrollShown ? area.vScrollWidth : 0);
    factor = width / area.pageWidth - kFitMargin;
  } else if (row == kFullPageRow) {
    if (area.pageHeight > area.pageWidth) {
      factor = heightFit;
    } else {
      // A wide page fits the width, unless it is then too tall for the panel.
      factor = (area.formScaleWidth - area.vScrollWidth) / area.pageWidth - kFitMargin;
      if (area.pageHeight * factor > freeHeight) factor = heightFit;
    }
  } else {
    const int value = ZoomRowValue(row);
    if (value == 0) return std::nullopt;
    factor = value / 100.0;
  }
  return std::max(factor, kMinimumZoom);
}

std::size_t ZoomRowAfter(double factor, int steps) {
  // The percentage rows come first, smallest first.
  std::size_t last = 0;
  while (last + 1 < kZoomRows.size() && ZoomRowValue(kZoomRows[last + 1]) > 0) ++last;
  const double percent = factor * 100;
  // Half a percent either way counts as the row itself.
  constexpr double kSame = 0.5;
  if (steps > 0) {
    for (std::size_t row = 0; row <= last; ++row) {
      if (ZoomRowValue(kZoomRows[row]) > percent + kSame) return row;
    }
    return last;
  }
  for (std::size_t row = last + 1; row-- > 0;) {
    if (ZoomRowValue(kZoomRows[row]) < percent - kSame) return row;
  }
  return 0;
}

}  // namespace cw
