#pragma once
// The whole call log in memory. Every report reads the log once, in one piece,
// before its record loop; the buffer is a copy of the file at that moment, so
// that nothing done to the file later (log rotation truncates it) reaches a
// report that is still walking it.
// The log belongs to the logging program, which keeps appending to it: it is
// opened for reading only, never locked and never written.

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace cw {

// A large log's copy lives in memory mapped for it alone (see Load); the
// rest in an ordinary array.
struct LogBytesRelease {
  std::size_t mappedSize = 0;
  void operator()(char* bytes) const;
};

class LogBuffer {
 public:
  LogBuffer() = default;  // an empty log

  // Reads the file whole. Error 53 when it does not exist, 75 when it cannot
  // be opened or read (a folder, no permission, an I/O error), 6 when it is
  // too long for the reader's 32-bit positions; the description names the
  // file.
  static LogBuffer Load(const std::string& path);

  // Wraps text that is already in memory (a copy is taken).
  static LogBuffer FromText(std::string_view text);

  std::string_view Text() const { return {data_.get(), size_}; }
  std::size_t Size() const { return size_; }

 private:
  std::unique_ptr<char, LogBytesRelease> data_;
  std::size_t size_ = 0;
};

}  // namespace cw
