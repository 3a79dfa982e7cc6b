#pragma once
// The text export as a terminal (or a user who asked for it) wants it: UTF-8
// with LF line ends, instead of the file format's Windows-1252 with CR LF.

#include <string>
#include <string_view>

#include "printer/output_file.h"
#include "support/ansi_text.h"

namespace cw::cli {

class Utf8TextOutput final : public OutputFile {
 public:
  explicit Utf8TextOutput(OutputFile& output) : output_(output) {}

  void Write(std::string_view bytes) override {
    std::string text;
    text.reserve(bytes.size() + 1);
    // A CR that ended the previous piece belongs to whatever follows it.
    if (pendingCr_) text += '\r';
    pendingCr_ = !bytes.empty() && bytes.back() == '\r';
    if (pendingCr_) bytes.remove_suffix(1);
    text.append(bytes);
    std::string lines;
    lines.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
      if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
      lines += text[i];
    }
    output_.Write(Win1252ToUtf8(lines));
  }

  void Commit() override {
    if (pendingCr_) output_.Write("\r");
    pendingCr_ = false;
    output_.Commit();
  }

 private:
  OutputFile& output_;
  bool pendingCr_ = false;
};

}  // namespace cw::cli
