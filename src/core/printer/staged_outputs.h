#pragma once
// The files of one request (text, kept spool, PDF, page images) written
// first under temporary names and given their names together once every one
// of them is complete: a request that fails half-way leaves the files of an
// earlier run as they were.

#include <memory>
#include <string>
#include <vector>

#include "printer/output_file.h"

namespace cw {

class StagedOutputs {
 public:
  StagedOutputs() = default;
  // What was not published is discarded.
  ~StagedOutputs() { Discard(); }
  StagedOutputs(const StagedOutputs&) = delete;
  StagedOutputs& operator=(const StagedOutputs&) = delete;

  // A new output; the writer commits it when complete, and it takes its name
  // at Publish. Errors 75/76 as for AtomicOutputFile.
  AtomicOutputFile& Add(const std::string& target);
  // A folder made to hold outputs: a discard removes it again when empty.
  void MadeFolder(const std::string& folder);
  // A file that goes when the outputs are published (a page image left by
  // an earlier, longer document).
  void RemoveAtPublish(const std::string& path);

  // Every output takes its name, in the order added; then the files to
  // remove go. Errors 75/76 of the first that fails; what is not yet
  // published is then discarded.
  void Publish();
  // Removes every temporary file, and the folders made for them when empty.
  void Discard() noexcept;

 private:
  std::vector<std::unique_ptr<AtomicOutputFile>> files_;
  std::vector<std::string> folders_;
  std::vector<std::string> obsolete_;
};

}  // namespace cw
