#include "support/atomic_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstring>

#include "support/runtime_error.h"
#include "support/temporary_files.h"

namespace cw {

namespace {

constexpr std::size_t kBlockBytes = 1 << 20;
// As the system's own path lookup gives up (ELOOP).
constexpr int kMostLinks = 40;

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

// /dev/stdout leads to /proc/self/fd/1, whose link text may name no file at
// all ("pipe:[4711]"): such a link is opened as it is, which reaches the
// open file behind it.
bool IsDescriptorLink(const std::string& path) {
  return path.starts_with("/dev/fd/") || (path.starts_with("/proc/") && path.find("/fd/") != std::string::npos);
}

OutputTarget Classify(std::string path, mode_t mode, bool throughDescriptor) {
  OutputTarget target;
  target.path = std::move(path);
  if (S_ISREG(mode)) {
    // A file already open as standard output is appended to where it is:
    // renaming over it would leave the shell writing to a removed file.
    target.kind = throughDescriptor ? OutputKind::kStream : OutputKind::kFile;
  } else if (S_ISCHR(mode) || S_ISFIFO(mode)) {
    target.kind = OutputKind::kStream;
  } else {
    target.kind = OutputKind::kRefused;
    target.refusal = S_ISDIR(mode)    ? "a folder"
                     : S_ISSOCK(mode) ? "a socket"
                     : S_ISBLK(mode)  ? "a block device"
                                      : "not a file";
  }
  return target;
}

std::atomic<unsigned> temporaryCounter{0};

}  // namespace

OutputTarget ResolveOutputTarget(const std::string& name) {
  std::string path = name;
  for (int hop = 0; hop <= kMostLinks; ++hop) {
    struct stat info;
    if (::lstat(path.c_str(), &info) != 0) return OutputTarget{path, OutputKind::kNewFile, {}};
    if (!S_ISLNK(info.st_mode)) return Classify(path, info.st_mode, false);
    if (IsDescriptorLink(path)) {
      if (::stat(path.c_str(), &info) != 0) return OutputTarget{path, OutputKind::kNewFile, {}};
      return Classify(path, info.st_mode, true);
    }
    char link[PATH_MAX];
    const ssize_t length = ::readlink(path.c_str(), link, sizeof link - 1);
    if (length < 0) return OutputTarget{path, OutputKind::kNewFile, {}};
    const std::string text(link, static_cast<std::size_t>(length));
    path = text.starts_with('/') ? text : FolderOf(path) + "/" + text;
  }
  return OutputTarget{name, OutputKind::kRefused, "a loop of links"};
}

std::optional<FileIdentity> IdentityOf(const std::string& path) {
  struct stat info;
  if (path.empty() || ::stat(path.c_str(), &info) != 0) return std::nullopt;
  return FileIdentity{info.st_dev, info.st_ino};
}

AtomicFile::AtomicFile(std::string target, Publishing publishing)
    : target_(std::move(target)), publishing_(publishing) {
  if (target_.empty()) throw RuntimeError(err::kPathFileAccess, "No output file name was given");
  const OutputTarget resolved = ResolveOutputTarget(target_);
  path_ = resolved.path;
  if (resolved.kind == OutputKind::kRefused) Fail(EINVAL, "it is " + resolved.refusal + ", not a file");
  if (resolved.kind == OutputKind::kStream) {
    streamed_ = true;
    fd_ = ::open(path_.c_str(), O_WRONLY | O_APPEND | O_NOCTTY | O_CLOEXEC);
    if (fd_ < 0) Fail(errno);
    return;
  }
  if (NameOf(path_).empty()) Fail(EISDIR);
  if (resolved.kind == OutputKind::kFile) {
    struct stat info;
    if (::stat(path_.c_str(), &info) == 0) {
      replacing_ = true;
      mode_ = info.st_mode & 07777;
      owner_ = info.st_uid;
      group_ = info.st_gid;
    }
  }
  // A hidden name beside the target, so that the rename stays on one file
  // system, and so that a reader listing the folder does not take it for output.
  const std::string base = FolderOf(path_) + "/." + NameOf(path_) + "." + std::to_string(::getpid()) + ".";
  int error = 0;
  {
    const CleanupSignalsHeld held;
    for (int attempt = 0; fd_ < 0; ++attempt) {
      temporary_ = base + std::to_string(temporaryCounter.fetch_add(1)) + ".tmp";
      fd_ = ::open(temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
      error = errno;
      if (fd_ < 0 && (error != EEXIST || attempt > 100)) break;
    }
    if (fd_ >= 0) RegisterTemporaryFile(temporary_);
  }
  if (fd_ < 0) {
    temporary_.clear();
    Fail(error);
  }
  if (replacing_) KeepOwnerAndMode();
}

AtomicFile::~AtomicFile() { Discard(); }

// Before any byte is written, so that a file kept private is never readable
// by others, not even while it is being written.
void AtomicFile::KeepOwnerAndMode() {
  struct stat mine;
  if (::fstat(fd_, &mine) != 0) Fail(errno);
  // Only root may give a file away; anyone else keeps the file as theirs,
  // which is what writing a file of one's own gives anyway.
  if ((mine.st_uid != owner_ || mine.st_gid != group_) && ::fchown(fd_, owner_, group_) != 0 && errno != EPERM) {
    Fail(errno);
  }
  // After the owner: changing it may clear the set-id bits.
  if (::fchmod(fd_, mode_) != 0) Fail(errno);
}

void AtomicFile::Write(std::string_view bytes) {
  if (fd_ < 0) throw RuntimeError(err::kBadFile, "The output file " + target_ + " is closed");
  if (pending_.size() + bytes.size() > kBlockBytes) Flush();
  pending_.insert(pending_.end(), bytes.begin(), bytes.end());
  if (pending_.size() >= kBlockBytes) Flush();
}

void AtomicFile::Commit() {
  if (fd_ < 0) throw RuntimeError(err::kBadFile, "The output file " + target_ + " is closed");
  Flush();
  // On disk before it takes the target's name: a crash must not leave an
  // empty or partial file looking like finished output. A device or pipe
  // has nothing to sync.
  if (!streamed_ && ::fsync(fd_) != 0) Fail(errno);
  const int fd = fd_;
  fd_ = -1;
  if (::close(fd) != 0) Fail(errno);
  committed_ = true;
  if (publishing_ == Publishing::kAtCommit) Publish();
}

void AtomicFile::Publish() {
  if (!committed_) throw RuntimeError(err::kBadFile, "The output file " + target_ + " is not complete");
  if (temporary_.empty()) return;
  // Something else may have taken the name while the file was written; only
  // a regular file (or nothing) is ever replaced.
  struct stat now;
  if (::lstat(path_.c_str(), &now) == 0 && !S_ISREG(now.st_mode)) {
    Fail(EEXIST, "something that is not a file has taken its name");
  }
  if (::rename(temporary_.c_str(), path_.c_str()) != 0) Fail(errno);
  ForgetTemporaryFile(temporary_);
  temporary_.clear();
  // The new name itself durable; a folder that cannot be synced still holds
  // the complete file, so that is no failure.
  const int folder = ::open(FolderOf(path_).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder >= 0) {
    ::fsync(folder);
    ::close(folder);
  }
}

void AtomicFile::Flush() {
  const char* data = pending_.data();
  std::size_t size = pending_.size();
  while (size > 0) {
    const ssize_t written = ::write(fd_, data, size);
    if (written < 0) {
      if (errno == EINTR) continue;
      Fail(errno);
    }
    data += written;
    size -= static_cast<std::size_t>(written);
  }
  pending_.clear();
}

void AtomicFile::Fail(int error, const std::string& reason) {
  Discard();
  const int number = error == ENOENT || error == ENOTDIR ? err::kPathNotFound : err::kPathFileAccess;
  throw RuntimeError(number, "Cannot write to " + target_ + ": " + (reason.empty() ? std::strerror(error) : reason));
}

void AtomicFile::Discard() noexcept {
  if (fd_ >= 0) ::close(fd_);
  fd_ = -1;
  if (!temporary_.empty()) {
    ::unlink(temporary_.c_str());
    ForgetTemporaryFile(temporary_);
  }
  temporary_.clear();
  pending_.clear();
}

}  // namespace cw
