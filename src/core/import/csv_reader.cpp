#include "import/csv_reader.h"

#include <cstring>

namespace cw {

namespace {

// Where a field's bytes are until the row is complete: the row's storage
// may still grow, so views into it are made only at the end.
struct FieldSpan {
  std::size_t offset;
  std::size_t length;
  bool inStorage;
};

// The bytes of a quoted field between its quotes, each "" made one ".
void Unquote(std::string_view quoted, std::string& into) {
  for (std::size_t i = 0; i < quoted.size(); ++i) {
    into += quoted[i];
    if (quoted[i] == '"' && i + 1 < quoted.size() && quoted[i + 1] == '"') ++i;
  }
}

}  // namespace

CsvReader::CsvReader(std::string_view text, std::int64_t firstLine) : text_(text), line_(firstLine) {}

CsvReader::Result CsvReader::Next(CsvRow& row, bool textIsComplete) {
  const std::size_t size = text_.size();
  const char* const data = text_.data();

  // Blank lines (nothing but blanks, tabs and CRs) are no rows.
  for (;;) {
    std::size_t i = offset_;
    while (i < size && (data[i] == ' ' || data[i] == '\t' || data[i] == '\r')) ++i;
    if (i == size) return i == offset_ || textIsComplete ? Result::kEnd : Result::kIncomplete;
    if (data[i] != '\n') break;
    offset_ = i + 1;
    ++line_;
  }

  thread_local std::vector<FieldSpan> spans;
  spans.clear();
  row.storage.clear();
  row.unterminatedQuote = false;
  std::size_t pos = offset_;
  bool lineEnded = false;

  for (;;) {
    if (pos < size && data[pos] == '"') {
      const std::size_t start = pos + 1;
      bool doubled = false;
      std::size_t close = size;
      for (std::size_t scan = start;;) {
        const void* hit = std::memchr(data + scan, '"', size - scan);
        if (hit == nullptr) break;
        const auto quote = static_cast<std::size_t>(static_cast<const char*>(hit) - data);
        const char after = quote + 1 < size ? data[quote + 1] : ',';
        if (after == '"') {
          doubled = true;
          scan = quote + 2;
          continue;
        }
        const bool crlf = after == '\r' && quote + 2 < size && data[quote + 2] == '\n';
        if (after == ',' || after == '\n' || crlf) {
          close = quote;
          break;
        }
        scan = quote + 1;  // a quote inside the text of the field
      }
      const std::string_view inside(data + start, close - start);
      if (doubled) {
        spans.push_back({row.storage.size(), 0, true});
        Unquote(inside, row.storage);
        spans.back().length = row.storage.size() - spans.back().offset;
      } else {
        spans.push_back({start, inside.size(), false});
      }
      if (close == size) {
        row.unterminatedQuote = true;
        pos = size;
        break;
      }
      pos = close + 1;
      if (pos < size && data[pos] == '\r') ++pos;
      if (pos == size) break;
      if (data[pos] == '\n') {
        ++pos;
        lineEnded = true;
        break;
      }
      ++pos;  // the comma
      if (pos == size) {
        spans.push_back({pos, 0, false});
        break;
      }
      continue;
    }
    std::size_t stop = pos;
    while (stop < size && data[stop] != ',' && data[stop] != '\n') ++stop;
    std::size_t fieldEnd = stop;
    if (stop < size && data[stop] == '\n' && fieldEnd > pos && data[fieldEnd - 1] == '\r') --fieldEnd;
    spans.push_back({pos, fieldEnd - pos, false});
    if (stop == size) {
      pos = size;
      break;
    }
    pos = stop + 1;
    if (data[stop] == '\n') {
      lineEnded = true;
      break;
    }
    if (pos == size) {
      spans.push_back({pos, 0, false});
      break;
    }
  }

  if (!lineEnded && !textIsComplete) return Result::kIncomplete;

  row.fields.clear();
  for (const FieldSpan& span : spans) {
    row.fields.push_back(span.inStorage ? std::string_view(row.storage).substr(span.offset, span.length)
                                        : text_.substr(span.offset, span.length));
  }
  row.line = line_;
  row.begin = offset_;
  row.end = pos;
  // The row's line breaks, its own line end and any inside quotes: counted
  // once over the row, as those inside quotes are rare.
  for (const char* at = data + offset_; at < data + pos;) {
    const void* hit = std::memchr(at, '\n', static_cast<std::size_t>(data + pos - at));
    if (hit == nullptr) break;
    ++line_;
    at = static_cast<const char*>(hit) + 1;
  }
  offset_ = pos;
  return Result::kRow;
}

}  // namespace cw
