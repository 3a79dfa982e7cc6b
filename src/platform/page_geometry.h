#pragma once
// The page a document is drawn on, from the page set-up it was made for.

#include "printer/page_device.h"

namespace cw {

struct PageSizeTwips {
  double width = 0;
  double height = 0;
};

// The set-up's width and height, turned so that the orientation holds:
// portrait pages are at least as tall as wide, landscape pages at least as
// wide as tall (a set-up may give the paper either way round). Error 5 when
// a side is not a positive size of at most 200 inches.
PageSizeTwips OrientedPageSize(const PageSetup& setup);

}  // namespace cw
