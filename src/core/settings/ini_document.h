#pragma once
// An INI file held as its lines, so that a change to one key rewrites only
// that line and keeps every other section, key, comment and blank line as it
// was. Section and key names are matched ignoring ASCII case (as the Windows
// profile functions and the registry do); the first section of a name and
// the first key of a name within it are the ones read and written.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cw {

class IniDocument {
 public:
  IniDocument() = default;

  // Lines may end in CR LF or LF; a missing line end after the last line is
  // accepted, and so is a UTF-8 byte-order mark before the first line (kept
  // on writing). A line "[name]" opens a section, a line holding "=" is a key
  // (the name is trimmed of blanks and tabs), a line starting with ";" or
  // "#" and anything else is kept but not read.
  static IniDocument Parse(std::string_view text);

  // The value of the key as it stands after the first "=", trimmed of
  // blanks and tabs ("Logs = /p" gives "/p"); nullopt when the section or the
  // key is missing.
  std::optional<std::string_view> Find(std::string_view section, std::string_view key) const;

  // Sets the key to value, adding the key at the end of its section or the
  // section at the end of the file when they are missing. An existing key
  // keeps the spelling it has in the file. Error 5 when the section or key
  // cannot be written as an INI line (empty, a line break, "]" in a section,
  // "=" in a key, blanks around a key, a key starting with "[", ";" or "#")
  // or when the value holds a line break.
  void Set(std::string_view section, std::string_view key, std::string_view value);

  // The whole file, every line ended by CR LF when the parsed text used CR LF
  // (judged by its first line), otherwise by LF.
  std::string Text() const;

 private:
  enum class Kind { kOther, kSection, kEntry };
  struct Line {
    std::string text;
    Kind kind = Kind::kOther;
    std::string name;            // section name or key, trimmed
    std::size_t valueStart = 0;  // entries: offset of the value in text
  };
  static Line Classify(std::string text);
  // Index of the first section header of that name, or lines_.size().
  std::size_t FindSection(std::string_view section) const;

  std::vector<Line> lines_;
  bool crlf_ = false;
  bool byteOrderMark_ = false;
};

// ASCII case-insensitive equality of two names.
bool SameNameIgnoringCase(std::string_view a, std::string_view b);

}  // namespace cw
