#pragma once
// The text export on a stream (standard output for "--text -").

#include <ostream>
#include <string_view>

#include "printer/output_file.h"
#include "support/runtime_error.h"

namespace cw::cli {

class StreamOutputFile final : public OutputFile {
 public:
  explicit StreamOutputFile(std::ostream& out) : out_(out) {}
  void Write(std::string_view bytes) override {
    if (!out_.write(bytes.data(), static_cast<std::streamsize>(bytes.size()))) Fail();
  }
  void Commit() override {
    if (!out_.flush()) Fail();
  }

 private:
  [[noreturn]] static void Fail() { throw RuntimeError(err::kPathFileAccess, "Cannot write to standard output"); }

  std::ostream& out_;
};

}  // namespace cw::cli
