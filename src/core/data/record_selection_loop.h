#pragma once
// The per-record work of RecordSelection, defined here so that the report
// loops built on ForEach compile with it inline. Included by
// record_selection.h only.

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>

#include "data/get_record.h"

namespace cw {

namespace selection_detail {

constexpr bool DroppedFromNumber(char c) { return c == ' ' || c == '(' || c == ')' || c == '-'; }

// 1 for the bytes the number search keeps, 0 for those it drops.
inline constexpr auto kKeptInNumber = [] {
  std::array<std::uint8_t, 256> kept{};
  for (int c = 0; c < 256; ++c) kept[c] = DroppedFromNumber(static_cast<char>(c)) ? 0 : 1;
  return kept;
}();

// The texts compared once per record (date, direction, numbers) are a few
// bytes long; comparing them in words rather than calling into the library is
// what keeps the loop close to the speed of the line search itself.
[[gnu::always_inline]] inline bool SameShortText(std::string_view a, std::string_view b) {
  const std::size_t size = a.size();
  if (size != b.size()) return false;
  if (size >= 8 && size <= 16) {
    std::uint64_t x[2];
    std::uint64_t y[2];
    std::memcpy(&x[0], a.data(), 8);
    std::memcpy(&y[0], b.data(), 8);
    std::memcpy(&x[1], a.data() + size - 8, 8);
    std::memcpy(&y[1], b.data() + size - 8, 8);
    return ((x[0] ^ y[0]) | (x[1] ^ y[1])) == 0;
  }
  if (size > 16) return a == b;
  for (std::size_t k = 0; k < size; ++k) {
    if (a[k] != b[k]) return false;
  }
  return true;
}

}  // namespace selection_detail

inline RecordSelection::DateColumns RecordSelection::DateColumnsOf(std::string_view line) {
  // The ten date columns as two overlapping words: a copy of them decides
  // whether a record has the same date text as the one before.
  static_assert(column::kDate.start == 1 && column::kDate.length == 10);
  DateColumns columns{};
  if (line.size() >= 10) {
    std::memcpy(&columns.low, line.data(), 8);
    std::memcpy(&columns.high, line.data() + 2, 8);
  }
  return columns;
}

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
  bool haveDate = false;
  DateColumns seen{};
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
    if (selection_detail::SameShortText(line, kDone)) {
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
    const DateColumns columns = DateColumnsOf(line);
    if (!haveDate || columns != seen) {
      countRead(false);
      date = ConvertRecordDate(record, read);
      seen = columns;
      // A line too short to hold the whole date is converted every time.
      haveDate = line.size() >= column::kDate.length;
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
  if (everyDirection_) return true;
  const std::string_view line = record.Text();
  constexpr LogColumn kField = column::kDirection;
  if (line.size() < kField.start - 1 + kField.length) {
    return selection_detail::SameShortText(record.Direction(), criteria_.direction);
  }
  std::uint32_t packed = 0;
  std::memcpy(&packed, line.data() + kField.start - 1, kField.length);
  bool passes = false;
  for (std::uint32_t form : directionForms_) passes |= packed == form;
  return passes;
}

inline bool RecordSelection::DirectionAndSearchPass(const CallRecord& record) const {
  const bool direction = DirectionPasses(record);
  switch (criteria_.search) {
    case SearchBy::kNone: return direction;
    case SearchBy::kName: return direction && NamePasses(record.Name());
    case SearchBy::kNumber:
      // Cleaning takes the blanks out, so the field need not be trimmed
      // first. The number is tested whatever the direction, so that the two
      // answers make one branch.
      return direction & NumberPasses(record.Field(column::kNumber, false));
  }
  return direction;
}

inline std::size_t RecordSelection::CleanNumberField(std::string_view numberField, char* cleaned) {
  // The field is copied into a blank-padded block of its full width (blanks
  // are dropped anyway), so that cleaning runs a fixed number of rounds
  // without a branch per character.
  constexpr std::size_t kWidth = column::kNumber.length;
  char field[kWidth];
  if (numberField.size() == kWidth) {
    std::memcpy(field, numberField.data(), kWidth);  // a fixed size: no library call
  } else {
    std::memset(field, ' ', kWidth);
    // A line that ends before the number column gives an empty field with no
    // data at all, which memcpy may not be handed even for no bytes.
    if (!numberField.empty()) std::memcpy(field, numberField.data(), std::min(numberField.size(), kWidth));
  }
  std::memset(cleaned, 0, kWidth);
  std::size_t size = 0;
  for (std::size_t k = 0; k < kWidth; ++k) {
    cleaned[size] = field[k];
    size += selection_detail::kKeptInNumber[static_cast<unsigned char>(field[k])];
  }
  // The last round may have left a dropped character just past the result.
  if (size < kWidth) cleaned[size] = 0;
  return size;
}

inline bool RecordSelection::NumberPasses(std::string_view numberField) const {
  char cleaned[column::kNumber.length];
  const std::size_t size = CleanNumberField(numberField, cleaned);
  if (criteria_.partial) {
    return std::string_view(cleaned, size).find(numberPart_) != std::string_view::npos;
  }
  return NumberListed(cleaned, size);
}

inline bool RecordSelection::NumberListed(const char* cleaned, std::size_t size) const {
  bool listed = false;
  for (const ListedNumber& entry : numberList_) {
    if (entry.inWords) {
      // Both words are read at the entry's own offsets, inside the cleaned
      // block whatever its length; the length decides.
      std::uint64_t head;
      std::uint64_t tail;
      std::memcpy(&head, cleaned, 8);
      std::memcpy(&tail, cleaned + entry.text.size() - 8, 8);
      listed |= (size == entry.text.size()) & (((head ^ entry.head) | (tail ^ entry.tail)) == 0);
    } else {
      listed |= std::string_view(cleaned, size) == entry.text;
    }
  }
  return listed;
}

}  // namespace cw
