#include "printer/spool_reader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "printer/scale_mode.h"
#include "support/runtime_error.h"

namespace cw {

namespace {

// About 850 KB per read.
constexpr std::int64_t kBufferRecords = 2048;

std::string Quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

std::string Number(double value) {
  char text[64];
  std::snprintf(text, sizeof text, "%g", value);
  return text;
}

}  // namespace

void SpoolProblems::Add(std::int64_t record, std::string text) {
  ++count_;
  if (kept_.size() < kKept) kept_.push_back({record, std::move(text)});
}

std::vector<std::string> SpoolProblems::Lines() const {
  std::vector<std::string> lines;
  lines.reserve(kept_.size() + 1);
  for (const SpoolProblem& problem : kept_) {
    lines.push_back(problem.record > 0 ? "record " + std::to_string(problem.record) + ": " + problem.text
                                       : problem.text);
  }
  const std::int64_t more = count_ - static_cast<std::int64_t>(kept_.size());
  if (more > 0) lines.push_back("... and " + std::to_string(more) + " more problems");
  return lines;
}

SpoolReader::SpoolReader(const std::string& path) : path_(path) {
  // Without O_NONBLOCK, opening a named pipe waits for a writer that never
  // comes; opened this way it is refused below like any file that is not regular.
  do {
    fd_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  } while (fd_ < 0 && errno == EINTR);
  if (fd_ < 0) {
    const int error = errno;
    if (error == ENOENT) throw RuntimeError(err::kFileNotFound, "File not found: " + path);
    throw RuntimeError(err::kPathFileAccess, "Cannot open the spool file " + path + ": " + std::strerror(error));
  }
  struct stat info;
  if (::fstat(fd_, &info) != 0 || !S_ISREG(info.st_mode)) {
    ::close(fd_);
    fd_ = -1;
    throw RuntimeError(err::kPathFileAccess, "The spool file " + path + " is not a readable file");
  }
  recordCount_ = info.st_size / static_cast<std::int64_t>(kSpoolRecordSize);
  // A short spool (one preview page, a small report) needs no more buffer
  // than it has records; allocating and clearing the full buffer for it
  // would cost more than reading it.
  const auto records = static_cast<std::size_t>(std::clamp<std::int64_t>(recordCount_ + 1, 1, kBufferRecords));
  buffer_.resize(records * kSpoolRecordSize);

  if (!Fill()) {
    problems_.Add(0, "the file holds no header record (" + std::to_string(end_) + " bytes)");
    reportedCut_ = true;
    reportedNoEndDoc_ = true;
    return;
  }
  hasHeader_ = true;
  header_ = DecodeHeader(buffer_.data() + position_);
  position_ += kSpoolRecordSize;
  if (std::optional<double> unit = cw::TwipsPerUnit(header_.scaleMode)) {
    twipsPerUnit_ = *unit;
  } else {
    problems_.Add(1, "ScaleMode " + std::to_string(header_.scaleMode) +
                         " is not a known unit; coordinates are read as twips");
  }
  if (header_.orientation != 1 && header_.orientation != 2) {
    problems_.Add(1, "Orientation " + std::to_string(header_.orientation) +
                         " is neither portrait (1) nor landscape (2); read as portrait");
  }
}

SpoolReader::~SpoolReader() {
  if (fd_ >= 0) ::close(fd_);
}

bool SpoolReader::Fill() {
  if (end_ - position_ >= kSpoolRecordSize) return true;
  if (atEnd_) return false;
  // Keep the partial record at the front and fill up behind it.
  const std::size_t kept = end_ - position_;
  std::memmove(buffer_.data(), buffer_.data() + position_, kept);
  position_ = 0;
  end_ = kept;
  while (end_ < buffer_.size()) {
    const ssize_t got = ::read(fd_, buffer_.data() + end_, buffer_.size() - end_);
    if (got < 0) {
      if (errno == EINTR) continue;
      throw RuntimeError(err::kPathFileAccess,
                         "Cannot read the spool file " + path_ + ": " + std::strerror(errno));
    }
    if (got == 0) {
      atEnd_ = true;
      break;
    }
    end_ += static_cast<std::size_t>(got);
  }
  return end_ >= kSpoolRecordSize;
}

bool SpoolReader::Next(SpoolCommand& command) {
  if (!hasHeader_) return false;
  if (!Fill()) {
    const std::size_t left = end_ - position_;
    if (left > 0 && !reportedCut_) {
      reportedCut_ = true;
      problems_.Add(nextRecord_, "cut short: only " + std::to_string(left) + " of " +
                                     std::to_string(kSpoolRecordSize) + " bytes; ignored");
    }
    if (endDocRecord_ == 0 && !reportedNoEndDoc_) {
      reportedNoEndDoc_ = true;
      problems_.Add(0, "no ENDDOC record: the file ends after record " + std::to_string(nextRecord_ - 1));
    }
    return false;
  }
  lastRecordAt_ = position_;
  DecodeCommand(buffer_.data() + position_, nextRecord_, command);
  position_ += kSpoolRecordSize;
  ++nextRecord_;
  Check(command);
  return true;
}

void SpoolReader::SeekRecord(std::int64_t record) {
  if (record < 2) record = 2;
  const off_t offset = static_cast<off_t>((record - 1) * static_cast<std::int64_t>(kSpoolRecordSize));
  if (::lseek(fd_, offset, SEEK_SET) < 0) {
    throw RuntimeError(err::kPathFileAccess,
                       "Cannot seek in the spool file " + path_ + ": " + std::strerror(errno));
  }
  position_ = end_ = 0;
  atEnd_ = false;
  nextRecord_ = record;
}

bool SpoolReader::CoordinateOk(double value) const {
  return std::isfinite(value) && std::fabs(value * twipsPerUnit_) <= kMaxCoordinateTwips;
}

void SpoolReader::Reject(SpoolCommand& command, std::string why) {
  command.usable = false;
  problems_.Add(command.recordNumber, std::move(why));
}

void SpoolReader::Check(SpoolCommand& command) {
  if (command.keyword == SpoolKeyword::kUnknown) {
    Reject(command, command.keywordText.empty() ? "no keyword; skipped"
                                                : "unknown keyword " + Quoted(command.keywordText) + "; skipped");
    return;
  }
  if (endDocRecord_ != 0 && command.recordNumber > endDocRecord_ && !reportedAfterEnd_) {
    reportedAfterEnd_ = true;
    problems_.Add(command.recordNumber, "follows the ENDDOC of record " + std::to_string(endDocRecord_));
  }
  if (command.keyword == SpoolKeyword::kEndDoc && endDocRecord_ == 0) endDocRecord_ = command.recordNumber;
  if (command.page < 1) {
    Reject(command, "page number " + std::to_string(command.page) + " is not a page; skipped");
    return;
  }
  switch (command.keyword) {
    case SpoolKeyword::kSetFont:
      if (command.font.points < 1 || command.font.points > 1638) {
        Reject(command, "font size " + Number(command.font.points) + " is not a usable size; skipped");
      }
      break;
    case SpoolKeyword::kTextOut:
      if (!CoordinateOk(command.x1) || !CoordinateOk(command.y1)) {
        Reject(command, "text position (" + Number(command.x1) + ", " + Number(command.y1) +
                            ") is off any page; skipped");
      }
      break;
    case SpoolKeyword::kLineOut:
    case SpoolKeyword::kBoxOut:
    case SpoolKeyword::kImageOut:
      if (!CoordinateOk(command.x1) || !CoordinateOk(command.y1) || !CoordinateOk(command.x2) ||
          !CoordinateOk(command.y2)) {
        Reject(command, std::string(KeywordText(command.keyword)) + " coordinates (" + Number(command.x1) + ", " +
                            Number(command.y1) + ", " + Number(command.x2) + ", " + Number(command.y2) +
                            ") are off any page; skipped");
      }
      break;
    case SpoolKeyword::kNewPage:
    case SpoolKeyword::kEndDoc:
    case SpoolKeyword::kUnknown:
      break;
  }
}

}  // namespace cw
