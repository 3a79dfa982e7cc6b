#include "data/log_buffer.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <source_location>
#include <utility>

#include "support/runtime_error.h"

namespace cw {

namespace {

// Closes the descriptor on every way out of Load; a failed close of a file
// opened for reading loses nothing.
class ReadOnlyFile {
 public:
  explicit ReadOnlyFile(int fd) : fd_(fd) {}
  ReadOnlyFile(const ReadOnlyFile&) = delete;
  ReadOnlyFile& operator=(const ReadOnlyFile&) = delete;
  ~ReadOnlyFile() { ::close(fd_); }
  int Get() const { return fd_; }

 private:
  int fd_;
};

// "File not found (reading /var/log/calls.log: No such file or directory)".
[[noreturn]] void ThrowFileError(int number, const std::string& path, int errorNumber,
                                 std::source_location where = std::source_location::current()) {
  std::string text(StandardErrorText(number));
  text += " (reading ";
  text += path;
  text += ": ";
  text += std::strerror(errorNumber);
  text += ')';
  throw RuntimeError(number, std::move(text), {}, where);
}

// From this size the copy goes to memory of its own, in huge pages where the
// system allows: a log of years is then filled and walked with a few
// hundred page faults and TLB entries instead of hundreds of thousands.
constexpr std::size_t kOwnMappingFrom = std::size_t{4} << 20;

std::unique_ptr<char, LogBytesRelease> AllocateCopy(std::size_t size) {
  if (size >= kOwnMappingFrom) {
    void* memory = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory != MAP_FAILED) {
      (void)::madvise(memory, size, MADV_HUGEPAGE);
      return std::unique_ptr<char, LogBytesRelease>(static_cast<char*>(memory), LogBytesRelease{size});
    }
  }
  return std::unique_ptr<char, LogBytesRelease>(new char[size]);
}

}  // namespace

void LogBytesRelease::operator()(char* bytes) const {
  if (mappedSize != 0) {
    ::munmap(bytes, mappedSize);
  } else {
    delete[] bytes;
  }
}

LogBuffer LogBuffer::Load(const std::string& path) {
  // Non-blocking so that a named pipe in place of the log is refused below
  // instead of waiting for a writer; a regular file ignores the flag.
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (fd < 0) {
    const int error = errno;
    ThrowFileError(error == ENOENT || error == ENOTDIR ? err::kFileNotFound : err::kPathFileAccess,
                   path, error);
  }
  ReadOnlyFile file(fd);

  struct stat info {};
  if (::fstat(fd, &info) != 0) ThrowFileError(err::kPathFileAccess, path, errno);
  if (!S_ISREG(info.st_mode)) {
    ThrowFileError(err::kPathFileAccess, path, S_ISDIR(info.st_mode) ? EISDIR : EINVAL);
  }
  // GetRecord counts positions in 32 bits, as the log reader always has.
  if (info.st_size > std::numeric_limits<std::int32_t>::max()) {
    ThrowFileError(err::kOverflow, path, EFBIG);
  }

  LogBuffer buffer;
  const auto wanted = static_cast<std::size_t>(info.st_size);
  if (wanted == 0) return buffer;
  // The log is copied, not mapped: log rotation may truncate it while a
  // report walks it, and a mapping would then fault on the vanished pages.
  // A copy is the file as it was, whatever happens to it afterwards.
  (void)::posix_fadvise(fd, 0, 0, POSIX_FADV_SEQUENTIAL);
  buffer.data_ = AllocateCopy(wanted);

  // The logging program may append while we read; what was there when we
  // looked at the size is the snapshot, and a file that shrank meanwhile gives
  // what could still be read.
  std::size_t got = 0;
  while (got < wanted) {
    const ssize_t n = ::read(fd, buffer.data_.get() + got, wanted - got);
    if (n < 0) {
      if (errno == EINTR) continue;
      ThrowFileError(err::kPathFileAccess, path, errno);
    }
    if (n == 0) break;
    got += static_cast<std::size_t>(n);
  }
  buffer.size_ = got;
  return buffer;
}

LogBuffer LogBuffer::FromText(std::string_view text) {
  LogBuffer buffer;
  if (text.empty()) return buffer;
  buffer.data_ = AllocateCopy(text.size());
  std::memcpy(buffer.data_.get(), text.data(), text.size());
  buffer.size_ = text.size();
  return buffer;
}

}  // namespace cw
