#include "data/sort_the_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "support/fast_cat.h"
#include "support/runtime_error.h"
#include "testing/expected_file.h"

namespace cw {
namespace {

std::string SortText(std::string_view text) {
  cFastCat builder;
  builder.SetPageSize(static_cast<std::int32_t>(text.size() * 2 + 64));
  builder.Append(text);
  return SortTheFile(builder);
}

TEST(SortTheFile, SortsLinesAndEndsWithALineEnd) {
  testing::ExpectTableMatches("data/sorted-files.txt", [](const std::string& text) {
    return testing::Visible(SortText(testing::Unescaped(text)));
  });
}

TEST(SortHashSearch, SortsAnyInputByMovingHandles) {
  std::mt19937 random(12345);
  for (int size : {0, 1, 2, 5, 6, 7, 50, 1000, 20000}) {
    for (int alphabet : {1, 3, 26}) {
      std::vector<std::string> texts;
      for (int k = 0; k < size; ++k) {
        std::string text;
        for (int n = random() % 4; n >= 0; --n) text += static_cast<char>('a' + random() % alphabet);
        texts.push_back(text);
      }
      std::vector<std::string_view> lines(texts.begin(), texts.end());
      std::vector<std::string_view> handles = lines;
      std::vector<std::string_view> expected = lines;
      std::sort(expected.begin(), expected.end(), SortHashSearch::TextLess);

      SortHashSearch::SortStrings(lines);
      ASSERT_TRUE(std::equal(lines.begin(), lines.end(), expected.begin(), expected.end()))
          << size << " lines of " << alphabet << " letters";
      // The same handles come back, pointing at the original characters.
      auto byAddress = [](std::string_view a, std::string_view b) { return a.data() < b.data(); };
      std::sort(lines.begin(), lines.end(), byAddress);
      std::sort(handles.begin(), handles.end(), byAddress);
      for (std::size_t k = 0; k < lines.size(); ++k) ASSERT_EQ(lines[k].data(), handles[k].data());
    }
  }
}

}  // namespace
}  // namespace cw
