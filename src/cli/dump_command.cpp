// cwreport dump: prints a spool file record by record, so that support staff
// can see what a report drew and where a damaged file goes wrong.
#include <charconv>
#include <cstdio>
#include <exception>
#include <ostream>
#include <string>
#include <string_view>

#include "cli/dump_command.h"
#include "cli/option_table.h"
#include "printer/spool_reader.h"
#include "support/ansi_text.h"
#include "support/runtime_error.h"

namespace cw::cli {
namespace {

// Output gathered in blocks: a large spool has millions of records.
class DumpOutput {
 public:
  explicit DumpOutput(std::ostream& out) : out_(out) {}
  std::string& Line() { return block_; }
  void EndLine() {
    block_ += '\n';
    if (block_.size() >= 1 << 16) Flush();
  }
  // False when the output could not be written.
  bool Finish() {
    Flush();
    out_.flush();
    return static_cast<bool>(out_);
  }

 private:
  void Flush() {
    out_.write(block_.data(), static_cast<std::streamsize>(block_.size()));
    block_.clear();
  }

  std::ostream& out_;
  std::string block_;
};

void AppendNumber(std::string& line, double value) {
  char text[32];
  const auto result = std::to_chars(text, text + sizeof text, value);
  line.append(text, result.ptr);
}

void AppendQuoted(std::string& line, std::string_view bytes) {
  line += '"';
  std::size_t plain = 0;
  auto flushPlain = [&](std::size_t end) {
    if (end > plain) line += Win1252ToUtf8(bytes.substr(plain, end - plain));
  };
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    if (byte >= 0x20 && byte != 0x7F && byte != '"' && byte != '\\') continue;
    flushPlain(i);
    plain = i + 1;
    if (byte == '"' || byte == '\\') {
      line += '\\';
      line += static_cast<char>(byte);
    } else {
      char escaped[8];
      std::snprintf(escaped, sizeof escaped, "\\x%02X", byte);
      line += escaped;
    }
  }
  flushPlain(bytes.size());
  line += '"';
}

const char* Bool(bool value) { return value ? "True" : "False"; }

template <class... Parts>
void Append(std::string& line, const Parts&... parts) {
  (line.append(parts), ...);
}

void DumpHeader(std::string& line, const SpoolHeader& header) {
  char start[64];
  std::snprintf(start, sizeof start, "%6d %5s %-8s ", 1, "-", "HEADER");
  line += start;
  Append(line, "Orientation=", std::to_string(header.orientation), " ScaleMode=", std::to_string(header.scaleMode),
         " Spacing=");
  AppendNumber(line, header.spacing);
  Append(line, " AutoHeadings=", Bool(header.autoHeadings), " AutoHeadingsFontName=");
  AppendQuoted(line, header.autoHeadingsFontName);
  Append(line, " AutoHeadingsFontSize=", std::to_string(header.autoHeadingsFontSize),
         " AutoHeadingsFontAttr=", std::to_string(header.autoHeadingsFontAttr),
         " AutoNewPage=", Bool(header.autoNewPage), " Title=");
  AppendQuoted(line, header.title);
  line += " SubTitle=";
  AppendQuoted(line, header.subTitle);
}

void DumpCommand(std::string& line, const SpoolCommand& command) {
  char start[64];
  std::snprintf(start, sizeof start, "%6lld %5d ", static_cast<long long>(command.recordNumber), command.page);
  line += start;
  if (command.keyword == SpoolKeyword::kUnknown) {
    AppendQuoted(line, command.keywordText);
    line += " (unknown keyword)";
    return;
  }
  const std::string_view keyword = KeywordText(command.keyword);
  line += keyword;
  // Fields start in one column; page records have none.
  if (command.keyword != SpoolKeyword::kNewPage && command.keyword != SpoolKeyword::kEndDoc) {
    line.append(8 - keyword.size(), ' ');
  }
  auto field = [&](const char* name, double value) {
    Append(line, " ", name, "=");
    AppendNumber(line, value);
  };
  switch (command.keyword) {
    case SpoolKeyword::kNewPage:
    case SpoolKeyword::kEndDoc:
    case SpoolKeyword::kUnknown:
      break;
    case SpoolKeyword::kSetFont:
      line += " name=";
      AppendQuoted(line, command.font.name);
      field("size", command.font.points);
      Append(line, " bold=", Bool(command.font.bold), " italic=", Bool(command.font.italic),
             " underline=", Bool(command.font.underline));
      break;
    case SpoolKeyword::kTextOut:
      field("x", command.x1);
      field("y", command.y1);
      line += " text=";
      AppendQuoted(line, command.text);
      break;
    case SpoolKeyword::kLineOut:
    case SpoolKeyword::kBoxOut:
      field("x1", command.x1);
      field("y1", command.y1);
      field("x2", command.x2);
      field("y2", command.y2);
      break;
    case SpoolKeyword::kImageOut:
      field("x", command.x1);
      field("y", command.y1);
      field("width", command.ImageWidth());
      field("height", command.ImageHeight());
      line += " file=";
      AppendQuoted(line, command.text);
      break;
  }
}

}  // namespace

std::string DumpHelp() {
  return "usage: cwreport dump SPOOL\n"
         "\n"
         "Prints every record of a spool file on one line: the record number, the\n"
         "page it belongs to, its keyword and its fields, the header (record 1) first.\n"
         "Texts are shown in quotes as UTF-8, control bytes as \\xNN. Problems of a\n"
         "damaged file (cut short, no ENDDOC, unknown keywords, absurd values) are\n"
         "listed on stderr; every whole record is still printed.\n"
         "\n"
         "Exit status: 0 a sound spool, 1 problems found or the file cannot be read,\n"
         "2 bad usage.\n";
}

int RunDump(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  std::string spool;
  try {
    const ParsedArguments parsed = ParseArguments({}, args, 1);
    if (parsed.help) {
      out << DumpHelp();
      return 0;
    }
    if (parsed.operands.empty()) throw UsageError{"no spool file given"};
    spool = parsed.operands.front();
  } catch (const UsageError& usage) {
    err << "cwreport dump: " << usage.text << "\nRun \"cwreport help dump\" for the options.\n";
    return 2;
  }
  try {
    SpoolReader reader(spool);
    DumpOutput output(out);
    if (reader.HasHeader()) {
      DumpHeader(output.Line(), reader.Header());
      output.EndLine();
    }
    SpoolCommand command;
    while (reader.Next(command)) {
      DumpCommand(output.Line(), command);
      output.EndLine();
    }
    if (!output.Finish()) {
      err << "cwreport dump: cannot write the output\n";
      return 1;
    }
    for (const std::string& problem : reader.Problems().Lines()) err << spool << ": " << problem << "\n";
    return reader.Problems().Empty() ? 0 : 1;
  } catch (const RuntimeError& error) {
    err << "cwreport dump: error " << error.Number() << ": " << error.what() << "\n";
  } catch (const std::exception& error) {
    err << "cwreport dump: " << error.what() << "\n";
  }
  return 1;
}

}  // namespace cw::cli
