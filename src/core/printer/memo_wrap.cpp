#include "printer/memo_wrap.h"

namespace cw {

bool MemoWrap::NextLine(const std::function<double(std::string_view)>& width, std::string& line) {
  if (forcedPending_) {
    // The word that overflowed was also the last before a forced break: it
    // is a line of its own.
    forcedPending_ = false;
    line = std::move(current_);
    current_.clear();
    return true;
  }
  if (done_) return false;
  while (position_ < text_.size()) {
    const std::size_t space = text_.find(' ', position_);
    const std::size_t lineBreak = text_.find("\r\n", position_);
    std::string_view word;
    bool forced = false;
    if (lineBreak != std::string_view::npos && (space == std::string_view::npos || lineBreak < space)) {
      word = text_.substr(position_, lineBreak - position_);
      position_ = lineBreak + 2;
      forced = true;
    } else if (space != std::string_view::npos) {
      word = text_.substr(position_, space - position_ + 1);
      position_ = space + 1;
    } else {
      word = text_.substr(position_);
      position_ = text_.size();
    }
    std::string candidate = current_;
    candidate += word;
    if (available_ < width(candidate)) {
      line = std::move(current_);
      current_.assign(word);
      forcedPending_ = forced;
      return true;
    }
    current_ = std::move(candidate);
    if (forced) {
      line = std::move(current_);
      current_.clear();
      return true;
    }
  }
  done_ = true;
  line = std::move(current_);
  current_.clear();
  return true;
}

}  // namespace cw
