#include "data/record_selection.h"

#include <cstdint>
#include <utility>

#include "data/log_conversions.h"
#include "support/runtime_error.h"
#include "support/text.h"

namespace cw {

std::string CleanNumber(std::string_view numberField) {
  std::string clean;
  clean.reserve(numberField.size());
  for (char c : numberField) {
    if (!selection_detail::DroppedFromNumber(c)) clean += c;
  }
  return clean;
}

// A number as typed: written as the reports print it ("(555) 019-8841") it
// finds the calls of "5550198841". Text with nothing left after cleaning
// ("-", "()") stays as typed, so it matches nothing instead of every call.
static std::string CleanSearchNumber(std::string_view searchText) {
  std::string clean = CleanNumber(searchText);
  if (clean.empty()) clean = Trim(searchText);
  return clean;
}

std::vector<std::string> NumberSearchList(std::string_view searchText) {
  std::vector<std::string> list;
  std::size_t start = 0;
  while (true) {
    const std::size_t comma = searchText.find(',', start);
    list.push_back(CleanSearchNumber(searchText.substr(start, comma == std::string_view::npos ? comma : comma - start)));
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
  } else if (criteria_.search == SearchBy::kNumber && criteria_.partial) {
    numberPart_ = CleanSearchNumber(criteria_.searchText);
  } else if (criteria_.search == SearchBy::kNumber) {
    numberList_ = NumberSearchList(criteria_.searchText);
  }
}

CivilDate RecordSelection::ConvertRecordDate(const CallRecord& record, std::int64_t read) const {
  CivilDate date;
  LogDateParts parts;
  try {
    parts = SplitLogDate(record.Date());
    date = CivilDate::FromYmd(parts.year, parts.month, parts.day);
  } catch (RuntimeError& error) {
    error.SetProcessing(std::string(record.Text()));
    throw;
  }
  if (!IsCalendarDate(parts, date) && criteria_.onRolledDate) criteria_.onRolledDate(read, record.Date(), date);
  return date;
}

bool RecordSelection::NamePasses(std::string_view name) const {
  const std::string lower = LowerCase(name);
  if (criteria_.partial) return lower.find(nameSearch_) != std::string::npos;
  return lower == nameSearch_;
}

}  // namespace cw
