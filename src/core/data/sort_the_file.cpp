#include "data/sort_the_file.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include "support/fast_cat.h"
#include "support/runtime_error.h"
#include "support/whole_numbers.h"

namespace cw {

namespace SortHashSearch {

namespace {

// The Unicode code point of every Windows-1252 byte. Only 0x80-0x9F differ
// from the byte value; the five unassigned ones keep their own value.
constexpr std::array<std::uint16_t, 32> kHighControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr std::uint16_t CodePoint(char c) {
  const auto byte = static_cast<unsigned char>(c);
  if (byte >= 0x80 && byte <= 0x9F) return kHighControls[byte - 0x80];
  return byte;
}

}  // namespace

bool TextLess(std::string_view a, std::string_view b) {
  const std::size_t common = std::min(a.size(), b.size());
  const auto [ia, ib] = std::mismatch(a.begin(), a.begin() + static_cast<std::ptrdiff_t>(common), b.begin());
  if (ia == a.begin() + static_cast<std::ptrdiff_t>(common)) return a.size() < b.size();
  return CodePoint(*ia) < CodePoint(*ib);
}

void QuickSort(std::vector<std::string_view>& lines, std::ptrdiff_t cutoff, std::ptrdiff_t low,
               std::ptrdiff_t high) {
  if (cutoff < 1) throw RuntimeError(err::kInvalidCall);
  auto less = [](std::string_view a, std::string_view b) { return TextLess(a, b); };
  // The two halves of a partition are sorted independently of each other, so
  // the smaller one is sorted by recursion and the larger by going round
  // again: the result is the same as sorting the left one first, and the
  // recursion stays shallow even on unlucky input.
  while (high - low > cutoff) {
    const auto middle = static_cast<std::ptrdiff_t>(RoundHalfEven((low + high) / 2.0));
    auto& a = lines;
    if (less(a[middle], a[low])) std::swap(a[low], a[middle]);
    if (less(a[high], a[low])) std::swap(a[low], a[high]);
    if (less(a[high], a[middle])) std::swap(a[middle], a[high]);
    std::swap(a[middle], a[high - 1]);
    const std::string_view pivot = a[high - 1];

    // a[low] is not above the pivot and a[high - 1] is the pivot: they stop
    // the two scans without a bounds test.
    std::ptrdiff_t i = low;
    std::ptrdiff_t j = high - 1;
    while (true) {
      do ++i; while (less(a[i], pivot));
      do --j; while (less(pivot, a[j]));
      if (j < i) break;
      std::swap(a[i], a[j]);
    }
    std::swap(a[i], a[high - 1]);

    if (j - low < high - (i + 1)) {
      QuickSort(lines, cutoff, low, j);
      low = i + 1;
    } else {
      QuickSort(lines, cutoff, i + 1, high);
      high = j;
    }
  }
}

void InsertionSort(std::vector<std::string_view>& lines, std::ptrdiff_t low, std::ptrdiff_t high) {
  for (std::ptrdiff_t k = low + 1; k <= high; ++k) {
    const std::string_view held = lines[k];
    std::ptrdiff_t m = k - 1;
    while (m >= low && TextLess(held, lines[m])) {
      lines[m + 1] = lines[m];
      --m;
    }
    lines[m + 1] = held;
  }
}

void SortStrings(std::vector<std::string_view>& lines) {
  if (lines.size() < 2) return;
  const auto high = static_cast<std::ptrdiff_t>(lines.size()) - 1;
  QuickSort(lines, 4, 0, high);
  InsertionSort(lines, 0, high);
}

}  // namespace SortHashSearch

std::string SortTheFile(const cFastCat& builder) {
  constexpr std::string_view kLineEnd = "\r\n";
  const std::string text = builder.Value();

  std::vector<std::string_view> lines;
  const std::string_view all(text);
  std::size_t start = 0;
  while (true) {
    const std::size_t end = all.find(kLineEnd, start);
    lines.push_back(all.substr(start, end == std::string_view::npos ? end : end - start));
    if (end == std::string_view::npos) break;
    start = end + kLineEnd.size();
  }

  SortHashSearch::SortStrings(lines);

  std::string sorted;
  sorted.reserve(text.size() + kLineEnd.size());
  for (std::size_t k = 0; k < lines.size(); ++k) {
    if (k > 0) sorted += kLineEnd;
    sorted += lines[k];
  }
  const std::size_t lead = sorted.find_first_not_of("\r\n");
  sorted.erase(0, lead == std::string::npos ? sorted.size() : lead);
  if (!sorted.ends_with(kLineEnd)) sorted += kLineEnd;
  return sorted;
}

}  // namespace cw
