#pragma once
// The per-record work of RecordSelection, defined here so that the report
// loops built on ForEach compile with it inline. Included by
// record_selection.h only.

#include <cstdint>
#include <limits>
#include <string_view>

#include "data/get_record.h"
#include "data/record_decoder.h"

namespace cw {

namespace selection_detail {

constexpr bool DroppedFromNumber(char c) { return c == ' ' || c == '(' || c == ')' || c == '-'; }

}  // namespace selection_detail

template <class Visit, class Progress>
void RecordSelection::ForEach(Visit&& visit, std::int64_t progressEvery, Progress&& progress) {
  // This loop runs once per line of a log that may hold millions of calls:
  // everything it reads or changes on every line is kept in locals.
  const std::string_view buffer = buffer_;
  const CivilDate from = criteria_.from;
  const CivilDate to = criteria_.to;
  ReaderState reader;
  std::int64_t read = 0;
  bool inRange = false;
  std::string_view dateLine;  // the line the date was converted from
  CivilDate date;
  // A report that wants no progress passes the largest interval.
  auto progressAfter = [progressEvery](std::int64_t lines) {
    return progressEvery > std::numeric_limits<std::int64_t>::max() - lines ? std::numeric_limits<std::int64_t>::max()
                                                                           : lines + progressEvery;
  };
  std::int64_t nextProgress = progressAfter(0);
  recordsRead_ = 0;
  bytesConsumed_ = 0;
  // The reader forgets its place at "Done", so the place is taken after
  // every line; at the end of the log all of it has been gone through.
  auto countRead = [&](bool atEnd) {
    recordsRead_ = read;
    bytesConsumed_ = atEnd ? buffer.size() : static_cast<std::size_t>(reader.lastLineFeed);
  };

  while (true) {
    const std::string_view line = GetRecord(buffer, false, reader);
    if (line == kDone) {
      countRead(true);
      return;
    }
    ++read;
    if (read >= nextProgress) [[unlikely]] {
      countRead(false);
      progress();
      nextProgress = progressAfter(read);
    }
    const CallRecord record(line);

    // The log holds many calls a day: a date is converted only when the date
    // columns differ from those of the record before.
    if (!SameDateText(line, dateLine)) {
      countRead(false);
      date = ConvertRecordDate(record, read);
      dateLine = line;
    }
    // No record after the first later one can be in the period.
    if (date > to) break;
    // Once the period has begun the From date is not looked at again, so a
    // record that is out of order there is still taken.
    if (!inRange) {
      if (date < from) continue;
      inRange = true;
    }
    if (DirectionAndSearchPass(record)) visit(record, date);
  }
  countRead(false);
}

inline bool RecordSelection::DirectionPasses(const CallRecord& record) const {
  // With "InOut" or no direction chosen every direction is taken.
  return everyDirection_ || record.Direction() == criteria_.direction;
}

inline bool RecordSelection::DirectionAndSearchPass(const CallRecord& record) const {
  if (!DirectionPasses(record)) return false;
  switch (criteria_.search) {
    case SearchBy::kNone: return true;
    case SearchBy::kName: return NamePasses(record.Name());
    // Cleaning takes the blanks out, so the field need not be trimmed first.
    case SearchBy::kNumber: return NumberPasses(record.Field(column::kNumber, false));
  }
  return true;
}

inline bool RecordSelection::NumberPasses(std::string_view numberField) const {
  // The field is at most as wide as its columns: cleaned here without
  // building a string for every record.
  char kept[column::kNumber.length];
  std::size_t size = 0;
  for (char c : numberField.substr(0, column::kNumber.length)) {
    if (!selection_detail::DroppedFromNumber(c)) kept[size++] = c;
  }
  const std::string_view cleaned(kept, size);
  if (criteria_.partial) return cleaned.find(numberPart_) != std::string_view::npos;
  for (const std::string& entry : numberList_) {
    if (cleaned == entry) return true;
  }
  return false;
}

}  // namespace cw
