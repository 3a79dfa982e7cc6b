#pragma once
// Whole outputs compared with files kept under tests/data/. On a difference
// the actual output is written beside the build, to be read and, once checked
// by hand, copied over the expected file.

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "testing/temp_folder.h"

namespace cw::testing {

inline std::string ExpectedFile(std::string_view name) {
  return ReadBytes(std::string(CW_TEST_DATA_DIR) + "/" + std::string(name));
}

// One part of an expected file: a heading line "== what", then the lines.
inline std::string Section(std::string_view heading, const std::vector<std::string>& lines) {
  std::string text = "== " + std::string(heading) + "\n";
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

inline void ExpectMatchesFile(const std::string& actual, std::string_view name) {
  std::string expected;
  try {
    expected = ExpectedFile(name);
  } catch (const std::runtime_error&) {
    // A missing file differs from every output.
  }
  if (actual == expected) return;
  std::string flat(name);
  std::replace(flat.begin(), flat.end(), '/', '_');
  const std::string actualFile = std::string(CW_BINARY_DIR) + "/" + flat + ".actual";
  WriteBytes(actualFile, actual);
  ADD_FAILURE() << "output differs from tests/data/" << name << "; actual output in " << actualFile;
}

}  // namespace cw::testing
