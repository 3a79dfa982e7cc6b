#pragma once
// Files for the printer tests: spool files assembled record by record and
// read back, and a full disk.

#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <sstream>
#include <string>
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

inline SpoolRecord HeaderWithScaleMode(std::int16_t scaleMode) {
  SpoolRecord header = DefaultHeader();
  PutInt16(header.data(), spool::kScaleMode, scaleMode);
  return header;
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
