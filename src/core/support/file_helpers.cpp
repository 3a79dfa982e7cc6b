#include "support/file_helpers.h"

#include <dirent.h>
#include <fcntl.h>
#include <fnmatch.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <source_location>

#include "support/atomic_file.h"
#include "support/runtime_error.h"
#include "support/temporary_files.h"

namespace cw {

namespace {

constexpr char kSeparator = '/';

bool IsSeparator(char c) { return c == '/' || c == '\\'; }

// Closes a descriptor on every way out of a function.
class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (fd_ >= 0) ::close(fd_);
  }
  int Get() const { return fd_; }
  // Closes now and reports the result, for writes whose failure must be seen.
  int Close() {
    const int result = ::close(fd_);
    fd_ = -1;
    return result;
  }

 private:
  int fd_;
};

class DirectoryList {
 public:
  explicit DirectoryList(const std::string& folder)
      : dir_(::opendir(folder.empty() ? "." : folder.c_str())) {}
  DirectoryList(const DirectoryList&) = delete;
  DirectoryList& operator=(const DirectoryList&) = delete;
  ~DirectoryList() {
    if (dir_ != nullptr) ::closedir(dir_);
  }
  bool IsOpen() const { return dir_ != nullptr; }
  const dirent* Next() { return ::readdir(dir_); }

 private:
  DIR* dir_;
};

bool IsRegularFile(const std::string& path) {
  struct stat info;
  return ::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

// The folder part of a path ("." for a bare name, "/" for the root) and the
// name after the last separator.
std::string FolderOf(std::string_view path) {
  const std::size_t slash = path.rfind(kSeparator);
  if (slash == std::string_view::npos) return ".";
  if (slash == 0) return "/";
  return std::string(path.substr(0, slash));
}

std::string_view NameOf(std::string_view path) {
  const std::size_t slash = path.rfind(kSeparator);
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

// Only '*' and '?' are wildcards here; brackets and backslashes in a name are
// ordinary characters, so they are escaped for fnmatch.
std::string WildcardPattern(std::string_view name) {
  std::string pattern;
  pattern.reserve(name.size() + 4);
  for (char c : name) {
    if (c == '[' || c == ']' || c == '\\') pattern += '\\';
    pattern += c;
  }
  return pattern;
}

bool IsRegularEntry(const std::string& folder, const dirent& entry) {
  if (entry.d_type == DT_REG) return true;
  if (entry.d_type != DT_UNKNOWN && entry.d_type != DT_LNK) return false;
  return IsRegularFile(JoinPath(folder, entry.d_name));
}

bool AnyNormalFileMatches(const std::string& folder, std::string_view name) {
  DirectoryList list(folder);
  if (!list.IsOpen()) return false;
  const std::string pattern = WildcardPattern(name);
  while (const dirent* entry = list.Next()) {
    if (entry->d_name[0] == '.') continue;
    if (::fnmatch(pattern.c_str(), entry->d_name, 0) != 0) continue;
    if (IsRegularEntry(folder, *entry)) return true;
  }
  return false;
}

bool EqualsIgnoringAsciiCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    char x = a[i];
    char y = b[i];
    if (x >= 'A' && x <= 'Z') x = static_cast<char>(x - 'A' + 'a');
    if (y >= 'A' && y <= 'Z') y = static_cast<char>(y - 'A' + 'a');
    if (x != y) return false;
  }
  return true;
}

RuntimeError FileError(int number, std::string_view doing, const std::string& path, int errnum,
                       std::source_location where = std::source_location::current()) {
  std::string text(StandardErrorText(number));
  text += " (";
  text += doing;
  text += ' ';
  text += path;
  text += ": ";
  text += std::strerror(errnum);
  text += ')';
  return RuntimeError(number, std::move(text), {}, where);
}

}  // namespace

std::string GetTempFile(std::string_view prefix) {
  const char* fromEnvironment = std::getenv("TMPDIR");
  std::string folder = (fromEnvironment != nullptr && *fromEnvironment != '\0') ? fromEnvironment : "/tmp";
  if (folder.front() != kSeparator) {
    // The result is a full path even when TMPDIR is relative.
    char* current = ::getcwd(nullptr, 0);
    if (current == nullptr) return {};
    folder = JoinPath(current, folder);
    std::free(current);
  }
  std::string path = JoinPath(folder, "");
  for (char c : prefix.substr(0, 3)) path += IsSeparator(c) ? '_' : c;
  path += "XXXXXX.tmp";
  // mkstemps makes the file exclusively, empty and readable by its owner only.
  const CleanupSignalsHeld held;
  const int fd = ::mkstemps(path.data(), 4);
  if (fd < 0) return {};
  ::close(fd);
  RegisterTemporaryFile(path);
  return path;
}

bool FileExists(std::string_view path) {
  if (path.empty()) return false;
  const std::string_view name = NameOf(path);
  // Hidden files do not count, and neither do "." and "..".
  if (name.empty() || name.front() == '.') return false;
  if (name.find_first_of("*?") == std::string_view::npos) return IsRegularFile(std::string(path));
  return AnyNormalFileMatches(FolderOf(path), name);
}

bool IsAllDigits(std::string_view text) {
  if (text.empty()) return false;
  for (char c : text) {
    if (c < '0' || c > '9') return false;
  }
  return true;
}

std::string JoinPath(std::string_view folder, std::string_view name) {
  while (!name.empty() && IsSeparator(name.front())) name.remove_prefix(1);
  std::string path(folder);
  if (!path.empty() && path.back() != kSeparator) path += kSeparator;
  for (char c : name) path += IsSeparator(c) ? kSeparator : c;
  return path;
}

std::optional<std::string> FindFileNoCase(std::string_view folder, std::string_view name) {
  while (!name.empty() && IsSeparator(name.front())) name.remove_prefix(1);
  if (name.empty()) return std::nullopt;
  std::string exact = JoinPath(folder, name);
  struct stat info;
  if (::lstat(exact.c_str(), &info) == 0) return exact;

  DirectoryList list{std::string(folder)};
  if (!list.IsOpen()) return std::nullopt;
  // Of several names differing only in case the smallest wins, so that the
  // answer does not depend on the order of the directory.
  std::optional<std::string> best;
  while (const dirent* entry = list.Next()) {
    const std::string_view entryName = entry->d_name;
    if (!EqualsIgnoringAsciiCase(entryName, name)) continue;
    if (!best || entryName < *best) best = std::string(entryName);
  }
  if (!best) return std::nullopt;
  return JoinPath(folder, *best);
}

std::string ReadWholeFile(const std::string& path) {
  Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (file.Get() < 0) {
    const int errnum = errno;
    if (errnum == ENOENT || errnum == ENOTDIR) throw FileError(err::kFileNotFound, "reading", path, errnum);
    throw FileError(err::kPathFileAccess, "reading", path, errnum);
  }
  struct stat info;
  if (::fstat(file.Get(), &info) != 0) throw FileError(err::kPathFileAccess, "reading", path, errno);
  if (S_ISDIR(info.st_mode)) throw FileError(err::kPathFileAccess, "reading", path, EISDIR);

  // One read for the size the file has now; a file still growing is read on
  // to its end.
  std::string data;
  data.resize(info.st_size > 0 ? static_cast<std::size_t>(info.st_size) : 4096);
  std::size_t filled = 0;
  for (;;) {
    if (filled == data.size()) data.resize(data.size() * 2);
    const ssize_t got = ::read(file.Get(), data.data() + filled, data.size() - filled);
    if (got < 0) {
      if (errno == EINTR) continue;
      throw FileError(err::kPathFileAccess, "reading", path, errno);
    }
    if (got == 0) break;
    filled += static_cast<std::size_t>(got);
  }
  data.resize(filled);
  return data;
}

void WriteFileAtomically(const std::string& path, std::string_view bytes) {
  try {
    AtomicFile file(path);
    file.Write(bytes);
    file.Commit();
  } catch (const RuntimeError& error) {
    // Whatever the cause, a file that could not be written is error 75 here.
    if (error.Number() == err::kPathFileAccess) throw;
    throw RuntimeError(err::kPathFileAccess, std::string(StandardErrorText(err::kPathFileAccess)) + " (" +
                                                 error.Description() + ")");
  }
}

}  // namespace cw
