#include "support/fast_cat.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>

#include "support/runtime_error.h"
#include "support/whole_numbers.h"

namespace cw {

namespace {

constexpr std::int32_t kInitialPageSlots = 131;
constexpr std::size_t kInitialPageChars = 2048;
constexpr int kOutOfMemory = 7;
constexpr int kErrorPageCount = 7776;
constexpr int kErrorPageSize = 7777;
constexpr const char* kSource = "cFastCat";

}  // namespace

cFastCat::cFastCat() : pageLimit_(kInitialPageSlots), pages_(kInitialPageSlots), pagesAllocated_(1) {
  pages_[0].assign(kInitialPageChars, ' ');
}

// Writes chars into page `index` from byte position bytePos (two bytes per
// character), cut off at the end of the page. A page that has not been given
// its blanks for the current PageSize (after Clear, or after PageSize changed)
// gets them first.
void cFastCat::WriteIntoPage(std::int32_t index, std::int32_t bytePos, std::string_view chars) {
  std::string& page = pages_[static_cast<std::size_t>(index)];
  const auto pageChars = static_cast<std::size_t>(pageSize_ / 2);
  if (page.size() != pageChars) page.assign(pageChars, ' ');
  const auto at = static_cast<std::size_t>(bytePos / 2);
  if (at >= pageChars) return;
  const std::size_t count = std::min(chars.size(), pageChars - at);
  if (count > 0) std::memcpy(page.data() + at, chars.data(), count);
}

void cFastCat::Append(std::string_view text) {
  if (text.size() > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max() / 2)) {
    throw RuntimeError(err::kOverflow);
  }
  if (static_cast<std::size_t>(currentPage_) >= pages_.size()) throw RuntimeError(err::kSubscript);
  const std::int32_t bytes = static_cast<std::int32_t>(text.size()) * 2;
  const std::int32_t end = AddInt32(pagePos_, bytes);
  if (end <= pageSize_) {
    WriteIntoPage(currentPage_, pagePos_, text);
    pagePos_ = end;
    return;
  }

  // The text runs over the end of the page. The free byte count f and the
  // remaining byte count r are used as character counts when the head and
  // the tail are cut, so the tail starts r/2 characters early: the new page
  // repeats part of the text and loses as much at its end. Callers size their
  // pages so that this never happens.
  const std::int32_t free = pageSize_ - pagePos_;
  const std::int32_t rest = AddInt32(bytes, pagePos_ - pageSize_);
  const std::int32_t next = AddInt32(currentPage_, 1);
  if (static_cast<std::size_t>(next) >= pages_.size()) throw RuntimeError(err::kSubscript);

  if (free > 0) WriteIntoPage(currentPage_, pagePos_, text.substr(0, static_cast<std::size_t>(free / 2)));
  currentPage_ = next;
  if (currentPage_ == pagesAllocated_) {
    pages_[static_cast<std::size_t>(currentPage_)].assign(static_cast<std::size_t>(pageSize_ / 2), ' ');
    ++pagesAllocated_;
  }
  const std::size_t tailLength = static_cast<std::size_t>(rest);
  const std::size_t tailStart = text.size() > tailLength ? text.size() - tailLength : 0;
  WriteIntoPage(currentPage_, 0, text.substr(tailStart, tailLength / 2));
  pagePos_ = rest;
}

std::string cFastCat::Value() const {
  const std::int32_t total = AddInt32(MulInt32(pageSize_, currentPage_), pagePos_) / 2;
  if (total <= 0) return {};
  if (static_cast<std::size_t>(currentPage_) >= pages_.size()) throw RuntimeError(err::kSubscript);
  std::string value(static_cast<std::size_t>(total), ' ');
  for (std::int32_t i = 0; i <= currentPage_; ++i) {
    const auto at = static_cast<std::size_t>(static_cast<std::int64_t>(pageSize_) * i / 2);
    if (at >= value.size()) break;
    const std::string& page = pages_[static_cast<std::size_t>(i)];
    const std::size_t count = std::min(page.size(), value.size() - at);
    if (count > 0) std::memcpy(value.data() + at, page.data(), count);
  }
  return value;
}

std::int32_t cFastCat::Length() const {
  // Full pages count in characters, the current page's position in bytes.
  return AddInt32(MulInt32(currentPage_, pageSize_) / 2, pagePos_);
}

std::int32_t cFastCat::LengthB() const { return MulInt32(Length(), 2); }

std::int32_t cFastCat::Capacity() const { return MulInt32(pagesAllocated_, pageSize_); }

void cFastCat::SetPageSize(std::int32_t bytes) {
  if (bytes <= 0) {
    throw RuntimeError(kErrorPageSize, "Buffer page size must be larger than zero characters", kSource);
  }
  if (static_cast<std::size_t>(currentPage_) >= pages_.size()) throw RuntimeError(err::kSubscript);
  pages_[static_cast<std::size_t>(currentPage_)].assign(static_cast<std::size_t>(bytes / 2), ' ');
  pageSize_ = bytes;
  pagesAllocated_ = 1;
}

std::int32_t cFastCat::PageCount() const { return pageLimit_; }

void cFastCat::SetPageCount(std::int32_t count) {
  if (count < 1) throw RuntimeError(kErrorPageCount, "Buffer must contain at least one page", kSource);
  try {
    pages_.resize(static_cast<std::size_t>(count));
  } catch (const std::bad_alloc&) {
    throw RuntimeError(kOutOfMemory, "Out of memory");
  } catch (const std::length_error&) {
    throw RuntimeError(kOutOfMemory, "Out of memory");
  }
  pageLimit_ = count;
  // Pages cut off by a smaller count are gone and must be given blanks again
  // when the text grows back into them.
  pagesAllocated_ = std::min(pagesAllocated_, count);
}

void cFastCat::Clear() {
  std::vector<std::string>(1).swap(pages_);
  pageLimit_ = 1;
  pagesAllocated_ = 1;
  currentPage_ = 0;
  pagePos_ = 0;
}

void cFastCat::Reset() {
  currentPage_ = 0;
  pagePos_ = 0;
}

}  // namespace cw
