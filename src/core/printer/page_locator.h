#pragma once
// LocatePageRecord: the record at which the preview starts drawing a page.
//
// The preview reads the spool from where its file stands. Going forward (a
// page after the one shown) it reads on until a record of the wanted page or
// a later one; going back it steps back while the record belongs to the
// wanted page or a later one, and never onto the header (record 1 is no
// page's). The page index answers both walks without reading the records in
// between, so the last page of a long report opens as fast as the second.
//
// Records are taken to be in page order, as the engine writes them; the
// index says where each page begins.

#include <cstdint>

#include "printer/spool_replay.h"

namespace cw {

class PageLocator {
 public:
  // recordCount: whole records in the file, the header included.
  PageLocator(SpoolPageIndex index, std::int64_t recordCount);

  // The first record to draw of page `wanted` while `shownPage` is on screen
  // (0 before the first page is drawn) and the file stands at record
  // `position` (the next record it would read; never taken past the last
  // record). Forward, a page past the end gives one past the last record.
  std::int64_t LocatePageRecord(std::int16_t wanted, std::int16_t shownPage, std::int64_t position) const;

  const SpoolPageIndex& Index() const { return index_; }
  std::int64_t RecordCount() const { return recordCount_; }

 private:
  // Whether `record` belongs to page `wanted` or a later one.
  bool AtOrAfter(std::int64_t record, std::int16_t wanted) const;

  SpoolPageIndex index_;
  std::int64_t recordCount_;
};

}  // namespace cw
