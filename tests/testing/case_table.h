#pragma once
// Tables of test cases kept as data under tests/data/: one case a line, its
// columns split at "|" and kept as written (blanks count); lines starting
// with "#" say what the columns are.

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace cw::testing {

// The parts of text between the separators, kept as written.
inline std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  for (std::size_t start = 0, end = 0; end != std::string::npos; start = end + 1) {
    end = text.find(separator, start);
    parts.push_back(text.substr(start, end - start));
  }
  return parts;
}

// The cases of the table at path, relative to tests/data.
inline std::vector<std::vector<std::string>> TableCases(std::string_view path) {
  std::ifstream in(std::string(CW_TEST_DATA_DIR) + "/" + std::string(path), std::ios::binary);
  EXPECT_TRUE(in.good()) << "missing table " << path;
  std::vector<std::vector<std::string>> cases;
  for (std::string line; std::getline(in, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (!line.empty() && line[0] != '#') cases.push_back(Split(line, '|'));
  }
  EXPECT_FALSE(cases.empty()) << path << " holds no case";
  return cases;
}

}  // namespace cw::testing
