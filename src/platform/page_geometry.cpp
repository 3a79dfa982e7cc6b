#include "platform/page_geometry.h"

#include <string>
#include <utility>

#include "support/runtime_error.h"

namespace cw {

PageSizeTwips OrientedPageSize(const PageSetup& setup) {
  constexpr double kLargestSide = 200 * 1440.0;
  for (double side : {setup.widthTwips, setup.heightTwips}) {
    if (!(side > 0 && side <= kLargestSide)) {
      throw RuntimeError(err::kInvalidCall, "Page size out of range: " + std::to_string(setup.widthTwips) +
                                                " x " + std::to_string(setup.heightTwips) + " twips");
    }
  }
  PageSizeTwips size{setup.widthTwips, setup.heightTwips};
  const bool landscape = setup.orientation == 2;
  if (landscape != (size.width > size.height) && size.width != size.height) std::swap(size.width, size.height);
  return size;
}

}  // namespace cw
