#include "printer/page_locator.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace cw {

namespace {

// Record 2 is the first record of any page.
constexpr std::int64_t kFirstCommandRecord = 2;

}  // namespace

PageLocator::PageLocator(SpoolPageIndex index, std::int64_t recordCount)
    : index_(std::move(index)), recordCount_(std::max<std::int64_t>(recordCount, 1)) {}

bool PageLocator::AtOrAfter(std::int64_t record, std::int16_t wanted) const {
  if (wanted < 1) return true;
  const std::optional<std::int64_t> first = index_.FirstRecord(wanted);
  return first && record >= *first;
}

std::int64_t PageLocator::LocatePageRecord(std::int16_t wanted, std::int16_t shownPage,
                                           std::int64_t position) const {
  // A file of the header alone: the first read already fails.
  if (recordCount_ < kFirstCommandRecord) return kFirstCommandRecord;
  position = std::clamp(position, kFirstCommandRecord, recordCount_);

  if (wanted > shownPage) {
    // Reading on stops at once when the file already stands in the page (or
    // a later one), else at the page's first record, else past the end.
    if (AtOrAfter(position, wanted)) return position;
    const std::optional<std::int64_t> first = index_.FirstRecord(wanted);
    return first ? *first : recordCount_ + 1;
  }

  // Stepping back ends on the record before the page, whose successor is the
  // answer, or on record 2. A file standing before the page stops at once.
  if (!AtOrAfter(position, wanted)) return position + 1;
  const std::optional<std::int64_t> first = index_.FirstRecord(wanted);
  return std::max(kFirstCommandRecord, first.value_or(kFirstCommandRecord));
}

}  // namespace cw
