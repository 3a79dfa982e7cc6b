#pragma once
// A PageDevice that writes down every call as one line of text, for tests of
// the replays ("Text 720,1440 Hello"). Numbers are twips, printed with %g.
// Pictures named in `missingImages` fail to load; `beforeCall` runs before
// every call and may throw to play a failing printer.

#include <cstdio>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "printer/page_device.h"

namespace cw::testing {

class RecordingDevice : public PageDevice {
 public:
  std::vector<std::string> calls;
  std::set<std::string> missingImages;
  std::function<void(const std::string& call)> beforeCall;

  void BeginDocument(const PageSetup& setup) override {
    Record("BeginDocument " + Number(setup.widthTwips) + "x" + Number(setup.heightTwips) +
           (setup.orientation == 2 ? " landscape" : " portrait"));
  }
  void BeginPage() override { Record("BeginPage"); }
  void EndPage() override { Record("EndPage"); }
  void EndDocument() override { Record("EndDocument"); }
  void SetFont(const FontSpec& font) override {
    Record("Font " + font.name + " " + Number(font.points) + (font.bold ? " bold" : "") +
           (font.italic ? " italic" : "") + (font.underline ? " underline" : ""));
  }
  void Text(double x, double y, std::string_view text) override {
    Record("Text " + Point(x, y) + " " + std::string(text));
  }
  void Line(double x1, double y1, double x2, double y2) override {
    Record("Line " + Point(x1, y1) + " " + Point(x2, y2));
  }
  void Box(double x1, double y1, double x2, double y2) override {
    Record("Box " + Point(x1, y1) + " " + Point(x2, y2));
  }
  bool Image(const std::string& file, double x, double y, double width, double height) override {
    Record("Image " + file + " " + Point(x, y) + " " + Number(width) + "x" + Number(height));
    return missingImages.count(file) == 0;
  }

  static std::string Number(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%g", value);
    return text;
  }

 private:
  static std::string Point(double x, double y) { return Number(x) + "," + Number(y); }

  void Record(std::string call) {
    if (beforeCall) beforeCall(call);
    calls.push_back(std::move(call));
  }
};

}  // namespace cw::testing
