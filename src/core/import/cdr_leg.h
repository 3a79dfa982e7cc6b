#pragma once
// One row of a CDR file read as a leg of a call: the fields the import
// needs, copied out of the row (in follow mode the file's buffer does not
// outlive the call).

#include <cstdint>
#include <optional>
#include <string>

#include "import/cdr_layout.h"
#include "import/cdr_time.h"

namespace cw {

struct CdrLeg {
  std::int64_t row = 0;  // the line of the CDR file where the row begins
  LocalSeconds start = 0;
  std::optional<LocalSeconds> answer;
  std::optional<LocalSeconds> end;
  std::optional<std::int32_t> billsec;
  // The disposition said ANSWERED; without a disposition column (FreeSWITCH)
  // a leg counts as answered when it has an answer time.
  bool answered = false;
  std::string source;
  std::string destination;
  std::string context;
  std::string callerName;  // the quoted part of clid, or caller_id_name; as written
  std::string channel;
  std::string destinationChannel;
  std::string lastApp;
  std::string lastData;
  std::string uniqueId;
  std::string linkedId;
  std::string bLegUuid;

  // When the talk began: the answer time, or the end less the billed
  // seconds when the PBX left the answer time out.
  std::optional<LocalSeconds> AnswerMoment() const;
  LocalSeconds EndMoment() const;
};

// Reads a row into leg. Returns why the row cannot be read ("18 columns;
// ...", "start time \"x\" is not a date and time"), or empty when it was.
std::string ReadLeg(const CsvRow& row, const CdrLayout& layout, CdrLeg& leg);

// The name in a caller ID as Asterisk writes it, "Name" <number>: the quoted
// part (quotes inside it kept), or empty when there is none.
std::string_view QuotedCallerName(std::string_view callerId);

}  // namespace cw
