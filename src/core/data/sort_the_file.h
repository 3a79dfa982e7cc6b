#pragma once
// Sorting the lines a report has gathered. Lines are compared as plain text by
// character code, so a report that wants another order puts its sort key at
// the front of each line.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace cw {

class cFastCat;

// The string-array sort: a median-of-three quicksort that leaves short runs
// alone, then one insertion pass over the whole array. Elements are handles
// into text owned elsewhere; sorting moves the handles, never the characters.
namespace SortHashSearch {

// Ascending by character code: Windows-1252 bytes compare by the Unicode code
// point each stands for (so the euro sign 0x80, U+20AC, sorts after 0xFF).
bool TextLess(std::string_view a, std::string_view b);

// Sorts the whole array ascending; equal lines end up in no particular order.
void SortStrings(std::vector<std::string_view>& lines);

// Sorts lines[low..high], leaving every range whose high - low is not above
// cutoff to the insertion pass. cutoff must be at least 1 (error 5 otherwise):
// the partition needs its three sample elements to be distinct.
void QuickSort(std::vector<std::string_view>& lines, std::ptrdiff_t cutoff, std::ptrdiff_t low,
               std::ptrdiff_t high);

// Straight insertion over lines[low..high]; equal lines keep their order.
void InsertionSort(std::vector<std::string_view>& lines, std::ptrdiff_t low, std::ptrdiff_t high);

}  // namespace SortHashSearch

// The builder's text, split at CR LF, sorted and joined again with CR LF; CR
// and LF characters at the front of the result are dropped (empty lines sort
// first and vanish), and the result always ends with CR LF. An empty builder
// gives "\r\n".
std::string SortTheFile(const cFastCat& builder);

}  // namespace cw
