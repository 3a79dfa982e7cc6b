#include "cli/import_follow.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/inotify.h>
#include <sys/signalfd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <ostream>
#include <set>

#include "cli/import_messages.h"
#include "import/call_log_batch.h"
#include "import/cdr_import.h"
#include "support/runtime_error.h"

namespace cw::cli {

namespace {

// A call is written once no leg of it has come for this long: the PBX
// writes the legs of one call within moments of each other.
constexpr std::int64_t kQuietMs = 1000;
// While calls wait, the loop wakes this often to write those gone quiet.
constexpr int kWakeMs = 250;

std::int64_t NowMs() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

[[noreturn]] void Fail(const std::string& what, int error) {
  throw RuntimeError(err::kPathFileAccess, what + ": " + std::strerror(error));
}

class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int fd) : fd_(fd) {}
  ~Descriptor() { Reset(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  void Reset(int fd = -1) {
    if (fd_ >= 0) ::close(fd_);
    fd_ = fd;
  }
  int Get() const { return fd_; }

 private:
  int fd_ = -1;
};

// SIGINT and SIGTERM arrive as readable data instead of interrupting a
// write; the mask is restored when following ends.
class StopSignals {
 public:
  StopSignals() {
    sigset_t stops;
    sigemptyset(&stops);
    sigaddset(&stops, SIGINT);
    sigaddset(&stops, SIGTERM);
    if (::sigprocmask(SIG_BLOCK, &stops, &previous_) != 0) Fail("cannot block SIGINT and SIGTERM", errno);
    fd_.Reset(::signalfd(-1, &stops, SFD_CLOEXEC | SFD_NONBLOCK));
    if (fd_.Get() < 0) Fail("cannot wait for signals", errno);
  }
  ~StopSignals() { ::sigprocmask(SIG_SETMASK, &previous_, nullptr); }
  int Fd() const { return fd_.Get(); }

 private:
  sigset_t previous_{};
  Descriptor fd_;
};

// The CDR file as it is followed: the open file, how far it is read, and
// the row that is still being written.
class FollowedFile {
 public:
  FollowedFile(std::string path, CdrImporter& importer) : path_(std::move(path)), importer_(importer) {}

  // Opens the file at its name when it is not open (it may not exist yet).
  void OpenIfThere() {
    if (fd_.Get() >= 0) return;
    const int fd = ::open(path_.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return;
    fd_.Reset(fd);
    offset_ = 0;
    line_ = 1;
    partial_.clear();
    tail_.clear();
  }

  // Reads what was added, follows a truncation or a new file under the
  // name, and hands the whole rows to the importer.
  void Catch(std::int64_t tick) {
    OpenIfThere();
    if (fd_.Get() < 0) return;
    struct stat open {};
    if (::fstat(fd_.Get(), &open) != 0) Fail("cannot read " + path_, errno);
    if (static_cast<std::uint64_t>(open.st_size) < offset_ || !SameTail()) {
      // Cut back (copytruncate rotation), perhaps already written past
      // where it was read: what follows is a new file.
      offset_ = 0;
      line_ = 1;
      partial_.clear();
      tail_.clear();
      importer_.ExpectHeader();
    }
    ReadToEnd(tick, false);
    struct stat named {};
    const bool replaced = ::stat(path_.c_str(), &named) != 0 || named.st_ino != open.st_ino ||
                          named.st_dev != open.st_dev;
    if (replaced) {
      // Renamed away and made again: the old file is finished (a last row
      // without its line end included), the new one starts afresh.
      ReadToEnd(tick, true);
      fd_.Reset();
      OpenIfThere();
      if (fd_.Get() >= 0) {
        importer_.ExpectHeader();
        ReadToEnd(tick, false);
      }
    }
  }

 private:
  // Whether the bytes last read are still where they were.
  bool SameTail() const {
    if (tail_.empty()) return true;
    std::string now(tail_.size(), '\0');
    const ssize_t got = ::pread(fd_.Get(), now.data(), now.size(), static_cast<off_t>(offset_ - tail_.size()));
    return got == static_cast<ssize_t>(now.size()) && now == tail_;
  }

  void ReadToEnd(std::int64_t tick, bool complete) {
    char chunk[1 << 16];
    for (;;) {
      const ssize_t got = ::pread(fd_.Get(), chunk, sizeof chunk, static_cast<off_t>(offset_));
      if (got < 0 && errno == EINTR) continue;
      if (got < 0) Fail("cannot read " + path_, errno);
      if (got == 0) break;
      offset_ += static_cast<std::uint64_t>(got);
      partial_.append(chunk, static_cast<std::size_t>(got));
      tail_.append(chunk, static_cast<std::size_t>(got));
      if (tail_.size() > kTail) tail_.erase(0, tail_.size() - kTail);
      Feed(tick, false);
    }
    if (complete) Feed(tick, true);
  }

  void Feed(std::int64_t tick, bool complete) {
    const std::size_t used = importer_.Feed(partial_, line_, complete, tick);
    line_ += static_cast<std::int64_t>(std::count(partial_.begin(), partial_.begin() + static_cast<long>(used), '\n'));
    partial_.erase(0, used);
  }

  std::string path_;
  CdrImporter& importer_;
  Descriptor fd_;
  std::uint64_t offset_ = 0;
  std::int64_t line_ = 1;
  std::string partial_;
  std::string tail_;  // the last bytes read, to notice the file cut back and written again
  static constexpr std::size_t kTail = 64;
};

}  // namespace

int FollowCdr(const ImportConfig& config, LogAppender& appender, std::ostream& out, std::ostream& err) {
  StopSignals signals;
  Descriptor watch(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
  if (watch.Get() < 0) Fail("cannot watch " + config.cdr, errno);
  // The folder is watched rather than the file: its events tell of writes
  // to the file, and of a new file under the name after a rotation.
  std::string folder = std::filesystem::path(config.cdr).parent_path().string();
  if (folder.empty()) folder = ".";
  if (::inotify_add_watch(watch.Get(), folder.c_str(),
                          IN_MODIFY | IN_CREATE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE | IN_CLOSE_WRITE) < 0) {
    Fail("cannot watch " + folder, errno);
  }

  CdrImporter importer(config.rules, config.format, config.columns);
  FollowedFile file(config.cdr, importer);
  BadRowReport badRows;
  std::set<std::string> toldTrunks;
  std::optional<CivilDate> lastDay = LastDayOf(appender);
  bool formatTold = false;
  std::int64_t added = 0;

  // Writes the calls gone quiet (all of them when stopping).
  auto writeCalls = [&](bool all) {
    badRows.Show(config.cdr, importer.TakeBadRows(), err);
    std::vector<KeyedCall> calls = all ? importer.TakeAll() : importer.TakeQuiet(NowMs() - kQuietMs);
    for (const auto& [channel, line] : importer.UnlistedTrunks()) {
      if (toldTrunks.insert(channel).second) {
        err << UnlistedTrunkText(config.cdr, {{channel, line}}) << "cwreport import: its calls are not added\n";
      }
    }
    if (calls.empty()) return;
    std::vector<LogCall> written;
    const BatchResult result = AppendCalls(appender, std::move(calls), lastDay, config.busy ? &written : nullptr);
    added += result.written;
    if (config.busy && !written.empty()) {
      if (const std::int64_t stretches = AppendBusy(config, written); stretches > 0) {
        out << "Added " << stretches << " all-lines-busy stretch" << (stretches == 1 ? "" : "es") << '\n';
      }
    }
    if (result.written > 0) out << "Added " << result.written << " call" << (result.written == 1 ? "" : "s") << " (" << added << " in all)\n";
    if (result.tooOld > 0) err << "cwreport import: " << result.tooOld << " call(s) before the log's last day not added\n";
    out.flush();
  };

  try {
    out << "Following " << config.cdr << " into " << config.log << " (SIGINT or SIGTERM stops)\n";
    out.flush();
    for (;;) {
      file.Catch(NowMs());
      if (!formatTold && importer.Layout()) {
        formatTold = true;
        out << FormatLine(importer) << '\n';
        if (const std::string problem = ChannelLayoutProblem(*importer.Layout(), config.rules); !problem.empty()) {
          err << "cwreport import: " << problem << '\n';
          return 2;
        }
      }
      writeCalls(false);

      pollfd waits[2] = {{watch.Get(), POLLIN, 0}, {signals.Fd(), POLLIN, 0}};
      // Asleep until something happens, unless calls wait to be written.
      const int timeout = importer.Pending() > 0 ? kWakeMs : -1;
      const int ready = ::poll(waits, 2, timeout);
      if (ready < 0 && errno != EINTR) Fail("cannot wait for " + config.cdr, errno);
      if (waits[1].revents & POLLIN) {
        // Taken here, so that it does not strike again once unblocked.
        signalfd_siginfo signal{};
        while (::read(signals.Fd(), &signal, sizeof signal) == static_cast<ssize_t>(sizeof signal)) {
        }
        break;
      }
      if (waits[0].revents & POLLIN) {
        // The events only wake the loop; Catch looks at the file itself.
        char events[4096];
        while (::read(watch.Get(), events, sizeof events) > 0) {
        }
      }
    }
    file.Catch(NowMs());
    writeCalls(true);
  } catch (const RuntimeError& error) {
    if (error.Number() == err::kTypeMismatch || error.Number() == err::kInvalidCall) {
      err << "cwreport import: " << config.cdr << ": " << error.Description() << '\n';
      return 2;
    }
    throw;
  }
  out << "Stopped; " << added << " call" << (added == 1 ? "" : "s") << " added\n";
  return 0;
}

}  // namespace cw::cli
