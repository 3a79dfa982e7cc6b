#pragma once
// Whole outputs compared with files kept under tests/data/. On a difference
// the actual output is written beside the build, to be read and, once checked
// by hand, copied over the expected file.

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <sstream>
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

// The text with every `from` written as `to`: a scratch folder's path as a
// name that stays the same from run to run, for example.
inline std::string Replaced(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
  return text;
}

// Line ends written out as \r and \n, so that one line of a table holds them.
inline std::string Visible(std::string_view text) {
  std::string shown;
  for (char c : text) shown += c == '\r' ? "\\r" : c == '\n' ? "\\n" : std::string(1, c);
  return shown;
}

inline std::string Unescaped(std::string_view text) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool escape = text[i] == '\\' && i + 1 < text.size() && (text[i + 1] == 'r' || text[i + 1] == 'n');
    bytes += escape ? (text[++i] == 'r' ? '\r' : '\n') : text[i];
  }
  return bytes;
}

// A table kept as a file: one case a line, its input in double quotes, then
// " | " and what the code makes of it; a line starting with # is a note. The
// inputs are read from the file, every outcome is worked out afresh, and the
// whole table is compared with the file.
inline void ExpectTableMatches(std::string_view name, const std::function<std::string(const std::string&)>& outcome) {
  std::istringstream in(ExpectedFile(name));
  std::string actual;
  int cases = 0;
  for (std::string line; std::getline(in, line);) {
    const std::size_t end = line.rfind("\" | ");
    if (line.starts_with("#")) {
      actual += line + "\n";
    } else if (line.starts_with("\"") && end != std::string::npos) {
      const std::string input = line.substr(1, end - 1);
      actual += "\"" + input + "\" | " + outcome(input) + "\n";
      ++cases;
    } else {
      ADD_FAILURE() << name << ": neither a note nor a case: " << line;
    }
  }
  if (cases == 0) ADD_FAILURE() << name << " holds no case";
  ExpectMatchesFile(actual, name);
}

}  // namespace cw::testing
