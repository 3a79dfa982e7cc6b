#pragma once
// Where a streamed output goes. The text export writes through this seam so
// that a test can watch the bytes or make a write fail.

#include <string>
#include <string_view>

#include "support/atomic_file.h"

namespace cw {

class OutputFile {
 public:
  virtual ~OutputFile() = default;
  virtual void Write(std::string_view bytes) = 0;
  // Everything is written; the output is complete. Errors are reported here.
  virtual void Commit() = 0;
};

// A file written by the program's one file writer (AtomicFile): it appears
// under its name only when complete (at Commit, or at Publish when made with
// Publishing::kLater), follows links, keeps the mode of a file it replaces,
// writes into devices and refuses folders and the like. Errors 75/76 with the
// reason; the target is then left as it was.
class AtomicOutputFile final : public OutputFile {
 public:
  explicit AtomicOutputFile(std::string target, AtomicFile::Publishing publishing = AtomicFile::Publishing::kAtCommit)
      : file_(std::move(target), publishing) {}

  void Write(std::string_view bytes) override { file_.Write(bytes); }
  void Commit() override { file_.Commit(); }
  void Publish() { file_.Publish(); }
  const std::string& Target() const { return file_.Target(); }

 private:
  AtomicFile file_;
};

}  // namespace cw
