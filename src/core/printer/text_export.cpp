#include "printer/text_export.h"

#include <cmath>

#include "printer/scale_mode.h"
#include "support/text.h"
#include "support/whole_numbers.h"

namespace cw {

namespace {

constexpr std::string_view kLineEnd = "\r\n";
// A page ends with the line end written on its own line, then the form feed
// on a line of its own.
constexpr std::string_view kPageEnd = "\r\n\r\n\f\r\n";
constexpr double kWidening = 1.2;
constexpr double kWidestColumn = 32767;
constexpr std::size_t kBlockBytes = 1 << 20;

// The text file being built: the current print column (1-based) and a block
// of output not yet handed to the file.
class TextPrinter {
 public:
  // The block grows as it fills (and keeps its size from one flush to the
  // next): a page or two of text never pays for a whole block.
  explicit TextPrinter(OutputFile& output) : output_(output) {}

  void EndLine() {
    block_ += kLineEnd;
    column_ = 1;
  }

  void EndPage() {
    block_ += kPageEnd;
    column_ = 1;
  }

  // Moves to `column` the way the print tab does: spaces up to it, or, when
  // the line is already past it, the same column on the next line.
  void Tab(std::int64_t column) {
    if (column < 1) column = 1;
    if (column_ > column) EndLine();
    block_.append(static_cast<std::size_t>(column - column_), ' ');
    column_ = column;
  }

  void Print(std::string_view text) {
    block_ += text;
    column_ += static_cast<std::int64_t>(text.size());
    if (block_.size() >= kBlockBytes) Flush();
  }

  void Flush() {
    output_.Write(block_);
    block_.clear();
  }

 private:
  OutputFile& output_;
  std::string block_;
  std::int64_t column_ = 1;
};

}  // namespace

void ExportSpoolText(SpoolReader& reader, OutputFile& output, const ExportProgress& progress) {
  TextPrinter printer(output);
  const double charactersPerUnit = reader.TwipsPerUnit() / scale::kTwipsPerCharacter;
  double previousY = 0;
  std::int64_t done = 0;
  SpoolCommand command;
  reader.SeekRecord(2);
  while (reader.Next(command)) {
    if (progress) progress(++done, reader.RecordCount());
    if (!command.usable) continue;
    if (command.keyword == SpoolKeyword::kEndDoc) break;
    if (command.keyword == SpoolKeyword::kNewPage) {
      printer.EndPage();
      continue;
    }
    if (command.keyword != SpoolKeyword::kTextOut) continue;
    const double column = RoundHalfEven(command.x1 * charactersPerUnit * kWidening);
    if (!(column <= kWidestColumn)) {
      reader.Problems().Add(command.recordNumber, "text at column " + std::to_string(std::llround(column)) +
                                                      " is beyond the widest line (32767); skipped");
      continue;
    }
    if (command.y1 > previousY) printer.EndLine();
    previousY = command.y1;
    printer.Tab(static_cast<std::int64_t>(column));
    printer.Print(Trim(command.text));
  }
  printer.Flush();
}

SpoolProblems ExportSpoolToTextFile(const std::string& spoolPath, const std::string& textPath,
                                    const ExportProgress& progress) {
  SpoolReader reader(spoolPath);
  AtomicOutputFile output(textPath);
  ExportSpoolText(reader, output, progress);
  output.Commit();
  return std::move(reader.Problems());
}

}  // namespace cw
