#include "import/cdr_import.h"

#include <algorithm>

#include "import/csv_reader.h"
#include "support/runtime_error.h"

namespace cw {

namespace {

// The rows detection looks at.
constexpr int kDetectionRows = 32;
// A PBX writes a leg when it ends, so once the file has reached rows that
// ended this much later, the earlier calls have all their legs.
constexpr LocalSeconds kSettled = 2 * 3600;
constexpr std::int64_t kRowsPerSweep = 4096;

}  // namespace

CdrImporter::CdrImporter(ImportRules rules, std::optional<CdrFormat> format, std::vector<std::string> columns)
    : rules_(std::move(rules)), format_(format), columns_(std::move(columns)) {}

void CdrImporter::Detect(std::string_view text, std::int64_t firstLine, bool complete) {
  std::vector<CsvRow> rows;
  CsvReader reader(text, firstLine);
  for (int i = 0; i < kDetectionRows; ++i) {
    CsvRow row;
    if (reader.Next(row, complete) != CsvReader::Result::kRow) break;
    rows.push_back(std::move(row));
  }
  auto named = [](CdrFormat format, const std::vector<std::string_view>& names) {
    return CdrLayout::Named(format, names);
  };
  CdrFormat format;
  if (format_) {
    format = *format_;
  } else {
    if (rows.empty()) return;
    const Detection detection = DetectFormat(rows);
    if (!detection.format) {
      throw RuntimeError(err::kTypeMismatch,
                         "no CDR layout fits its first rows (Asterisk cdr_csv, FreeSWITCH cdr_csv or a CSV "
                         "with a header row); give the format");
    }
    format = *detection.format;
    detected_ = true;
  }
  switch (format) {
    case CdrFormat::kAsterisk: layout_ = CdrLayout::Asterisk(); break;
    case CdrFormat::kFreeSwitch: layout_ = CdrLayout::FreeSwitch(); break;
    case CdrFormat::kAsteriskCustom: {
      if (columns_.empty()) {
        throw RuntimeError(err::kInvalidCall, "the asterisk-custom format needs its column list");
      }
      const std::vector<std::string_view> names(columns_.begin(), columns_.end());
      layout_ = named(format, names);
      break;
    }
    case CdrFormat::kCsv:
      if (rows.empty()) return;
      layout_ = named(format, rows.front().fields);
      headerPending_ = true;
      break;
  }
}

std::size_t CdrImporter::Feed(std::string_view text, std::int64_t firstLine, bool complete, std::int64_t tick) {
  if (!layout_) {
    Detect(text, firstLine, complete);
    if (!layout_) return 0;
  }
  CsvReader reader(text, firstLine);
  CsvRow row;
  CdrLeg leg;
  while (reader.Next(row, complete) == CsvReader::Result::kRow) {
    if (headerPending_) {
      headerPending_ = false;
      continue;
    }
    std::string reason = ReadLeg(row, *layout_, leg);
    if (!reason.empty()) {
      ++counts_.badRows;
      badRows_.push_back({row.line, std::move(reason)});
      continue;
    }
    ++counts_.rows;
    latestEnd_ = std::max(latestEnd_, leg.EndMoment());
    merger_.Add(std::move(leg), tick);
    if (++sinceSweep_ >= kRowsPerSweep) {
      sinceSweep_ = 0;
      std::vector<KeyedCall> done = Build(merger_.TakeEndedBefore(latestEnd_ - kSettled));
      if (finished_.empty()) {
        finished_ = std::move(done);
      } else {
        finished_.insert(finished_.end(), std::make_move_iterator(done.begin()), std::make_move_iterator(done.end()));
      }
    }
  }
  return reader.Offset();
}

std::vector<KeyedCall> CdrImporter::Build(std::vector<MergedCall> merged) {
  std::vector<KeyedCall> calls;
  calls.reserve(merged.size());
  std::vector<const CdrLeg*> legs;
  const bool channels = layout_ && layout_->HasChannels();
  for (MergedCall& one : merged) {
    legs.clear();
    for (const CdrLeg& leg : one.legs) legs.push_back(&leg);
    BuiltCall built = BuildCall(legs, rules_, channels);
    switch (built.outcome) {
      case CallOutcome::kCall:
        ++counts_.calls;
        calls.push_back({std::move(one.key), std::move(built.call)});
        break;
      case CallOutcome::kInternal: ++counts_.internal; break;
      case CallOutcome::kUnlistedTrunk: {
        ++counts_.unlisted;
        std::int64_t line = one.legs.front().row;
        for (const CdrLeg& leg : one.legs) line = std::min(line, leg.row);
        auto [where, inserted] = unlisted_.try_emplace(built.unlistedChannel, line);
        if (!inserted) where->second = std::min(where->second, line);
        break;
      }
    }
  }
  return calls;
}

std::vector<KeyedCall> CdrImporter::TakeQuiet(std::int64_t tick) {
  std::vector<KeyedCall> calls = std::move(finished_);
  finished_.clear();
  std::vector<KeyedCall> more = Build(merger_.TakeQuiet(tick));
  std::move(more.begin(), more.end(), std::back_inserter(calls));
  return calls;
}

std::vector<KeyedCall> CdrImporter::TakeAll() {
  std::vector<KeyedCall> calls = std::move(finished_);
  finished_.clear();
  std::vector<KeyedCall> more = Build(merger_.TakeAll());
  std::move(more.begin(), more.end(), std::back_inserter(calls));
  return calls;
}

std::vector<BadRow> CdrImporter::TakeBadRows() {
  std::vector<BadRow> rows = std::move(badRows_);
  badRows_.clear();
  return rows;
}

}  // namespace cw
