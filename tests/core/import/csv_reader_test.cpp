#include "import/csv_reader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "testing/expected_file.h"

namespace cw {
namespace {

using Rows = std::vector<std::vector<std::string>>;

Rows ReadAll(std::string_view text, bool complete = true, std::vector<std::int64_t>* lines = nullptr) {
  Rows rows;
  CsvReader reader(text);
  CsvRow row;
  while (reader.Next(row, complete) == CsvReader::Result::kRow) {
    rows.emplace_back(row.fields.begin(), row.fields.end());
    if (lines != nullptr) lines->push_back(row.line);
  }
  return rows;
}

TEST(CsvReader, ReadsQuotedAndUnquotedFieldsAndCountsLines) {
  testing::ExpectTableMatches("import/csv-texts.txt", [](const std::string& text) {
    std::vector<std::int64_t> lines;
    const Rows rows = ReadAll(testing::Unescaped(text), true, &lines);
    std::string shown;
    for (std::size_t row = 0; row < rows.size(); ++row) {
      shown += (row == 0 ? "" : " ") + std::to_string(lines[row]) + ":";
      for (const std::string& field : rows[row]) shown += "[" + testing::Visible(field) + "]";
    }
    return shown;
  });
}

TEST(CsvReader, LeavesAPartialLastRowUntilTheTextIsComplete) {
  const std::string text = "a,b\nc,\"d";
  CsvReader reader(text, 10);  // the rest of a file whose first nine lines were read
  CsvRow row;
  ASSERT_EQ(reader.Next(row, false), CsvReader::Result::kRow);
  EXPECT_EQ(reader.Next(row, false), CsvReader::Result::kIncomplete);
  EXPECT_EQ(reader.Offset(), 4u);
  // The same row, once nothing more will come, is read with its open quote noted.
  ASSERT_EQ(reader.Next(row, true), CsvReader::Result::kRow);
  EXPECT_TRUE(row.unterminatedQuote);
  EXPECT_EQ(row.fields, (std::vector<std::string_view>{"c", "d"}));
  EXPECT_EQ(row.line, 11);
  EXPECT_EQ(reader.Next(row, true), CsvReader::Result::kEnd);

  // A quoted line end is not the row's end.
  CsvReader open("\"a\nb", 1);
  EXPECT_EQ(open.Next(row, false), CsvReader::Result::kIncomplete);
  CsvReader blank("a\n   ");
  ASSERT_EQ(blank.Next(row, false), CsvReader::Result::kRow);
  EXPECT_EQ(blank.Next(row, false), CsvReader::Result::kIncomplete);
  EXPECT_EQ(blank.Next(row, true), CsvReader::Result::kEnd);
}

}  // namespace
}  // namespace cw
