#include "data/get_record.h"

#include <cstring>
#include <limits>

#include "support/runtime_error.h"
#include "support/text.h"

namespace cw {

std::string_view GetRecord(std::string_view buffer, bool stop, ReaderState& state) {
  if (buffer.size() > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
    throw RuntimeError(err::kOverflow);
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
  std::string_view line =
      Trim(buffer.substr(static_cast<std::size_t>(state.nextLineStart - 1),
                         static_cast<std::size_t>(run)));
  // An empty line ends the reading: nothing after it is reported.
  if (line.empty()) return done();
  state.nextLineStart = found + 1;
  return line;
}

}  // namespace cw
