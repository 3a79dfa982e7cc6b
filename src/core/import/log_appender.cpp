#include "import/log_appender.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "support/runtime_error.h"

namespace cw {

namespace {

// Closes the log on every way out.
class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  ~Descriptor() {
    if (fd_ >= 0) ::close(fd_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int Get() const { return fd_; }

 private:
  int fd_;
};

[[noreturn]] void Fail(const std::string& what, const std::string& path, int error) {
  throw RuntimeError(err::kPathFileAccess, what + " " + path + ": " + std::strerror(error));
}

std::uint64_t SizeOf(const std::string& path) {
  struct stat info {};
  if (::stat(path.c_str(), &info) != 0) return 0;
  return static_cast<std::uint64_t>(info.st_size);
}

}  // namespace

LogAppender::LogAppender(std::string logPath, WriteFunction write)
    : logPath_(std::move(logPath)), statePath_(ImportState::PathFor(logPath_)), write_(std::move(write)) {
  if (!write_) write_ = [](int fd, const char* bytes, std::size_t size) { return static_cast<long>(::write(fd, bytes, size)); };
  state_ = ImportState::Load(statePath_);
  const std::optional<ImportState::Batch> pending = state_.Pending();
  if (!pending) return;
  const std::uint64_t size = SizeOf(logPath_);
  if (size >= pending->after) {
    state_.CommitBatch();
  } else {
    if (size > pending->before) {
      if (::truncate(logPath_.c_str(), static_cast<off_t>(pending->before)) != 0) {
        Fail("cannot cut the unfinished records off", logPath_, errno);
      }
      repaired_ = size - pending->before;
    }
    state_.AbandonBatch();
  }
  state_.Save(statePath_);
}

std::string LogAppender::LastRecord() const {
  const int fd = ::open(logPath_.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return {};
  const Descriptor log(fd);
  const std::uint64_t size = SizeOf(logPath_);
  constexpr std::uint64_t kTail = 4096;
  const std::uint64_t from = size > kTail ? size - kTail : 0;
  std::string tail(static_cast<std::size_t>(size - from), '\0');
  const ssize_t got = ::pread(fd, tail.data(), tail.size(), static_cast<off_t>(from));
  if (got <= 0) return {};
  tail.resize(static_cast<std::size_t>(got));
  // The last line that ends in a line feed, without its CR LF.
  std::size_t end = tail.rfind('\n');
  while (end != std::string::npos) {
    const std::size_t begin = end == 0 ? std::string::npos : tail.rfind('\n', end - 1);
    std::string line = tail.substr(begin == std::string::npos ? 0 : begin + 1,
                                   end - (begin == std::string::npos ? 0 : begin + 1));
    if (!line.empty() && line.back() == '\r') line.pop_back();
    const std::size_t first = line.find_first_not_of(' ');
    if (first != std::string::npos) return line.substr(first, line.find_last_not_of(' ') - first + 1);
    if (begin == std::string::npos) break;
    end = begin;
  }
  return {};
}

void LogAppender::Append(std::string_view records, std::vector<ImportState::Entry> calls) {
  if (records.empty()) return;
  const int fd = ::open(logPath_.c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
  if (fd < 0) Fail("cannot open the call log", logPath_, errno);
  const Descriptor log(fd);
  struct stat info {};
  if (::fstat(fd, &info) != 0) Fail("cannot read the size of", logPath_, errno);
  const auto before = static_cast<std::uint64_t>(info.st_size);

  std::string bytes;
  if (before > 0) {
    char last = '\n';
    if (::pread(fd, &last, 1, static_cast<off_t>(before - 1)) != 1) Fail("cannot read", logPath_, errno);
    if (last != '\n') bytes = "\r\n";
  }
  bytes.append(records);

  ImportState::Batch batch{before, before + bytes.size(), std::move(calls)};
  state_.BeginBatch(std::move(batch));
  state_.Save(statePath_);

  std::size_t written = 0;
  int error = 0;
  while (written < bytes.size()) {
    const long n = write_(fd, bytes.data() + written, bytes.size() - written);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) {
      error = n < 0 ? errno : ENOSPC;
      break;
    }
    written += static_cast<std::size_t>(n);
  }
  if (error == 0 && ::fsync(fd) != 0) error = errno;
  if (error != 0) {
    // Back to the last whole record; the state forgets the batch only when
    // the log is whole again, so that a failure here is settled next time.
    if (::ftruncate(fd, static_cast<off_t>(before)) == 0) {
      ::fsync(fd);
      state_.AbandonBatch();
      state_.Save(statePath_);
    }
    Fail("cannot write to the call log", logPath_, error);
  }
  state_.CommitBatch();
  state_.Save(statePath_);
}

}  // namespace cw
