#pragma once
// How the report routines' walks over the log tell the host how far they have
// come: often enough for a live progress bar, rarely enough to cost nothing
// per record.

#include <cstdint>

#include "data/record_selection.h"
#include "reports/report_host.h"

namespace cw {

// Lines read between two progress reports.
inline constexpr std::int64_t kProgressEvery = 4096;

// The progress callback of a report's RecordSelection::ForEach: how far
// through the log the walk is, and a chance for the screen to keep up. A
// report that walks the log several times counts every pass.
class SelectionProgress {
 public:
  SelectionProgress(ReportHost& host, const RecordSelection& selection, std::int64_t passes = 1)
      : host_(host), selection_(selection), passes_(passes) {}

  void operator()() const {
    const auto size = static_cast<std::int64_t>(selection_.BufferSize());
    host_.Progress(pass_ * size + static_cast<std::int64_t>(selection_.BytesConsumed()), passes_ * size);
    host_.DoEvents();
  }

  // The report starts its next walk over the log.
  void NextPass() { ++pass_; }

 private:
  ReportHost& host_;
  const RecordSelection& selection_;
  std::int64_t passes_;
  std::int64_t pass_ = 0;
};

}  // namespace cw
