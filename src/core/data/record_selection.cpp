#include "data/record_selection.h"

#include <utility>

#include "data/log_conversions.h"
#include "support/runtime_error.h"
#include "support/text.h"

namespace cw {

namespace {

constexpr bool DroppedFromNumber(char c) { return c == ' ' || c == '(' || c == ')' || c == '-'; }

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

std::optional<CallRecord> RecordSelection::Next() {
  while (!finished_) {
    const std::string_view line = GetRecord(buffer_, stop_, reader_);
    if (line == kDone) {
      // The reader starts over after "Done"; this loop must not.
      finished_ = true;
      if (!stop_) bytesConsumed_ = buffer_.size();
      break;
    }
    ++recordsRead_;
    bytesConsumed_ = static_cast<std::size_t>(reader_.lastLineFeed);
    const CallRecord record(line);
    if (!InPeriod(record)) continue;
    // With "InOut" or no direction chosen every direction is taken.
    if (!everyDirection_ && record.Direction() != criteria_.direction) continue;
    if (!SearchPasses(record)) continue;
    return record;
  }
  return std::nullopt;
}

bool RecordSelection::InPeriod(const CallRecord& record) {
  const std::string_view dateText = record.Date();
  if (!haveLastDate_ || dateText != lastDateText_) {
    try {
      lastDate_ = ParseLogDate(dateText);
    } catch (RuntimeError& error) {
      error.SetProcessing(std::string(record.Text()));
      throw;
    }
    lastDateText_ = dateText;
    haveLastDate_ = true;
  }
  // The log is in time order: no record after the first later one can be in
  // the period.
  if (lastDate_ > criteria_.to) {
    finished_ = true;
    return false;
  }
  // Once the period has begun the From date is not looked at again, so a
  // record that is out of order there is still taken.
  if (!inRange_) {
    if (lastDate_ < criteria_.from) return false;
    inRange_ = true;
  }
  return true;
}

bool RecordSelection::SearchPasses(const CallRecord& record) const {
  switch (criteria_.search) {
    case SearchBy::kNone: return true;
    case SearchBy::kName: return NamePasses(record.Name());
    case SearchBy::kNumber: return NumberPasses(record.Number());
  }
  return true;
}

bool RecordSelection::NamePasses(std::string_view name) const {
  const std::string lower = LowerCase(name);
  if (criteria_.partial) return lower.find(nameSearch_) != std::string::npos;
  return lower == nameSearch_;
}

bool RecordSelection::NumberPasses(std::string_view number) const {
  // The number field is at most 18 characters: it is cleaned on the stack, as
  // this test runs for every record of the period.
  char cleaned[column::kNumber.length];
  std::size_t size = 0;
  for (char c : number.substr(0, sizeof cleaned)) {
    if (!DroppedFromNumber(c)) cleaned[size++] = c;
  }
  const std::string_view clean(cleaned, size);
  if (criteria_.partial) return clean.find(criteria_.searchText) != std::string_view::npos;
  for (const std::string& entry : numberList_) {
    if (clean == entry) return true;
  }
  return false;
}

}  // namespace cw
