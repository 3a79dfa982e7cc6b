#pragma once
// Appends records to the call log in whole lines only. Each batch is
// journalled in the import state first (the log's size before and after,
// and the calls it holds); a batch that a crash or a full disk cut short is
// cut off again, back to the last whole record, and its calls forgotten, so
// that the next import writes them once.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "import/import_state.h"

namespace cw {

class LogAppender {
 public:
  // The system's write(2), or a stand-in that fails as a full disk does.
  using WriteFunction = std::function<long(int fd, const char* bytes, std::size_t size)>;

  // Loads the state file beside the log and settles a batch that an
  // earlier import left unfinished: kept when the log holds all of it,
  // else cut off. Errors 75 and 13 as ImportState::Load, 75 when the log
  // cannot be cut back.
  explicit LogAppender(std::string logPath, WriteFunction write = {});

  const ImportState& State() const { return state_; }
  // Bytes an unfinished batch left in the log that were cut off on opening.
  std::uint64_t Repaired() const { return repaired_; }

  // The last record of the log (its last line that ends in a line feed,
  // trimmed), or empty.
  std::string LastRecord() const;

  // Appends records (whole lines, each with its CR LF) holding the calls.
  // When the log does not end in a line end, one is written first, so a
  // record never runs on from someone else's last line. Error 75 naming
  // the cause when the bytes cannot all be written; the log is then as it
  // was before.
  void Append(std::string_view records, std::vector<ImportState::Entry> calls);

 private:
  std::string logPath_;
  std::string statePath_;
  WriteFunction write_;
  ImportState state_;
  std::uint64_t repaired_ = 0;
};

}  // namespace cw
