#include "settings/ini_document.h"

#include <algorithm>

#include "support/runtime_error.h"

namespace cw {

namespace {

// INI names are trimmed of tabs as well as blanks, unlike the classic Trim.
constexpr std::string_view kIniBlanks = " \t";
constexpr std::string_view kUtf8ByteOrderMark = "\xEF\xBB\xBF";

std::string_view TrimIniBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kIniBlanks);
  if (first == std::string_view::npos) return {};
  const std::size_t last = text.find_last_not_of(kIniBlanks);
  return text.substr(first, last - first + 1);
}

char FoldAscii(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

bool HasLineBreak(std::string_view text) { return text.find_first_of("\r\n") != std::string_view::npos; }

[[noreturn]] void Refuse(std::string_view what, std::string_view text) {
  throw RuntimeError(err::kInvalidCall, "Invalid procedure call or argument: " + std::string(what) +
                                            " \"" + std::string(text) + "\" cannot be kept in an INI file");
}

}  // namespace

bool SameNameIgnoringCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return FoldAscii(x) == FoldAscii(y); });
}

IniDocument::Line IniDocument::Classify(std::string text) {
  Line line;
  line.text = std::move(text);
  const std::string_view view = line.text;
  const std::string_view content = TrimIniBlanks(view);
  if (content.empty() || content.front() == ';' || content.front() == '#') return line;
  if (content.front() == '[') {
    const std::size_t close = content.find(']');
    if (close != std::string_view::npos) {
      line.kind = Kind::kSection;
      line.name = TrimIniBlanks(content.substr(1, close - 1));
    }
    return line;
  }
  const std::size_t equals = view.find('=');
  if (equals != std::string_view::npos) {
    line.kind = Kind::kEntry;
    line.name = TrimIniBlanks(view.substr(0, equals));
    line.valueStart = equals + 1;
  }
  return line;
}

IniDocument IniDocument::Parse(std::string_view text) {
  IniDocument document;
  // Editors on Windows start a UTF-8 file with a byte-order mark; left in,
  // it would become part of the first section's name.
  if (text.starts_with(kUtf8ByteOrderMark)) {
    document.byteOrderMark_ = true;
    text.remove_prefix(kUtf8ByteOrderMark.size());
  }
  std::size_t start = 0;
  bool first = true;
  while (start < text.size()) {
    std::size_t end = text.find('\n', start);
    const bool hasEnd = end != std::string_view::npos;
    if (!hasEnd) end = text.size();
    std::string_view line = text.substr(start, end - start);
    const bool hadCr = !line.empty() && line.back() == '\r';
    if (hadCr) line.remove_suffix(1);
    if (first && hasEnd) document.crlf_ = hadCr;
    first = false;
    document.lines_.push_back(Classify(std::string(line)));
    start = end + 1;
  }
  return document;
}

std::size_t IniDocument::FindSection(std::string_view section) const {
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    if (lines_[i].kind == Kind::kSection && SameNameIgnoringCase(lines_[i].name, section)) return i;
  }
  return lines_.size();
}

std::optional<std::string_view> IniDocument::Find(std::string_view section, std::string_view key) const {
  for (std::size_t i = FindSection(section) + 1; i < lines_.size(); ++i) {
    const Line& line = lines_[i];
    if (line.kind == Kind::kSection) break;
    if (line.kind == Kind::kEntry && SameNameIgnoringCase(line.name, key)) {
      return TrimIniBlanks(std::string_view(line.text).substr(line.valueStart));
    }
  }
  return std::nullopt;
}

void IniDocument::Set(std::string_view section, std::string_view key, std::string_view value) {
  if (section.empty() || HasLineBreak(section) || section.find(']') != std::string_view::npos ||
      TrimIniBlanks(section) != section) {
    Refuse("the section name", section);
  }
  if (key.empty() || HasLineBreak(key) || key.find('=') != std::string_view::npos ||
      TrimIniBlanks(key) != key || key.front() == '[' || key.front() == ';' || key.front() == '#') {
    Refuse("the key name", key);
  }
  if (HasLineBreak(value)) Refuse("the value of", key);

  const std::size_t header = FindSection(section);
  if (header == lines_.size()) {
    if (!lines_.empty() && !TrimIniBlanks(lines_.back().text).empty()) lines_.push_back(Classify({}));
    std::string sectionLine = "[";
    sectionLine.append(section).append("]");
    lines_.push_back(Classify(sectionLine));
    lines_.push_back(Classify(std::string(key) + "=" + std::string(value)));
    return;
  }
  std::size_t insertAt = header + 1;
  for (std::size_t i = header + 1; i < lines_.size() && lines_[i].kind != Kind::kSection; ++i) {
    Line& line = lines_[i];
    if (line.kind != Kind::kEntry) continue;
    if (SameNameIgnoringCase(line.name, key)) {
      line.text.resize(line.valueStart);
      line.text += value;
      return;
    }
    insertAt = i + 1;
  }
  lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(insertAt),
                Classify(std::string(key) + "=" + std::string(value)));
}

std::string IniDocument::Text() const {
  const std::string_view end = crlf_ ? "\r\n" : "\n";
  std::string text(byteOrderMark_ ? kUtf8ByteOrderMark : std::string_view());
  for (const Line& line : lines_) {
    text += line.text;
    text += end;
  }
  return text;
}

}  // namespace cw
