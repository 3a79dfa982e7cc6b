#include "platform/qt_text_metrics.h"

#include <gtest/gtest.h>

#include "platform/font_mapping.h"
#include "support/runtime_error.h"

namespace cw {
namespace {

TEST(FontMappingTest, ClassicNamesBecomeLiberationOthersFallBackByKind) {
  const std::pair<const char*, const char*> rows[] = {
      {"Arial", "Liberation Sans"},          {"  arial ", "Liberation Sans"},
      {"Times New Roman", "Liberation Serif"}, {"Courier New", "Liberation Mono"},
      {"Liberation Serif", "Liberation Serif"}, {"No Such Font 4711", "Liberation Sans"},
      {"No Such Courier", "Liberation Mono"},  {"No Such Times Roman", "Liberation Serif"},
      {"Missing Sans Serif", "Liberation Sans"}, {"", "Liberation Sans"}};
  for (const auto& [name, family] : rows) EXPECT_EQ(ResolveFontFamily(name).toStdString(), family) << name;
}

TEST(QtTextMetricsTest, WidthsAreTheUnhintedAdvancesOfWindows1252CharactersInEachFace) {
  QtTextMetrics metrics;
  const FontSpec arial9{"Arial", 9};
  // Recorded from Liberation Sans 2.1 (fonts-liberation2): "Total Calls" is
  // 9674 font units of 2048 per em; at 9 points that is 9674 * 180 / 2048 twips.
  EXPECT_NEAR(metrics.TextWidth(arial9, "Total Calls"), 850.25, 1.0);
  // Line height: Windows ascent 1854 plus descent 434 font units.
  EXPECT_NEAR(metrics.TextHeight(arial9), 201.09, 0.5);
  EXPECT_NEAR(metrics.Ascent(arial9), 162.95, 0.5);

  // Widths scale with the size; underline does not change them.
  EXPECT_DOUBLE_EQ(metrics.TextWidth(FontSpec{"Arial", 18}, "Total Calls"),
                   2 * metrics.TextWidth(arial9, "Total Calls"));
  EXPECT_DOUBLE_EQ(metrics.TextWidth(FontSpec{"Arial", 9, false, false, true}, "Total Calls"),
                   metrics.TextWidth(arial9, "Total Calls"));

  // The euro sign is byte 0x80 in Windows-1252 (Latin-1 has a control code
  // there); as a real glyph it is as wide as the figures.
  EXPECT_DOUBLE_EQ(metrics.TextWidth(arial9, "\x80"), metrics.TextWidth(arial9, "0"));
  EXPECT_DOUBLE_EQ(metrics.TextWidth(arial9, "\xE9"), metrics.TextWidth(arial9, "e"));  // e acute
  EXPECT_GT(metrics.TextWidth(arial9, "\x97"), metrics.TextWidth(arial9, "-"));          // em dash

  // "AV" is a kerning pair in the font; the classic width ignores it.
  EXPECT_DOUBLE_EQ(metrics.TextWidth(arial9, "AV"),
                   metrics.TextWidth(arial9, "A") + metrics.TextWidth(arial9, "V"));
  EXPECT_DOUBLE_EQ(metrics.TextWidth(arial9, "To"),
                   metrics.TextWidth(arial9, "T") + metrics.TextWidth(arial9, "o"));

  const std::string_view sample = "Daily Call Statistics 12/31/2024";
  const double regular = metrics.TextWidth(arial9, sample);
  EXPECT_GT(metrics.TextWidth(FontSpec{"Arial", 9, true}, sample), regular);
  EXPECT_LT(metrics.TextWidth(FontSpec{"Times New Roman", 9}, sample), regular);
  // Alternating fonts must not mix up the cached faces.
  EXPECT_DOUBLE_EQ(metrics.TextWidth(arial9, sample), regular);

  const FontSpec mono{"Courier New", 10};
  EXPECT_DOUBLE_EQ(metrics.TextWidth(mono, "iiii"), metrics.TextWidth(mono, "WWWW"));
  EXPECT_NEAR(metrics.TextWidth(mono, "W"), 120.0, 0.1);  // 1229 of 2048 units: the 120-twip cell
}

}  // namespace
}  // namespace cw
