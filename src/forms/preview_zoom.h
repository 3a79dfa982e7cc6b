#pragma once
// The zoom rules of the preview: the rows of ZoomList, the row a document's
// ZoomPercent opens at, and the factor each row gives for the window's size.
// Sizes are in twips.

#include <array>
#include <optional>
#include <string_view>

namespace cw {

inline constexpr std::string_view kFullPageRow = "Full Page";
inline constexpr std::string_view kPageWidthRow = "Page Width";
inline constexpr std::array<std::string_view, 11> kZoomRows = {
    "50%", "60%", "70%", "80%", "90%", "100%", "125%", "150%", "200%", kFullPageRow, kPageWidthRow};

// No zoom is ever smaller: a page shown tinier is of no use.
inline constexpr double kMinimumZoom = 0.1;
// Taken off a fitted page so that it never touches the window's edges.
inline constexpr double kFitMargin = 0.05;

// The number a row starts with, as Val reads it: 125 for "125%", 0 for
// "Full Page" and for an empty text.
int ZoomRowValue(std::string_view row);

// The row (index into kZoomRows) that ZoomPercent opens at: -1 "Full Page",
// -2 "Page Width", any other negative value none; otherwise the first row
// whose value is ZoomPercent, else "100%".
std::optional<std::size_t> InitialZoomRow(int zoomPercent);

// The window as ZoomList_Click measures it.
struct ZoomArea {
  double formScaleWidth = 0;  // the form's inside width
  double panelHeight = 0;
  double vScrollWidth = 0;    // the bars' thickness, shown or not
  double hScrollHeight = 0;
  bool vScrollShown = false;  // as the last drawn page left them
  bool hScrollShown = false;
  double pageWidth = 0;
  double pageHeight = 0;
};

// ZoomList_Click: the factor for a row's text, never below kMinimumZoom;
// nullopt for a text that names no zoom (nothing selected), which keeps the
// factor as it was.
std::optional<double> ZoomFactorFor(std::string_view row, const ZoomArea& area);

// Ctrl+wheel: the percentage row one step larger (steps > 0) or smaller than
// the zoom shown (which a fitted page may leave between two rows), held at
// the first and last percentage rows.
std::size_t ZoomRowAfter(double factor, int steps);

}  // namespace cw
