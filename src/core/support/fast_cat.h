#pragma once
// cFastCat: a paged string builder. Sizes are counted in bytes of a text whose
// characters take two bytes each, which gives Length and the spill of an
// append over a page boundary their peculiar results; both are kept as the
// builder has always had them, and callers choose a PageSize large enough for
// their whole text.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace cw {

class cFastCat {
 public:
  cFastCat();

  // Error 9 (nothing written) when the text would need a page beyond the
  // PageCount slots; 131 slots until PageCount is set.
  void Append(std::string_view text);
  std::string Value() const;
  std::int32_t Length() const;
  std::int32_t LengthB() const;
  std::int32_t Capacity() const;

  std::int32_t PageSize() const { return pageSize_; }
  void SetPageSize(std::int32_t bytes);  // error 7777 when <= 0
  std::int32_t PageCount() const;
  void SetPageCount(std::int32_t count);  // error 7776 when < 1

  void Clear();
  void Reset();

  std::int32_t CurrentPage() const { return currentPage_; }
  std::int32_t PagePos() const { return pagePos_; }

 private:
  void WriteIntoPage(std::int32_t index, std::int32_t bytePos, std::string_view chars);

  std::int32_t pageSize_ = 0;
  std::int32_t pageLimit_ = 0;
  std::vector<std::string> pages_;
  std::int32_t pagesAllocated_ = 0;
  std::int32_t currentPage_ = 0;
  std::int32_t pagePos_ = 0;
};

}  // namespace cw
