#include "support/text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace cw {
namespace {

TEST(TextTest, CaseFoldingTouchesOnlyAsciiLetters) {
  EXPECT_EQ(LowerCase("Callwarden.INI 42"), "callwarden.ini 42");
  EXPECT_EQ(UpperCase("busylines.log @[`{"), "BUSYLINES.LOG @[`{");
  // Windows-1252 letters such as 0xC9 (E acute) and 0xE9 (e acute) stay as they are.
  EXPECT_EQ(LowerCase("\xC9T\xE9"), "\xC9t\xE9");
  EXPECT_EQ(UpperCase("\xC9t\xE9"), "\xC9T\xE9");
}

TEST(TextTest, TrimRemovesBlanksOnlyAndMidClips) {
  EXPECT_EQ(Trim("  Smith John  "), "Smith John");
  EXPECT_EQ(Trim("\tTab\t"), "\tTab\t");
  EXPECT_EQ(Trim("    "), "");
  EXPECT_EQ(Mid("01/05/2024", 4, 2), "05");
  EXPECT_EQ(Mid("01/05/2024", 9, 5), "24");
  EXPECT_EQ(Mid("abc", 4, 1), "");
  EXPECT_EQ(Mid("abc", 0, 1), "");
}

// The fixed-width trim of the log's short fields must agree with Trim for
// every placement of blanks, and read no byte beyond its width.
template <std::size_t N>
void ExpectFixedTrimAgrees() {
  const char alphabet[] = {' ', 'I', '\t', '\xA0', '\0'};
  std::size_t combinations = 1;
  for (std::size_t k = 0; k < N; ++k) combinations *= sizeof alphabet;
  for (std::size_t code = 0; code < combinations; ++code) {
    std::string text;
    for (std::size_t rest = code, k = 0; k < N; ++k, rest /= sizeof alphabet) text += alphabet[rest % sizeof alphabet];
    // Exactly N bytes on the heap, so that a read past them is seen by ASan.
    const std::vector<char> exact(text.begin(), text.end());
    ASSERT_EQ(TrimFixed<N>(exact.data()), Trim(text)) << N << " bytes, case " << code;
    std::uint64_t expected = 0;
    for (std::size_t k = 0; k < N; ++k) expected |= std::uint64_t{static_cast<unsigned char>(exact[k])} << (8 * k);
    ASSERT_EQ(LoadBytes<N>(exact.data()), expected) << N << " bytes, case " << code;
  }
}

TEST(TextTest, FixedWidthTrimAgreesWithTrim) {
  ExpectFixedTrimAgrees<1>();
  ExpectFixedTrimAgrees<2>();
  ExpectFixedTrimAgrees<3>();
  ExpectFixedTrimAgrees<5>();
  ExpectFixedTrimAgrees<7>();
  ExpectFixedTrimAgrees<8>();
  static_assert(TrimFixed<3>(" In") == "In" && TrimFixed<3>("   ").empty());
}

}  // namespace
}  // namespace cw
