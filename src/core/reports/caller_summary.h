#pragma once
// The callers of the condensed call history: one entry per caller with the
// number of calls and their total duration, ordered by name and then number.
//
// A caller is a name and a number. Names are compared without regard to
// letter case and numbers without their blanks, "(", ")" and "-" (as the
// number search compares them), so "SMITH JOHN" at "(555) 123-4567" and
// "Smith John" at "555-123-4567" are one caller; that caller is shown as the
// period first wrote it.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "data/call_record.h"

namespace cw {

class cFastCat;

struct CallerTotals {
  std::string name;    // as first met
  std::string number;  // as first met
  std::int32_t calls = 0;
  std::int32_t seconds = 0;  // sum of the calls' durations
};

class CallerSummary {
 public:
  // Counts the call for its caller. Error 6 when a count or a sum leaves 32
  // bits.
  void Add(const CallRecord& record);

  std::size_t CallerCount() const { return callers_.size(); }

  // Writes one line per caller into builder, each ending with CR LF, for
  // SortTheFile: a sort key in front (the folded name, then the cleaned
  // number) and the caller's fields after it, all of fixed width so that a
  // plain text comparison orders by name, then number. builder must be able
  // to hold SortTextLength() characters in one page.
  void AppendSortLines(cFastCat& builder) const;

  // Characters AppendSortLines writes.
  std::size_t SortTextLength() const;

  // A caller back from one sorted line; error 13 for a line that is not one
  // of ours.
  static CallerTotals FromSortLine(std::string_view line);

 private:
  std::unordered_map<std::string, std::size_t> index_;  // caller key -> position in callers_
  std::vector<CallerTotals> callers_;
};

}  // namespace cw
