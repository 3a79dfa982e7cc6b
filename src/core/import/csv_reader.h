#pragma once
// A reader of comma-separated values as RFC 4180 writes them: fields quoted
// or not, "" for a quote inside quotes, line breaks inside quotes, CR LF or
// LF line ends. PBXs are lax writers, so the reader is a lenient one: a quote
// inside a quoted field that is not followed by a comma or a line end is
// taken as a character of the field (a caller name such as "Bob "Jr" Smith"
// survives), a quote in the middle of an unquoted field is an ordinary
// character, and blank lines are no rows.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace cw {

struct CsvRow {
  // The fields, unquoted. They point into the reader's text or into the
  // row's own storage, and stay valid until the row is read into again.
  std::vector<std::string_view> fields;
  std::int64_t line = 0;           // the line of the text where the row begins, from 1
  std::size_t begin = 0;           // byte offsets of the row in the text, line end included
  std::size_t end = 0;
  bool unterminatedQuote = false;  // the text ended inside a quoted field
  std::string storage;             // fields that held "" are unquoted into here
};

class CsvReader {
 public:
  // text: the bytes to read, from the start of a row; firstLine: the line
  // number of its first line. The text must outlive the rows read from it.
  explicit CsvReader(std::string_view text, std::int64_t firstLine = 1);

  enum class Result {
    kRow,         // row holds the next row
    kEnd,         // nothing more
    kIncomplete,  // what is left is a row without its line end (it may still be being written)
  };

  // The next row. A last row without a line end is handed out only when
  // textIsComplete says that nothing more will be appended; otherwise it is
  // kIncomplete and stays unread.
  Result Next(CsvRow& row, bool textIsComplete = true);

  // Where the next row starts, and its line number.
  std::size_t Offset() const { return offset_; }
  std::int64_t Line() const { return line_; }

 private:
  std::string_view text_;
  std::size_t offset_ = 0;
  std::int64_t line_ = 1;
};

}  // namespace cw
