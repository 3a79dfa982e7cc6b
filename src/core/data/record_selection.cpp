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
  // Trim(field) equals the direction exactly when the three columns hold it
  // with blanks before and after making up the width. A direction with
  // blanks of its own at either end, or longer than the field, never matches.
  const std::string_view direction = criteria_.direction;
  constexpr std::size_t kWidth = column::kDirection.length;
  if (!everyDirection_ && Trim(direction) == direction && direction.size() <= kWidth) {
    for (std::size_t before = 0; before + direction.size() <= kWidth; ++before) {
      std::string form(kWidth, ' ');
      form.replace(before, direction.size(), direction);
      std::uint32_t packed = 0;
      std::memcpy(&packed, form.data(), kWidth);
      directionForms_.push_back(packed);
    }
  }

  if (criteria_.search == SearchBy::kName) {
    nameSearch_ = LowerCase(criteria_.searchText);
    if (!criteria_.partial) nameSearch_ = std::string(Trim(nameSearch_));
  } else if (criteria_.search == SearchBy::kNumber && !criteria_.partial) {
    for (std::string& entry : NumberSearchList(criteria_.searchText)) {
      ListedNumber listed;
      listed.inWords = entry.size() >= 8 && entry.size() <= 16;
      if (listed.inWords) {
        std::memcpy(&listed.head, entry.data(), 8);
        std::memcpy(&listed.tail, entry.data() + entry.size() - 8, 8);
      }
      listed.text = std::move(entry);
      numberList_.push_back(std::move(listed));
    }
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
    if (!DirectionAndSearchPass(record)) continue;
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

bool RecordSelection::DirectionPasses(const CallRecord& record) const {
  // With "InOut" or no direction chosen every direction is taken.
  if (everyDirection_) return true;
  const std::string_view line = record.Text();
  constexpr LogColumn kField = column::kDirection;
  if (line.size() < kField.start - 1 + kField.length) {
    return SameShortText(record.Direction(), criteria_.direction);
  }
  std::uint32_t packed = 0;
  std::memcpy(&packed, line.data() + kField.start - 1, kField.length);
  bool passes = false;
  for (std::uint32_t form : directionForms_) passes |= packed == form;
  return passes;
}

bool RecordSelection::DirectionAndSearchPass(const CallRecord& record) const {
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

bool RecordSelection::NamePasses(std::string_view name) const {
  const std::string lower = LowerCase(name);
  if (criteria_.partial) return lower.find(nameSearch_) != std::string::npos;
  return lower == nameSearch_;
}

std::size_t RecordSelection::CleanNumberField(std::string_view numberField, char* cleaned) {
  // The field is copied into a blank-padded block of its full width (blanks
  // are dropped anyway), so that cleaning runs a fixed number of rounds
  // without a branch per character.
  constexpr std::size_t kWidth = column::kNumber.length;
  char field[kWidth];
  if (numberField.size() == kWidth) {
    std::memcpy(field, numberField.data(), kWidth);  // a fixed size: no library call
  } else {
    std::memset(field, ' ', kWidth);
    std::memcpy(field, numberField.data(), std::min(numberField.size(), kWidth));
  }
  std::memset(cleaned, 0, kWidth);
  std::size_t size = 0;
  for (std::size_t k = 0; k < kWidth; ++k) {
    cleaned[size] = field[k];
    size += kKeptInNumber[static_cast<unsigned char>(field[k])];
  }
  // The last round may have left a dropped character just past the result.
  if (size < kWidth) cleaned[size] = 0;
  return size;
}

bool RecordSelection::NumberPasses(std::string_view numberField) const {
  char cleaned[column::kNumber.length];
  const std::size_t size = CleanNumberField(numberField, cleaned);
  if (criteria_.partial) {
    return std::string_view(cleaned, size).find(criteria_.searchText) != std::string_view::npos;
  }
  return NumberListed(cleaned, size);
}

bool RecordSelection::NumberListed(const char* cleaned, std::size_t size) const {
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
