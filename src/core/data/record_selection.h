#pragma once
// The record selection loop that every report runs over the call log: the
// report period, the direction, and the name or number search. The reports add
// their own tests to the records it hands out.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/call_record.h"
#include "data/get_record.h"
#include "support/civil_date.h"

namespace cw {

enum class SearchBy { kNone, kName, kNumber };

struct SelectionCriteria {
  CivilDate from;
  CivilDate to;
  std::string direction;  // "In" or "Out"; "InOut" or empty takes every direction
  SearchBy search = SearchBy::kNone;
  std::string searchText;  // a name, or numbers separated by "," (exact) / part of one (partial)
  bool partial = false;
  // Told of a record whose date is no calendar date ("10/32/2026"): the
  // record's number in the log (counted from 1), its date text, and the date
  // it is read as (the reading rolls it over: 11/01/2026). Told once for a
  // run of records with the same date text. May be empty.
  std::function<void(std::int64_t record, std::string_view dateText, CivilDate readAs)> onRolledDate;
};

// The number field with every blank, "(", ")" and "-" taken out, as the
// number search compares it: "(555) 123-4567" gives "5551234567".
std::string CleanNumber(std::string_view numberField);

// The list an exact number search matches against: the search text split at
// ",", each entry cleaned as the number field is, so that a number written
// as the reports print it ("(555) 123-4567") finds its calls.
std::vector<std::string> NumberSearchList(std::string_view searchText);

class RecordSelection {
 public:
  // buffer is the loaded log and must outlive the selection.
  RecordSelection(std::string_view buffer, SelectionCriteria criteria);

  // Walks the log from the top and hands each record that lies in the period
  // and passes the direction and search tests, with its date, to
  // visit(const CallRecord&, CivilDate). The walk ends with the log, or at
  // the first record dated after the period (the log is in time order).
  // progress() is called after every progressEvery lines read, with
  // RecordsRead and BytesConsumed up to date.
  // The loop is compiled with the report's work inside it: nothing is handed
  // out or put away between records.
  // A record date that cannot be built throws the conversion's error (13 for
  // a part that is not a number) with the record attached as "Processing".
  template <class Visit, class Progress>
  void ForEach(Visit&& visit, std::int64_t progressEvery, Progress&& progress);

  const SelectionCriteria& Criteria() const { return criteria_; }
  // Lines read from the log so far in the current or last walk, selected or not.
  std::int64_t RecordsRead() const { return recordsRead_; }
  // Bytes of the buffer the walk has gone through, for a progress display.
  std::size_t BytesConsumed() const { return bytesConsumed_; }
  std::size_t BufferSize() const { return buffer_.size(); }

 private:
  // The direction and search tests of a record in the period.
  [[gnu::always_inline]] inline bool DirectionAndSearchPass(const CallRecord& record) const;
  [[gnu::always_inline]] inline bool DirectionPasses(const CallRecord& record) const;
  bool NamePasses(std::string_view name) const;
  // The number field without blanks, "(", ")" and "-" against the search.
  [[gnu::always_inline]] inline bool NumberPasses(std::string_view numberField) const;

  // The date of a record (number `read` in the log); the conversion's error,
  // with the record attached. Kept out of the loop, which converts about one
  // date a day.
  [[gnu::noinline]] CivilDate ConvertRecordDate(const CallRecord& record, std::int64_t read) const;

  std::string_view buffer_;
  SelectionCriteria criteria_;
  bool everyDirection_;
  std::string nameSearch_;  // lower case; trimmed for an exact match
  std::vector<std::string> numberList_;  // an exact number search, cleaned
  std::string numberPart_;  // a partial number search, cleaned as the field is

  std::int64_t recordsRead_ = 0;
  std::size_t bytesConsumed_ = 0;
};

}  // namespace cw

#include "data/record_selection_loop.h"
