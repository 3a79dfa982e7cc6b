#pragma once
// A progress bar on standard error for long work, drawn only when standard
// error is a terminal: a short report finishes before it would appear, and a
// script reading standard error sees the messages alone.

#include <chrono>
#include <cstdint>
#include <cstdio>

namespace cw::cli {

class TerminalProgress {
 public:
  // enabled: the stream is a terminal. The bar appears once the work has
  // taken longer than `delay`.
  explicit TerminalProgress(bool enabled, std::FILE* stream = stderr,
                            std::chrono::milliseconds delay = std::chrono::milliseconds(700));
  ~TerminalProgress();
  TerminalProgress(const TerminalProgress&) = delete;
  TerminalProgress& operator=(const TerminalProgress&) = delete;

  // done of total units of the current step (total 0: unknown).
  void Update(std::int64_t done, std::int64_t total);
  // Removes the bar from the screen (before a message, between steps and at
  // the end); a bar comes back only for a next step that takes a while.
  void Clear();

 private:
  using Clock = std::chrono::steady_clock;

  bool enabled_;
  std::FILE* stream_;
  std::chrono::milliseconds delay_;
  Clock::time_point start_;
  Clock::time_point lastDrawn_{};
  bool shown_ = false;
};

}  // namespace cw::cli
