#pragma once
// The word wrap of MemoOut and MemoHeight. A word runs up to and including the
// next space; a CR LF before that space ends the word early (the two break
// characters are dropped) and forces a line break after it. A word that no
// longer fits moves to the next line; a word wider than the whole width is
// written on a line of its own, never split. Trailing spaces stay in the lines.

#include <functional>
#include <string>
#include <string_view>

namespace cw {

class MemoWrap {
 public:
  // `available` is the width between the memo's two edges, in the unit that
  // the measuring function below returns.
  MemoWrap(std::string_view text, double available) : text_(text), available_(available) {}

  // The next line to write, measuring with `width`; false when the text is used
  // up. Every line but the last is followed by a line break, so a memo of n
  // lines advances n - 1 lines. Each call measures only as far as it must, so
  // a caller that writes each line before asking for the next measures with
  // the font in force at that point.
  bool NextLine(const std::function<double(std::string_view)>& width, std::string& line);

 private:
  std::string_view text_;
  std::size_t position_ = 0;
  double available_;
  std::string current_;
  bool forcedPending_ = false;  // a forced break follows the line just given out
  bool done_ = false;
};

}  // namespace cw
