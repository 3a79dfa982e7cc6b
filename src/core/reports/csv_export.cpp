#include "reports/csv_export.h"

#include <span>

#include "support/ansi_text.h"
#include "support/runtime_error.h"
#include "support/text.h"

namespace cw {

namespace {

constexpr std::size_t kBlock = 1 << 16;

void AppendRow(std::string& out, std::span<const std::string> cells, char separator) {
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (i > 0) out += separator;
    out += CsvField(cells[i], separator);
  }
  out += "\r\n";
}

}  // namespace

bool IsCsvFileName(std::string_view name) {
  return name.size() >= 4 && LowerCase(name.substr(name.size() - 4)) == ".csv";
}

std::string CsvField(std::string_view win1252, char separator) {
  const std::string text = Win1252ToUtf8(win1252);
  if (text.find_first_of(std::string{separator, '"', '\r', '\n'}) == std::string::npos) return text;
  std::string quoted = "\"";
  for (char c : text) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + '"';
}

void WriteCsv(const ReportData& data, OutputFile& output, char separator) {
  if (separator == '"' || separator == '\r' || separator == '\n' || separator == '\0') {
    throw RuntimeError(err::kInvalidCall, "A CSV field separator cannot be a quote or a line end");
  }
  std::string block;
  AppendRow(block, data.Columns(), separator);
  data.ForEachRow([&](std::span<const std::string> cells) {
    AppendRow(block, cells, separator);
    if (block.size() >= kBlock) {
      output.Write(block);
      block.clear();
    }
  });
  output.Write(block);
}

void WriteCsvFile(const ReportData& data, const std::string& path, char separator) {
  AtomicOutputFile output(path);
  WriteCsv(data, output, separator);
  output.Commit();
}

}  // namespace cw
