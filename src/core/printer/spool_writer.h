#pragma once
// Writes a spool file: the header as record 1, then command records appended
// one after the other. Records are gathered in memory and written in large
// blocks, since a report spools hundreds of thousands of them; anything that
// reads the file back (a header rewrite, the vanished-file check) writes the
// pending records first.
//
// A failed write is reported once as error 75 when it happens; the records
// after it are dropped, and Close reports the failure again so that a document
// whose spool is incomplete never passes for a finished one. The destructor
// closes quietly.

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "printer/spool_format.h"

namespace cw {

class SpoolWriter {
 public:
  // A fresh temporary file named "VPR..." (GetTempFile), with `header` as
  // record 1. Error 75 when no temporary file can be made or opened.
  static std::unique_ptr<SpoolWriter> CreateTemporary(const SpoolRecord& header);

  // Opens the file at `path` for reading and writing, creating it or emptying
  // it, and writes `header` as record 1. Error 75 when it cannot be opened.
  SpoolWriter(std::string path, const SpoolRecord& header);
  ~SpoolWriter();
  SpoolWriter(const SpoolWriter&) = delete;
  SpoolWriter& operator=(const SpoolWriter&) = delete;

  const std::string& Path() const { return path_; }
  bool IsOpen() const { return fd_ >= 0; }
  // Number (1-based) of the record the next Append writes.
  std::int64_t NextRecord() const { return nextRecord_; }

  // Writes the record after the last one written. Error 52 once closed.
  void Append(const SpoolRecord& record);

  // Reads record 1 from the file, lets `change` alter it, and writes it back
  // in place; the next Append still lands after the last record.
  void RewriteHeader(const std::function<void(SpoolRecord&)>& change);

  // The font-record recovery: when the file no longer exists under its name,
  // the handle is closed and the file reopened (created) under the same name,
  // and the next record goes after the whole records it holds. True when the
  // file had to be reopened.
  bool ReopenIfVanished();

  // Writes what is pending and closes; error 75 when any write of this file
  // failed. Closing twice is allowed.
  void Close();

 private:
  void Flush();
  void WriteAt(const char* data, std::size_t size, std::int64_t offset);
  void ReadAt(char* data, std::size_t size, std::int64_t offset);
  [[noreturn]] void Fail(const char* action, int error);

  std::string path_;
  int fd_ = -1;
  std::vector<char> pending_;       // whole records not yet written
  std::int64_t pendingStart_ = 0;   // file offset of the first pending byte
  std::int64_t nextRecord_ = 1;
  std::string failure_;             // the first failed write, for Close
};

}  // namespace cw
