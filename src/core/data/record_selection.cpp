#include "data/record_selection.h"

#include <cstdint>
#include <cstring>
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
  } else if (criteria_.search == SearchBy::kNumber && criteria_.partial) {
    numberPart_ = CleanSearchNumber(criteria_.searchText);
  } else if (criteria_.search == SearchBy::kNumber) {
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
