#include "printer/output_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "support/runtime_error.h"

namespace cw {

namespace {

constexpr std::size_t kBlockBytes = 1 << 20;

std::string FolderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  if (slash == 0) return "/";
  return path.substr(0, slash);
}

std::string NameOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

std::atomic<unsigned> temporaryCounter{0};

}  // namespace

AtomicOutputFile::AtomicOutputFile(std::string target) : target_(std::move(target)) {
  if (target_.empty()) throw RuntimeError(err::kPathFileAccess, "No output file name was given");
  if (NameOf(target_).empty()) Fail("write to", EISDIR);
  // A hidden name beside the target, so that the rename stays on one file
  // system, and so that a reader listing the folder does not take it for output.
  const std::string base = FolderOf(target_) + "/." + NameOf(target_) + "." + std::to_string(::getpid()) + ".";
  for (int attempt = 0; fd_ < 0; ++attempt) {
    temporary_ = base + std::to_string(temporaryCounter.fetch_add(1)) + ".tmp";
    fd_ = ::open(temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (fd_ < 0 && (errno != EEXIST || attempt > 100)) {
      const int error = errno;
      temporary_.clear();
      Fail("write to", error);
    }
  }
  pending_.reserve(kBlockBytes);
}

AtomicOutputFile::~AtomicOutputFile() { Discard(); }

void AtomicOutputFile::Write(std::string_view bytes) {
  if (fd_ < 0) throw RuntimeError(err::kBadFile, "The output file " + target_ + " is closed");
  if (pending_.size() + bytes.size() > kBlockBytes) Flush();
  if (bytes.size() >= kBlockBytes) {
    pending_.insert(pending_.end(), bytes.begin(), bytes.end());
    Flush();
    return;
  }
  pending_.insert(pending_.end(), bytes.begin(), bytes.end());
}

void AtomicOutputFile::Commit() {
  if (fd_ < 0) throw RuntimeError(err::kBadFile, "The output file " + target_ + " is closed");
  Flush();
  // On disk before it takes the target's name: a crash must not leave an
  // empty or partial file looking like finished output.
  if (::fsync(fd_) != 0) Fail("write", errno);
  const int fd = fd_;
  fd_ = -1;
  if (::close(fd) != 0) Fail("write", errno);
  if (::rename(temporary_.c_str(), target_.c_str()) != 0) Fail("write", errno);
  temporary_.clear();
}

void AtomicOutputFile::Flush() {
  const char* data = pending_.data();
  std::size_t size = pending_.size();
  while (size > 0) {
    const ssize_t written = ::write(fd_, data, size);
    if (written < 0) {
      if (errno == EINTR) continue;
      Fail("write", errno);
    }
    data += written;
    size -= static_cast<std::size_t>(written);
  }
  pending_.clear();
}

void AtomicOutputFile::Fail(const std::string& action, int error) {
  Discard();
  const int number = error == ENOENT || error == ENOTDIR ? err::kPathNotFound : err::kPathFileAccess;
  throw RuntimeError(number, "Cannot " + action + " " + target_ + ": " + std::strerror(error));
}

void AtomicOutputFile::Discard() {
  if (fd_ >= 0) ::close(fd_);
  fd_ = -1;
  if (!temporary_.empty()) ::unlink(temporary_.c_str());
  temporary_.clear();
  pending_.clear();
}

}  // namespace cw
