#pragma once
// GetRecord hands out the call log one line at a time from the buffer that a
// report has loaded whole.

#include <cstdint>
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

// The next line of buffer without its line end and trimmed of blanks, or
// kDone. An empty (or all-blank) line ends the reading, a last line without a
// line feed is never returned, and the character before each LF is dropped as
// the CR (so a file with bare LF line ends loses one character per line).
// With stop set the answer is kDone at once. After kDone the state is reset and
// the next call starts again at the top.
// The result points into buffer. Error 6 when buffer is longer than the 32-bit
// positions can count.
std::string_view GetRecord(std::string_view buffer, bool stop, ReaderState& state);

}  // namespace cw
