#include "printer/staged_outputs.h"

#include <unistd.h>

namespace cw {

AtomicOutputFile& StagedOutputs::Add(const std::string& target) {
  files_.push_back(std::make_unique<AtomicOutputFile>(target, AtomicFile::Publishing::kLater));
  return *files_.back();
}

void StagedOutputs::MadeFolder(const std::string& folder) { folders_.push_back(folder); }

void StagedOutputs::RemoveAtPublish(const std::string& path) { obsolete_.push_back(path); }

void StagedOutputs::Publish() {
  try {
    for (const auto& file : files_) file->Publish();
  } catch (...) {
    Discard();
    throw;
  }
  for (const std::string& path : obsolete_) ::unlink(path.c_str());
  files_.clear();
  folders_.clear();
  obsolete_.clear();
}

void StagedOutputs::Discard() noexcept {
  files_.clear();
  // Made last, removed first: a folder made inside another goes before it.
  for (auto folder = folders_.rbegin(); folder != folders_.rend(); ++folder) ::rmdir(folder->c_str());
  folders_.clear();
  obsolete_.clear();
}

}  // namespace cw
