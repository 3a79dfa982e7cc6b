#include "data/record_selection.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <exception>
#include <utility>

#include "data/log_conversions.h"
#include "support/runtime_error.h"
#include "support/text.h"

namespace cw {

namespace {

constexpr bool DroppedFromNumber(char c) { return c == ' ' || c == '(' || c == ')' || c == '-'; }

// 1 for the bytes the number search keeps, 0 for those it drops.
constexpr auto kKeptInNumber = [] {
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

}  // namespace

std::string CleanNumber(std::string_view numberField) {
  std::string clean;
  clean.reserve(numberField.size());
  for (char c : numberField) {
    if (!DroppedFromNumber(c)) clean += c;
  }
  return clean;
}

std::vector<std::string> NumberSearchList(std::string_view searchText) {
  std::vector<std::string> list;
  std::size_t start = 0;
  while (true) {
    const std::size_t comma = searchText.find(',', start);
    list.emplace_back(Trim(searchText.substr(start, comma == std::string_view::npos ? comma : comma - start)));
    if (comma == std::string_view::npos) break;
    start = comma + 1;
  }
  return list;
}

RecordSelection::RecordSelection(std::string_view buffer, SelectionCriteria criteria)
    : buffer_(buffer),
      criteria_(std::move(criteria)),
      everyDirection_(criteria_.direction.empty() || criteria_.direction == "InOut") {
  if (criteria_.search == SearchBy::kName) {
    nameSearch_ = LowerCase(criteria_.searchText);
    if (!criteria_.partial) nameSearch_ = std::string(Trim(nameSearch_));
  } else if (criteria_.search == SearchBy::kNumber && !criteria_.partial) {
    numberList_ = NumberSearchList(criteria_.searchText);
  }
}

void RecordSelection::Rewind() {
  reader_ = ReaderState{};
  stop_ = false;
  finished_ = false;
  inRange_ = false;
  haveLastDate_ = false;
  recordsRead_ = 0;
  bytesConsumed_ = 0;
}

namespace {

// The date of a record. A date that cannot be built gives false and the error,
// with the record attached for the error box, in failure; the record loop
// hands it on once it has put its state away. Kept out of the loop, which
// converts about one date a day.
[[gnu::noinline]] bool ConvertRecordDate(const CallRecord& record, CivilDate& date,
                                         std::exception_ptr& failure) noexcept {
  try {
    try {
      date = ParseLogDate(record.Date());
      return true;
    } catch (RuntimeError& error) {
      error.SetProcessing(std::string(record.Text()));
      throw;
    }
  } catch (...) {
    failure = std::current_exception();
    return false;
  }
}

}  // namespace

RecordSelection::DateColumns RecordSelection::DateColumnsOf(std::string_view line) {
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

std::optional<CallRecord> RecordSelection::Next() {
  if (finished_) return std::nullopt;
  // This loop runs once per line of a log that may hold millions of calls:
  // everything it reads or changes on every line is kept in locals while it
  // runs and written back when it ends.
  const std::string_view buffer = buffer_;
  const bool stop = stop_;
  const CivilDate from = criteria_.from;
  const CivilDate to = criteria_.to;
  const std::int32_t consumedBefore = reader_.lastLineFeed;
  ReaderState reader = reader_;
  std::int64_t read = recordsRead_;
  bool inRange = inRange_;
  bool haveDate = haveLastDate_;
  DateColumns seen = lastDateColumns_;
  CivilDate date = lastDate_;
  bool readerDone = false;
  std::exception_ptr failure;
  std::optional<CallRecord> selected;

  while (true) {
    const std::string_view line = GetRecord(buffer, stop, reader);
    if (SameShortText(line, kDone)) {
      // The reader starts over after "Done"; this loop must not.
      finished_ = true;
      readerDone = true;
      break;
    }
    ++read;
    const CallRecord record(line);

    // The log holds many calls a day: a date is converted only when the date
    // columns differ from those of the record before.
    const DateColumns columns = DateColumnsOf(line);
    if (!haveDate || columns != seen) {
      if (!ConvertRecordDate(record, date, failure)) break;
      seen = columns;
      // A line too short to hold the whole date is converted every time.
      haveDate = line.size() >= column::kDate.length;
    }
    // The log is in time order: no record after the first later one can be in
    // the period.
    if (date > to) {
      finished_ = true;
      break;
    }
    // Once the period has begun the From date is not looked at again, so a
    // record that is out of order there is still taken.
    if (!inRange) {
      if (date < from) continue;
      inRange = true;
    }
    // With "InOut" or no direction chosen every direction is taken.
    if (!everyDirection_ && !SameShortText(record.Direction(), criteria_.direction)) continue;
    if (!SearchPasses(record)) continue;
    selected = record;
    break;
  }

  reader_ = reader;
  recordsRead_ = read;
  inRange_ = inRange;
  haveLastDate_ = haveDate;
  lastDateColumns_ = seen;
  lastDate_ = date;
  // The reader forgets its place at "Done": at the end of the log all of it
  // has been gone through; with the stop flag set nothing more was read.
  if (!readerDone) {
    bytesConsumed_ = static_cast<std::size_t>(reader.lastLineFeed);
  } else {
    bytesConsumed_ = stop ? static_cast<std::size_t>(consumedBefore) : buffer.size();
  }
  if (failure) std::rethrow_exception(failure);
  return selected;
}

bool RecordSelection::SearchPasses(const CallRecord& record) const {
  switch (criteria_.search) {
    case SearchBy::kNone: return true;
    case SearchBy::kName: return NamePasses(record.Name());
    // Cleaning takes the blanks out, so the field need not be trimmed first.
    case SearchBy::kNumber: return NumberPasses(record.Field(column::kNumber, false));
  }
  return true;
}

bool RecordSelection::NamePasses(std::string_view name) const {
  const std::string lower = LowerCase(name);
  if (criteria_.partial) return lower.find(nameSearch_) != std::string::npos;
  return lower == nameSearch_;
}

bool RecordSelection::NumberPasses(std::string_view numberField) const {
  // This test runs for every record of the period, so the field is cleaned on
  // the stack: copied into a blank-padded block of its full width (blanks are
  // dropped anyway), which lets the cleaning run a fixed number of rounds
  // without a branch per character.
  constexpr std::size_t kWidth = column::kNumber.length;
  char field[kWidth];
  if (numberField.size() == kWidth) {
    std::memcpy(field, numberField.data(), kWidth);  // a fixed size: no library call
  } else {
    std::memset(field, ' ', kWidth);
    std::memcpy(field, numberField.data(), std::min(numberField.size(), kWidth));
  }
  char cleaned[kWidth];
  std::size_t size = 0;
  for (std::size_t k = 0; k < kWidth; ++k) {
    cleaned[size] = field[k];
    size += kKeptInNumber[static_cast<unsigned char>(field[k])];
  }
  const std::string_view clean(cleaned, size);
  if (criteria_.partial) return clean.find(criteria_.searchText) != std::string_view::npos;
  for (const std::string& entry : numberList_) {
    if (SameShortText(clean, entry)) return true;
  }
  return false;
}

}  // namespace cw
