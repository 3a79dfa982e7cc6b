#include "support/temporary_files.h"

#include <signal.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdlib>
#include <cstring>

namespace cw {

namespace {

// A signal handler may neither allocate nor lock, so the list is a fixed
// table of slots, each claimed and released with an atomic state. A run holds
// a handful of files at once (the spool, a few staged outputs, page images of
// one document), so 256 slots is plenty.
constexpr std::size_t kSlots = 256;
constexpr std::size_t kLongestPath = 1024;

enum SlotState : int { kFree = 0, kBusy = 1, kHeld = 2 };

struct Slot {
  std::atomic<int> state{kFree};
  char path[kLongestPath];
};

std::array<Slot, kSlots> slots;

constexpr std::array<int, 5> kCleanedSignals = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGABRT};

extern "C" void RemoveAndRaise(int signal) {
  RemoveTemporaryFilesNow();
  // The handler was installed to run once: the signal now does what it
  // would have done (end the process, dump core for SIGQUIT and SIGABRT).
  ::raise(signal);
}

extern "C" void RemoveAtExit() { RemoveTemporaryFilesNow(); }

}  // namespace

CleanupSignalsHeld::CleanupSignalsHeld() {
  sigset_t held;
  sigemptyset(&held);
  for (int signal : kCleanedSignals) sigaddset(&held, signal);
  ::pthread_sigmask(SIG_BLOCK, &held, &previous_);
}

CleanupSignalsHeld::~CleanupSignalsHeld() { ::pthread_sigmask(SIG_SETMASK, &previous_, nullptr); }

void RegisterTemporaryFile(const std::string& path) {
  if (path.empty() || path.size() >= kLongestPath) return;
  for (Slot& slot : slots) {
    int expected = kFree;
    if (!slot.state.compare_exchange_strong(expected, kBusy)) continue;
    std::memcpy(slot.path, path.c_str(), path.size() + 1);
    slot.state.store(kHeld);
    return;
  }
}

void ForgetTemporaryFile(const std::string& path) {
  for (Slot& slot : slots) {
    int expected = kHeld;
    if (!slot.state.compare_exchange_strong(expected, kBusy)) continue;
    const bool same = std::strcmp(slot.path, path.c_str()) == 0;
    slot.state.store(same ? kFree : kHeld);
    if (same) return;
  }
}

void RemoveTemporaryFilesNow() noexcept {
  for (Slot& slot : slots) {
    int expected = kHeld;
    if (!slot.state.compare_exchange_strong(expected, kBusy)) continue;
    ::unlink(slot.path);
    slot.state.store(kFree);
  }
}

void InstallTemporaryFileCleanup() {
  static std::atomic<bool> installed{false};
  if (installed.exchange(true)) return;
  for (int signal : kCleanedSignals) {
    struct sigaction previous {};
    if (::sigaction(signal, nullptr, &previous) == 0 && previous.sa_handler == SIG_IGN) continue;
    struct sigaction action {};
    action.sa_handler = RemoveAndRaise;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESETHAND;
    ::sigaction(signal, &action, nullptr);
  }
  std::atexit(RemoveAtExit);
}

}  // namespace cw
