#pragma once
// What a spool replay draws on: the preview page, the printer, a PDF, PNG
// images or, in tests, a recording. Coordinates are twips from the top-left
// corner of the page; texts are single-byte Windows-1252.

#include <string>
#include <string_view>

#include "printer/text_metrics.h"

namespace cw {

struct PageSetup {
  double widthTwips = 12240;   // US Letter portrait unless the printer says otherwise
  double heightTwips = 15840;
  int orientation = 1;         // 1 portrait, 2 landscape
};

class PageDevice {
 public:
  virtual ~PageDevice() = default;
  virtual void BeginDocument(const PageSetup& setup) = 0;
  virtual void BeginPage() = 0;
  virtual void EndPage() = 0;
  virtual void EndDocument() = 0;
  // The font stays in force, across pages too, until the next SetFont.
  virtual void SetFont(const FontSpec& font) = 0;
  // Left edge x, top of the line y.
  virtual void Text(double x, double y, std::string_view text) = 0;
  virtual void Line(double x1, double y1, double x2, double y2) = 0;
  virtual void Box(double x1, double y1, double x2, double y2) = 0;
  // Draws the picture file with its top-left corner at (x, y), combined with
  // the page by AND so that white parts leave the page unchanged. A width or
  // height of 0 means the picture's own. Returns false when the file cannot be
  // loaded (the page is left as drawn so far).
  virtual bool Image(const std::string& file, double x, double y, double width, double height) = 0;
};

}  // namespace cw
