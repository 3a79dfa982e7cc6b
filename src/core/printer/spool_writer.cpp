#include "printer/spool_writer.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "support/file_helpers.h"
#include "support/runtime_error.h"

namespace cw {

namespace {

// About 100 KB: some ten thousand write calls per million records. The block
// stays below the size from which allocators map memory afresh for every
// block (128 KB), which a spool made for every small report would pay.
constexpr std::size_t kBlockRecords = 256;

int OpenReadWrite(const std::string& path, int extraFlags) {
  int fd;
  do {
    fd = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | extraFlags, 0600);
  } while (fd < 0 && errno == EINTR);
  return fd;
}

std::string Describe(const char* action, const std::string& path, int error) {
  return std::string("Cannot ") + action + " the spool file " + path + ": " + std::strerror(error);
}

}  // namespace

std::unique_ptr<SpoolWriter> SpoolWriter::CreateTemporary(const SpoolRecord& header) {
  std::string path = GetTempFile("VPR");
  if (path.empty()) {
    throw RuntimeError(err::kPathFileAccess,
                       "Cannot make a spool file in the temporary folder (TMPDIR or /tmp)");
  }
  return std::make_unique<SpoolWriter>(std::move(path), header);
}

SpoolWriter::SpoolWriter(std::string path, const SpoolRecord& header) : path_(std::move(path)) {
  fd_ = OpenReadWrite(path_, O_TRUNC);
  if (fd_ < 0) throw RuntimeError(err::kPathFileAccess, Describe("open", path_, errno));
  // The header goes to disk at once: a spool that cannot even hold its header
  // fails where it is created.
  Append(header);
  Flush();
}

SpoolWriter::~SpoolWriter() {
  if (fd_ < 0) return;
  try {
    Flush();
  } catch (const RuntimeError&) {
    // Nobody is left to tell; Close is the call that reports.
  }
  ::close(fd_);
}

void SpoolWriter::Append(const SpoolRecord& record) {
  if (fd_ < 0) throw RuntimeError(err::kBadFile, "The spool file " + path_ + " is closed");
  if (!failure_.empty()) return;  // already reported; Close reports it again
  pending_.insert(pending_.end(), record.begin(), record.end());
  ++nextRecord_;
  if (pending_.size() >= kBlockRecords * kSpoolRecordSize) Flush();
}

void SpoolWriter::RewriteHeader(const std::function<void(SpoolRecord&)>& change) {
  if (fd_ < 0) throw RuntimeError(err::kBadFile, "The spool file " + path_ + " is closed");
  Flush();
  SpoolRecord header{};
  ReadAt(header.data(), header.size(), 0);
  change(header);
  WriteAt(header.data(), header.size(), 0);
}

bool SpoolWriter::ReopenIfVanished() {
  if (fd_ < 0) throw RuntimeError(err::kBadFile, "The spool file " + path_ + " is closed");
  if (FileExists(path_)) return false;
  Flush();
  ::close(fd_);
  fd_ = OpenReadWrite(path_, 0);
  if (fd_ < 0) {
    const int error = errno;
    failure_ = Describe("reopen", path_, error);
    throw RuntimeError(err::kPathFileAccess, failure_);
  }
  struct stat info;
  if (::fstat(fd_, &info) != 0) Fail("measure", errno);
  const std::int64_t wholeRecords = info.st_size / static_cast<std::int64_t>(kSpoolRecordSize);
  nextRecord_ = wholeRecords + 1;
  pendingStart_ = wholeRecords * static_cast<std::int64_t>(kSpoolRecordSize);
  return true;
}

void SpoolWriter::Close() {
  if (fd_ < 0) return;
  try {
    Flush();
  } catch (const RuntimeError&) {
    // Recorded in failure_ and reported below.
  }
  if (::close(fd_) != 0 && failure_.empty()) failure_ = Describe("close", path_, errno);
  fd_ = -1;
  if (!failure_.empty()) throw RuntimeError(err::kPathFileAccess, failure_);
}

void SpoolWriter::Flush() {
  if (pending_.empty() || !failure_.empty()) {
    pending_.clear();
    return;
  }
  const std::int64_t start = pendingStart_;
  pendingStart_ += static_cast<std::int64_t>(pending_.size());
  try {
    WriteAt(pending_.data(), pending_.size(), start);
  } catch (const RuntimeError&) {
    pending_.clear();
    throw;
  }
  pending_.clear();
}

void SpoolWriter::WriteAt(const char* data, std::size_t size, std::int64_t offset) {
  while (size > 0) {
    const ssize_t written = ::pwrite(fd_, data, size, offset);
    if (written < 0) {
      if (errno == EINTR) continue;
      Fail("write", errno);
    }
    if (written == 0) Fail("write", ENOSPC);
    data += written;
    size -= static_cast<std::size_t>(written);
    offset += written;
  }
}

void SpoolWriter::ReadAt(char* data, std::size_t size, std::int64_t offset) {
  while (size > 0) {
    const ssize_t got = ::pread(fd_, data, size, offset);
    if (got < 0) {
      if (errno == EINTR) continue;
      Fail("read", errno);
    }
    if (got == 0) {
      // Past the end reads as zero bytes, as a record never written does.
      std::memset(data, 0, size);
      return;
    }
    data += got;
    size -= static_cast<std::size_t>(got);
    offset += got;
  }
}

void SpoolWriter::Fail(const char* action, int error) {
  failure_ = Describe(action, path_, error);
  throw RuntimeError(err::kPathFileAccess, failure_);
}

}  // namespace cw
