#pragma once
// Where a streamed output goes. The text export writes through this seam so
// that a test can watch the bytes or make a write fail.

#include <string>
#include <string_view>
#include <vector>

namespace cw {

class OutputFile {
 public:
  virtual ~OutputFile() = default;
  virtual void Write(std::string_view bytes) = 0;
  // Everything is written; the output is complete. Errors are reported here.
  virtual void Commit() = 0;
};

// A file that appears under its name only when complete: the bytes go to a
// temporary file beside the target, which Commit flushes to disk and renames
// over the target. Any failure (unwritable folder, full disk) is error 75, or
// 76 when the folder does not exist, with the reason; the temporary file is
// removed and the target left as it was. Without Commit the destructor
// removes the temporary file.
class AtomicOutputFile : public OutputFile {
 public:
  explicit AtomicOutputFile(std::string target);
  ~AtomicOutputFile() override;
  AtomicOutputFile(const AtomicOutputFile&) = delete;
  AtomicOutputFile& operator=(const AtomicOutputFile&) = delete;

  void Write(std::string_view bytes) override;
  void Commit() override;

  const std::string& TemporaryPath() const { return temporary_; }

 private:
  void Flush();
  [[noreturn]] void Fail(const std::string& action, int error);
  void Discard();

  std::string target_;
  std::string temporary_;
  int fd_ = -1;
  std::vector<char> pending_;
};

}  // namespace cw
