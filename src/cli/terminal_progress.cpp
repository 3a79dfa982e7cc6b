#include "cli/terminal_progress.h"

#include <string>

namespace cw::cli {

namespace {
constexpr int kBarWidth = 40;
constexpr auto kRedrawEvery = std::chrono::milliseconds(100);
}  // namespace

TerminalProgress::TerminalProgress(bool enabled, std::FILE* stream, std::chrono::milliseconds delay)
    : enabled_(enabled), stream_(stream), delay_(delay), start_(Clock::now()) {}

TerminalProgress::~TerminalProgress() { Clear(); }

void TerminalProgress::Update(std::int64_t done, std::int64_t total) {
  if (!enabled_) return;
  const Clock::time_point now = Clock::now();
  if (now - start_ < delay_ || (shown_ && now - lastDrawn_ < kRedrawEvery)) return;
  lastDrawn_ = now;
  shown_ = true;
  std::string line = "\rcwreport [";
  if (total > 0) {
    const std::int64_t clamped = done < 0 ? 0 : (done > total ? total : done);
    const int filled = static_cast<int>(clamped * kBarWidth / total);
    line.append(static_cast<std::size_t>(filled), '#');
    line.append(static_cast<std::size_t>(kBarWidth - filled), '.');
    line += "] " + std::to_string(clamped * 100 / total) + "%  ";
  } else {
    // Unknown length: a marker that moves with the work.
    const int at = static_cast<int>(done % kBarWidth);
    line.append(static_cast<std::size_t>(at), '.');
    line += '#';
    line.append(static_cast<std::size_t>(kBarWidth - at - 1), '.');
    line += "]       ";
  }
  std::fputs(line.c_str(), stream_);
  std::fflush(stream_);
}

void TerminalProgress::Clear() {
  // The next step shows its bar only if it too takes a while.
  start_ = Clock::now();
  if (!shown_) return;
  shown_ = false;
  std::fputs(("\r" + std::string(kBarWidth + 18, ' ') + "\r").c_str(), stream_);
  std::fflush(stream_);
}

}  // namespace cw::cli
