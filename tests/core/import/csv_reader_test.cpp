#include "import/csv_reader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

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

TEST(CsvReader, ReadsQuotedAndUnquotedFields) {
  struct Case {
    std::string text;
    Rows rows;
  };
  const Case cases[] = {
      {"a,b,c\r\n", {{"a", "b", "c"}}},
      {"a,b,c\n1,2,3\n", {{"a", "b", "c"}, {"1", "2", "3"}}},
      {"\"a\",\"b,c\",42\r\n", {{"a", "b,c", "42"}}},
      {"\"say \"\"hi\"\"\",x\n", {{"say \"hi\"", "x"}}},
      {"\"\"\"Smith\"\" <555>\",1\n", {{"\"Smith\" <555>", "1"}}},
      {",,\n", {{"", "", ""}}},
      {"\"\",\"\"\n", {{"", ""}}},
      {"a,\n", {{"a", ""}}},
      {"\"two\nlines\",b\n", {{"two\nlines", "b"}}},
      // A lone quote inside a quoted field is part of its text.
      {"\"Bob \"Jr\" Smith\",b\n", {{"Bob \"Jr\" Smith", "b"}}},
      // A quote inside an unquoted field is an ordinary character.
      {"ab\"c,d\n", {{"ab\"c", "d"}}},
      // Blank lines are no rows; a last row without a line end is read.
      {"\n\r\na\n  \n\nb", {{"a"}, {"b"}}},
      {"x,\"y\"", {{"x", "y"}}},
      {"\"x\"\r\n\"y\",", {{"x"}, {"y", ""}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(ReadAll(c.text), c.rows);
  }
}

TEST(CsvReader, CountsLinesAndOffsets) {
  std::vector<std::int64_t> lines;
  const std::string text = "a\n\n\"b\nc\",d\ne\n";
  EXPECT_EQ(ReadAll(text, true, &lines), (Rows{{"a"}, {"b\nc", "d"}, {"e"}}));
  EXPECT_EQ(lines, (std::vector<std::int64_t>{1, 3, 5}));

  CsvReader reader(text, 10);
  CsvRow row;
  ASSERT_EQ(reader.Next(row), CsvReader::Result::kRow);
  EXPECT_EQ(row.begin, 0u);
  EXPECT_EQ(row.end, 2u);
  EXPECT_EQ(row.line, 10);
  ASSERT_EQ(reader.Next(row), CsvReader::Result::kRow);
  EXPECT_EQ(row.line, 12);
  EXPECT_EQ(text.substr(row.begin, row.end - row.begin), "\"b\nc\",d\n");
}

TEST(CsvReader, LeavesAPartialLastRowUntilTheTextIsComplete) {
  const std::string text = "a,b\nc,\"d";
  CsvReader reader(text);
  CsvRow row;
  ASSERT_EQ(reader.Next(row, false), CsvReader::Result::kRow);
  EXPECT_EQ(reader.Next(row, false), CsvReader::Result::kIncomplete);
  EXPECT_EQ(reader.Offset(), 4u);
  // The same row, once nothing more will come, is read with its open quote noted.
  ASSERT_EQ(reader.Next(row, true), CsvReader::Result::kRow);
  EXPECT_TRUE(row.unterminatedQuote);
  EXPECT_EQ(row.fields, (std::vector<std::string_view>{"c", "d"}));
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
