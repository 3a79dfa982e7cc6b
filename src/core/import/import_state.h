#pragma once
// The import's memory, kept in a small file beside the call log
// ("CallLog.txt.import"): which calls it has written, so that reading the
// same CDR file again adds nothing, and the batch it was appending, so that
// an import that died half-way can be undone to the last whole record.
//
// Calls are remembered by a hash of their key for a few days behind the
// newest one; a call older than that is taken as imported already (it would
// fall before the log's last day anyway).

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "import/cdr_time.h"

namespace cw {

class ImportState {
 public:
  // The state file of a call log.
  static std::string PathFor(std::string_view logPath);

  // A missing file is a fresh state. Error 75 when the file cannot be read,
  // 13 when it is not a state file (it is then left alone, never replaced).
  static ImportState Load(const std::string& path);
  // Written whole through a temporary file (error 75 on failure).
  void Save(const std::string& path) const;
  std::string Text() const;
  static ImportState Parse(std::string_view text);

  bool Knows(std::string_view callKey, LocalSeconds start) const;
  void Remember(std::string_view callKey, LocalSeconds start);

  struct Entry {
    LocalSeconds start;
    std::uint64_t hash;
  };
  static Entry EntryOf(std::string_view callKey, LocalSeconds start) { return {start, Hash(callKey)}; }

  // The batch being appended: the log's size before it and after it, and
  // the calls it holds, remembered once it is complete.
  struct Batch {
    std::uint64_t before = 0;
    std::uint64_t after = 0;
    std::vector<Entry> calls;
  };
  const std::optional<Batch>& Pending() const { return pending_; }
  void BeginBatch(Batch batch) { pending_ = std::move(batch); }
  void CommitBatch();
  void AbandonBatch() { pending_.reset(); }

  static constexpr LocalSeconds kRemembered = 3 * 86400;

 private:
  void Add(const Entry& entry);
  static std::uint64_t Hash(std::string_view key);
  LocalSeconds Horizon() const { return newest_ - kRemembered; }

  std::optional<LocalSeconds> horizonFloor_;  // the horizon as last saved
  LocalSeconds newest_ = 0;
  bool any_ = false;
  std::unordered_set<std::uint64_t> known_;
  std::vector<Entry> entries_;
  std::optional<Batch> pending_;
};

}  // namespace cw
