// The word reads under the record decoder and CallRecord's field trim.
#include "data/record_words.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "support/text.h"

namespace cw {
namespace {

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

TEST(RecordWords, FixedWidthTrimAgreesWithTrim) {
  // The widths of the log's short fields, and one and a whole word.
  ExpectFixedTrimAgrees<1>();
  ExpectFixedTrimAgrees<3>();
  ExpectFixedTrimAgrees<7>();
  ExpectFixedTrimAgrees<8>();
  static_assert(TrimFixed<3>(" In") == "In" && TrimFixed<3>("   ").empty());
}

}  // namespace
}  // namespace cw
