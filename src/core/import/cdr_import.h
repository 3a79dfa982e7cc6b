#pragma once
// From the rows of a CDR file to the calls of the call log: finds the layout
// (or takes the one given), reads each row as a leg, merges the legs of each
// call and builds its record. The text comes in pieces as it is read (a
// whole file at once, or what a followed file has grown by); rows that
// cannot be read are kept with their line number and the reason.

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "import/call_builder.h"
#include "import/call_merger.h"
#include "import/cdr_layout.h"
#include "import/import_rules.h"

namespace cw {

struct BadRow {
  std::int64_t line = 0;
  std::string reason;
};

struct KeyedCall {
  std::string key;
  LogCall call;
};

struct ImportCounts {
  std::int64_t rows = 0;      // rows read as legs
  std::int64_t badRows = 0;
  std::int64_t calls = 0;     // calls built for the log
  std::int64_t internal = 0;  // calls that never touched a trunk
  std::int64_t unlisted = 0;  // calls through a trunk not in the list
};

class CdrImporter {
 public:
  // format: nullopt to detect it from the first rows. columns: the column
  // list of an asterisk-custom layout.
  CdrImporter(ImportRules rules, std::optional<CdrFormat> format, std::vector<std::string> columns);

  // Reads the rows of text, which starts at a row on line firstLine of the
  // file. With complete false a last row without its line end is left for
  // later. Returns the bytes read. tick: see CallMerger::Add. Error 13 when
  // no layout fits the first rows, 5 when the layout's columns are unusable.
  std::size_t Feed(std::string_view text, std::int64_t firstLine, bool complete, std::int64_t tick);

  // The calls whose legs all arrived at or before tick; every call.
  std::vector<KeyedCall> TakeQuiet(std::int64_t tick);
  std::vector<KeyedCall> TakeAll();
  std::vector<BadRow> TakeBadRows();

  // The layout once known, and whether it was detected.
  const std::optional<CdrLayout>& Layout() const { return layout_; }
  bool Detected() const { return detected_; }
  const ImportCounts& Counts() const { return counts_; }
  // Calls begun but not yet taken.
  std::size_t Pending() const { return merger_.Pending() + finished_.size(); }
  // Each trunk channel met that is not in the list, with the first line it was on.
  const std::map<std::string, std::int64_t>& UnlistedTrunks() const { return unlisted_; }
  // A new file (a rotated one) begins with its own header row, if any.
  void ExpectHeader() { headerPending_ = layout_ && layout_->Format() == CdrFormat::kCsv; }

 private:
  // Sets the layout: the one given, or the one the first rows show (none
  // yet when there are no rows).
  void Detect(std::string_view text, std::int64_t firstLine, bool complete);
  std::vector<KeyedCall> Build(std::vector<MergedCall> merged);

  ImportRules rules_;
  std::optional<CdrFormat> format_;
  std::vector<std::string> columns_;
  std::optional<CdrLayout> layout_;
  bool detected_ = false;
  bool headerPending_ = false;
  CallMerger merger_;
  std::vector<KeyedCall> finished_;
  std::vector<BadRow> badRows_;
  ImportCounts counts_;
  std::map<std::string, std::int64_t> unlisted_;
  LocalSeconds latestEnd_ = 0;
  std::int64_t sinceSweep_ = 0;
};

}  // namespace cw
