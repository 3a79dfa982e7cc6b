#include "data/oldest_log_date.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string_view>

#include "support/date_format.h"
#include "support/file_helpers.h"
#include "support/runtime_error.h"
#include "support/text.h"

namespace cw {

namespace {

[[noreturn]] void ThrowReadError(const std::string& path, int errorNumber) {
  std::string text(StandardErrorText(err::kPathFileAccess));
  text += " (reading ";
  text += path;
  text += ": ";
  text += std::strerror(errorNumber);
  text += ')';
  throw RuntimeError(err::kPathFileAccess, std::move(text));
}

}  // namespace

std::optional<std::string> OldestLogDate(const std::string& logPath, CivilDate today) {
  if (logPath.empty() || !FileExists(logPath)) return std::nullopt;
  const int fd = ::open(logPath.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) ThrowReadError(logPath, errno);

  // Ten characters decide everything; the rest of the first line is not read.
  char head[16];
  ssize_t got;
  do {
    got = ::read(fd, head, sizeof head);
  } while (got < 0 && errno == EINTR);
  const int readError = errno;
  ::close(fd);
  if (got < 0) ThrowReadError(logPath, readError);

  std::string_view line(head, static_cast<std::size_t>(got));
  line = line.substr(0, line.find_first_of("\r\n"));
  if (Mid(line, 3, 1) != "/" && Mid(line, 6, 1) != "/") return FormatDate(today, "mm/dd/yyyy");
  return std::string(line.substr(0, 10));
}

}  // namespace cw
