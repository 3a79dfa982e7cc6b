#include "support/fast_cat.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "core/support/error_number.h"
#include "testing/expected_file.h"

namespace cw {
namespace {

// Before the colon the page size, after it the appends, split at ", "; then
// the value, the current page, the position in it, the length and the capacity.
TEST(FastCatTest, AppendsJoinWithinAPageAndSpillOverAsTheyAlwaysHave) {
  testing::ExpectTableMatches("support/fast-cat-appends.txt", [](const std::string& row) {
    const std::size_t colon = row.find(": ");
    cFastCat builder;
    builder.SetPageSize(std::stoi(row.substr(0, colon)));
    std::istringstream appends(row.substr(colon + 2));
    for (std::string text; std::getline(appends, text, ',');) {
      builder.Append(text.starts_with(' ') ? text.substr(1) : text);
    }
    return builder.Value() + "|" + std::to_string(builder.CurrentPage()) + "|" + std::to_string(builder.PagePos()) +
           "|" + std::to_string(builder.Length()) + " capacity " + std::to_string(builder.Capacity());
  });
}

// The reports only ever give the builder a page size of their own, large
// enough for the whole text; they never reset, clear or count its pages.
TEST(FastCatTest, APageSizeOfNoCharacterIsRefused) {
  cFastCat builder;
  for (std::int32_t bad : {0, -2}) {
    const test::RaisedError error = test::ErrorOf([&] { builder.SetPageSize(bad); });
    EXPECT_EQ(error.number, 7777) << bad;
    EXPECT_EQ(error.description, "Buffer page size must be larger than zero characters");
  }
}

}  // namespace
}  // namespace cw
