#pragma once
// What the fuzz targets share: one input taken apart into the choices and
// texts a target needs, and one scratch folder per process. The folder lies
// in memory (/dev/shm) when the machine has one and is made the temporary
// folder too, so that the spool files the engine writes for every input
// never reach a disk.

#include <stdlib.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

#include "support/runtime_error.h"
#include "testing/temp_folder.h"

namespace cw::fuzz {

// The bytes of one input, taken from the front.
class InputBytes {
 public:
  InputBytes(const std::uint8_t* data, std::size_t size)
      : rest_(reinterpret_cast<const char*>(data), size) {}

  // The next byte, or 0 past the end.
  std::uint8_t Byte() {
    if (rest_.empty()) return 0;
    const auto byte = static_cast<std::uint8_t>(rest_.front());
    rest_.remove_prefix(1);
    return byte;
  }
  // The text up to the next line feed (which is dropped), or all that is left.
  std::string_view Line() {
    const std::size_t end = rest_.find('\n');
    const std::string_view line = rest_.substr(0, end);
    rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end + 1);
    return line;
  }
  std::string_view Rest() const { return rest_; }

 private:
  std::string_view rest_;
};

inline const testing::TempFolder& ScratchFolder() {
  static const testing::TempFolder folder = [] {
    std::error_code error;
    if (std::filesystem::is_directory("/dev/shm", error)) ::setenv("TMPDIR", "/dev/shm", 1);
    return testing::TempFolder();
  }();
  return folder;
}

// Runs a parse of text that may be refused with the runtime's error, as a
// user's typing or a damaged file may be.
template <typename Parse>
void Refusable(Parse&& parse) {
  try {
    parse();
  } catch (const RuntimeError&) {
  }
}

// Stops the run: a target found its input handled wrongly (not merely
// refused), which the fuzzer keeps like a crash.
[[noreturn]] inline void Violated(const char* what) {
  std::fprintf(stderr, "fuzz target: %s\n", what);
  std::abort();
}

}  // namespace cw::fuzz
