#pragma once
// Files for the printer tests: spool files assembled record by record and
// read back, and a full disk.

#include <signal.h>
#include <sys/resource.h>
#include <cstdio>
#include <unistd.h>

#include <stdexcept>
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

// Record `number` (1-based) of a spool's bytes.
inline std::string RecordAt(const std::string& bytes, std::size_t number) {
  return bytes.substr((number - 1) * kSpoolRecordSize, kSpoolRecordSize);
}

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

// Every command record of a spool file, as a reader hands them out.
inline std::vector<SpoolCommand> ReadCommands(const std::string& path) {
  SpoolReader reader(path);
  std::vector<SpoolCommand> commands;
  SpoolCommand command;
  while (reader.Next(command)) commands.push_back(command);
  return commands;
}

// One line per command record, for comparing a spool with a table:
// "1 TEXTOUT 720,720 Date: 11/22/2026", "1 SETFONT Arial 10 bold italic",
// "2 NEWPAGE", "1 LINEOUT 0,1 8,1", "1 IMAGEOUT chart.bmp 1,2 w3 h4".
inline std::string Describe(const SpoolCommand& command) {
  auto number = [](double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%g", value);
    return std::string(text);
  };
  std::string line = std::to_string(command.page) + " " + command.keywordText;
  switch (command.keyword) {
    case SpoolKeyword::kSetFont:
      line += " " + command.font.name + " " + number(command.font.points);
      if (command.font.bold) line += " bold";
      if (command.font.italic) line += " italic";
      if (command.font.underline) line += " underline";
      break;
    case SpoolKeyword::kTextOut:
      line += " " + number(command.x1) + "," + number(command.y1) + " " + command.text;
      break;
    case SpoolKeyword::kLineOut:
    case SpoolKeyword::kBoxOut:
      line += " " + number(command.x1) + "," + number(command.y1) + " " + number(command.x2) + "," +
              number(command.y2);
      break;
    case SpoolKeyword::kImageOut:
      line += " " + command.text + " " + number(command.x1) + "," + number(command.y1) + " w" +
              number(command.ImageWidth()) + " h" + number(command.ImageHeight());
      break;
    default:
      break;
  }
  return line;
}

inline std::vector<std::string> DescribeSpool(const std::string& path) {
  std::vector<std::string> lines;
  for (const SpoolCommand& command : ReadCommands(path)) lines.push_back(Describe(command));
  return lines;
}

}  // namespace cw::testing
