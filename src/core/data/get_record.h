#pragma once
// GetRecord hands out the call log one line at a time from the buffer that a
// report has loaded whole.

#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>


namespace cw {

// Where the reader stands, kept by its owner between calls. Positions are
// 1-based, as the reader has always counted them.
struct ReaderState {
  std::int32_t lastLineFeed = 0;   // the LF that ended the previous line; 0 before the first
  std::int32_t nextLineStart = 0;  // where the next line begins; 0 = reading has not started
};

// What GetRecord answers when there is nothing more to read.
inline constexpr std::string_view kDone = "Done";

namespace detail {
[[noreturn]] void ThrowLogTooLong();  // error 6
}  // namespace detail

// The next line of buffer without its line end and trimmed of blanks, or
// kDone. An empty (or all-blank) line ends the reading, a last line without a
// line feed is never returned, and the character before each LF is dropped as
// the CR (so a file with bare LF line ends loses one character per line).
// With stop set the answer is kDone at once. After kDone the state is reset and
// the next call starts again at the top.
// The result points into buffer. Error 6 when buffer is longer than the 32-bit
// positions can count.
// Defined here so that the record loops, which call it once per line, can
// inline it.
inline std::string_view GetRecord(std::string_view buffer, bool stop, ReaderState& state) {
  if (buffer.size() > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
    detail::ThrowLogTooLong();
  }
  const auto length = static_cast<std::int32_t>(buffer.size());
  if (state.nextLineStart == 0) state.nextLineStart = 1;

  auto done = [&state] {
    state = ReaderState{};
    return kDone;
  };
  if (state.lastLineFeed >= length || stop) return done();

  // The search starts just past the previous LF (0-based index lastLineFeed).
  const char* from = buffer.data() + state.lastLineFeed;
  const void* hit = std::memchr(from, '\n', static_cast<std::size_t>(length - state.lastLineFeed));
  // A last line without a line feed after it is never handed out.
  if (hit == nullptr) return done();
  const auto found = static_cast<std::int32_t>(static_cast<const char*>(hit) - buffer.data()) + 1;
  state.lastLineFeed = found;

  // The line runs from nextLineStart up to two characters before the LF's
  // position: the LF and the CR in front of it are cut off. An empty line of a
  // file with bare LF ends gives a negative run; it is as empty as any other.
  const std::int32_t run = (found - 1) - state.nextLineStart;
  if (run <= 0) return done();
  // Trimmed here by hand rather than with Trim: this is the innermost loop of
  // every report.
  const char* first = buffer.data() + (state.nextLineStart - 1);
  const char* last = first + run;
  while (first < last && *first == ' ') ++first;
  while (last > first && last[-1] == ' ') --last;
  // An empty line ends the reading: nothing after it is reported.
  if (first == last) return done();
  const std::string_view line(first, static_cast<std::size_t>(last - first));
  state.nextLineStart = found + 1;
  return line;
}

}  // namespace cw
