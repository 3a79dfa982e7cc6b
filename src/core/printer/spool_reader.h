#pragma once
// Reads a spool file as a stream: the header, then the command records one at
// a time, through a fixed buffer, so that memory stays the same whatever the
// file's size.
//
// The reader is tolerant. A spool may have been cut short, written by another
// program or damaged; every whole record is handed out, and what is wrong is
// written to a problem list that the callers print: a trailing partial record,
// a missing ENDDOC, unknown keywords, page numbers below 1, coordinates that
// are not finite or lie miles off the page, font sizes no font has. Records
// with such faults are marked unusable; the replays skip them.

#include <cstdint>
#include <string>
#include <vector>

#include "printer/spool_format.h"

namespace cw {

struct SpoolProblem {
  std::int64_t record = 0;  // 0 for the file as a whole
  std::string text;
};

// The problems found while reading, in the order found. Only the first
// thousand are kept word for word; the rest are counted.
class SpoolProblems {
 public:
  static constexpr std::size_t kKept = 1000;

  void Add(std::int64_t record, std::string text);
  const std::vector<SpoolProblem>& List() const { return kept_; }
  std::int64_t Count() const { return count_; }
  bool Empty() const { return count_ == 0; }
  // One printable line per problem ("record 12: unknown keyword "FOO""), and a
  // last line counting those not kept.
  std::vector<std::string> Lines() const;

 private:
  std::vector<SpoolProblem> kept_;
  std::int64_t count_ = 0;
};

class SpoolReader {
 public:
  // Coordinates beyond this many twips from the page (over a mile) are taken
  // for damage rather than drawing.
  static constexpr double kMaxCoordinateTwips = 1e8;

  // Opens the file and reads its header. Error 53 when the file does not
  // exist, 75 when it cannot be opened or read.
  explicit SpoolReader(const std::string& path);
  ~SpoolReader();
  SpoolReader(const SpoolReader&) = delete;
  SpoolReader& operator=(const SpoolReader&) = delete;

  const std::string& Path() const { return path_; }
  // False when the file is shorter than one record; Header() then holds the
  // creation values and there are no commands.
  bool HasHeader() const { return hasHeader_; }
  const SpoolHeader& Header() const { return header_; }
  // Twips in one unit of the header's ScaleMode; an unknown unit is reported
  // and read as twips.
  double TwipsPerUnit() const { return twipsPerUnit_; }
  // Whole records in the file when it was opened, the header included.
  std::int64_t RecordCount() const { return recordCount_; }

  // The next command record; false at the end of the file. Records that
  // cannot be used are returned too, with command.usable false.
  bool Next(SpoolCommand& command);
  // The raw bytes of the record last returned by Next.
  const char* RawRecord() const { return buffer_.data() + lastRecordAt_; }
  // The next Next returns record `record` (2 is the first command).
  void SeekRecord(std::int64_t record);

  SpoolProblems& Problems() { return problems_; }
  const SpoolProblems& Problems() const { return problems_; }

 private:
  // Makes one whole record available at buffer_[position_]; false at the end.
  bool Fill();
  void Check(SpoolCommand& command);
  bool CoordinateOk(double value) const;
  void Reject(SpoolCommand& command, std::string why);

  std::string path_;
  int fd_ = -1;
  std::vector<char> buffer_;
  std::size_t position_ = 0;   // first unread byte in buffer_
  std::size_t end_ = 0;        // bytes held in buffer_
  std::size_t lastRecordAt_ = 0;
  bool atEnd_ = false;
  std::int64_t nextRecord_ = 2;
  std::int64_t recordCount_ = 0;
  bool hasHeader_ = false;
  SpoolHeader header_;
  double twipsPerUnit_ = 1.0;
  std::int64_t endDocRecord_ = 0;  // first ENDDOC seen
  bool reportedCut_ = false;
  bool reportedNoEndDoc_ = false;
  bool reportedAfterEnd_ = false;
  SpoolProblems problems_;
};

}  // namespace cw
