#pragma once
// Files for the printer tests: spool files assembled record by record and
// read back, and a full disk.

#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "printer/spool_format.h"
#include "printer/spool_reader.h"
#include "testing/temp_folder.h"

namespace cw::testing {

// Plays a full disk: while it lives, no file of this process may grow past
// `bytes`, and a write beyond that fails (EFBIG) instead of raising SIGXFSZ.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    ::getrlimit(RLIMIT_FSIZE, &saved_);
    previousHandler_ = ::signal(SIGXFSZ, SIG_IGN);
    rlimit limit = saved_;
    limit.rlim_cur = bytes;
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &saved_);
    ::signal(SIGXFSZ, previousHandler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit saved_{};
  sighandler_t previousHandler_ = SIG_DFL;
};

// A header with the creation values (AutoNewPage false, SubTitle zero bytes).
inline SpoolRecord DefaultHeader() {
  SpoolRecord header{};
  ApplyHeaderCreationValues(header);
  return header;
}

inline std::string Bytes(const SpoolRecord& record) { return {record.begin(), record.end()}; }

// A spool's bytes: the header, then the records.
inline std::string SpoolBytes(const SpoolRecord& header, const std::vector<SpoolRecord>& records) {
  std::string bytes = Bytes(header);
  for (const SpoolRecord& record : records) bytes += Bytes(record);
  return bytes;
}

// The records of a spool kept as text under tests/data/printer/spools/, one a
// line as DescribeSpool prints them, after the header: "1 SETFONT Arial 9
// bold" (a font name of one word), "1 TEXTOUT 1,1 p1", "1 LINEOUT 0,1.5
// 8,1.5", "2 NEWPAGE"; a picture as "3 IMAGEOUT chart.bmp 1,2 3x4" (its width
// by its height). Any other keyword is a record of that keyword alone. Lines
// starting with # are notes.
inline std::string SpoolFromText(std::string_view name, const SpoolRecord& header = DefaultHeader()) {
  const auto pair = [](const std::string& text, char separator) {
    const std::size_t at = text.find(separator);
    return std::pair{std::stod(text.substr(0, at)), std::stod(text.substr(at + 1))};
  };
  std::istringstream lines(ReadBytes(std::string(CW_TEST_DATA_DIR) + "/printer/spools/" + std::string(name) + ".txt"));
  std::string bytes = Bytes(header);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("#")) continue;
    std::istringstream in(line);
    std::int16_t page = 0;
    std::string keyword;
    in >> page >> keyword;
    std::vector<std::string> words;
    for (std::string word; in >> word;) words.push_back(word);
    SpoolRecord record = MakePageRecord(page, keyword);
    if (keyword == spool::kTextOut) {
      // The text is the rest of the line after one space, blanks and all.
      const std::size_t text = line.find(words[0]) + words[0].size() + 1;
      const auto [x, y] = pair(words[0], ',');
      record = MakeTextRecord(page, x, y, text < line.size() ? line.substr(text) : "");
    } else if (keyword == spool::kLineOut || keyword == spool::kBoxOut) {
      const auto [x1, y1] = pair(words[0], ',');
      const auto [x2, y2] = pair(words[1], ',');
      record = MakeGraphicsRecord(page, keyword, x1, y1, x2, y2);
    } else if (keyword == "IMAGEOUT") {
      const auto [x, y] = pair(words[1], ',');
      const auto [width, height] = pair(words[2], 'x');
      record = MakeImageRecord(page, words[0], x, y, width, height);
    } else if (keyword == "SETFONT") {
      const auto has = [&](const char* attribute) { return std::ranges::count(words, attribute) == 1; };
      record = MakeFontRecord(page, words[0], static_cast<std::int16_t>(std::stoi(words[1])), has("bold"),
                              has("italic"), has("underline"));
    }
    bytes += Bytes(record);
  }
  return bytes;
}

// One line per command record of a spool file, for comparing a spool with a
// table: "1 TEXTOUT 720,720 Date: 11/22/2026", "1 SETFONT Arial 10 bold
// italic", "2 NEWPAGE", "1 LINEOUT 0,1 8,1". Numbers are printed as %g does.
inline std::vector<std::string> DescribeSpool(const std::string& path) {
  SpoolReader reader(path);
  std::vector<std::string> lines;
  for (SpoolCommand c; reader.Next(c);) {
    std::ostringstream line;
    line << c.page << " " << c.keywordText;
    if (c.keyword == SpoolKeyword::kSetFont) {
      line << " " << c.font.name << " " << c.font.points << (c.font.bold ? " bold" : "")
           << (c.font.italic ? " italic" : "") << (c.font.underline ? " underline" : "");
    } else if (c.keyword == SpoolKeyword::kTextOut) {
      line << " " << c.x1 << "," << c.y1 << " " << c.text;
    } else if (c.keyword == SpoolKeyword::kLineOut || c.keyword == SpoolKeyword::kBoxOut) {
      line << " " << c.x1 << "," << c.y1 << " " << c.x2 << "," << c.y2;
    }
    lines.push_back(line.str());
  }
  return lines;
}

}  // namespace cw::testing
