#pragma once
// Where each field of a call detail record is in a CSV row, for the layouts
// PBXs write: Asterisk's cdr_csv (16, 17, 18 or 21 columns), a cdr_custom
// template (the same fields in any order), FreeSWITCH's cdr_csv default
// template, and any CSV whose header row names its columns.

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "import/csv_reader.h"

namespace cw {

// The fields the import reads, Asterisk's and FreeSWITCH's names for one
// thing sharing an entry (src and caller_id_number are both kSource).
enum class CdrField : std::uint8_t {
  kAccountCode,
  kSource,       // src, caller_id_number
  kDestination,  // dst, destination_number
  kContext,      // dcontext, context
  kCallerId,     // clid: "Name" <number>
  kCallerName,   // caller_id_name
  kChannel,
  kDestinationChannel,
  kLastApp,
  kLastData,
  kStart,        // start, start_stamp, calldate
  kAnswer,
  kEnd,
  kDuration,
  kBillsec,
  kDisposition,  // ANSWERED, NO ANSWER, BUSY, FAILED
  kAmaFlags,
  kUniqueId,     // uniqueid, uuid
  kUserField,
  kPeerAccount,
  kLinkedId,
  kSequence,
  kBLegUuid,     // FreeSWITCH: the leg this one was bridged to
  kHangupCause,
  kReadCodec,
  kWriteCodec,
  kCount,
};

enum class CdrFormat {
  kAsterisk,        // cdr_csv, fixed order
  kAsteriskCustom,  // cdr_custom, the order of a column list
  kFreeSwitch,      // cdr_csv, default template
  kCsv,             // a header row names the columns
};

// "asterisk", "asterisk-custom", "freeswitch", "csv".
std::string_view FormatName(CdrFormat format);
std::optional<CdrFormat> FormatNamed(std::string_view name);

class CdrLayout {
 public:
  CdrFormat Format() const { return format_; }
  // Whether the rows carry channel names (FreeSWITCH's default template
  // does not), and so whether trunks can be told by channel.
  bool HasChannels() const { return Has(CdrField::kChannel) || Has(CdrField::kDestinationChannel); }
  bool Has(CdrField field) const { return column_[static_cast<std::size_t>(field)] >= 0; }

  // Why a row of this layout cannot be read for its column count, or empty.
  std::string CheckColumns(std::size_t columns) const;
  // The field of a row; empty when the layout or the row lacks it.
  std::string_view Get(const CsvRow& row, CdrField field) const {
    const int column = column_[static_cast<std::size_t>(field)];
    return column >= 0 && static_cast<std::size_t>(column) < row.fields.size()
               ? row.fields[static_cast<std::size_t>(column)]
               : std::string_view();
  }

  static CdrLayout Asterisk();
  static CdrLayout FreeSwitch();
  // The columns named in order (a cdr_custom template's field list, or a
  // header row). Names are Asterisk's or FreeSWITCH's, in any case; a
  // template's "${CDR(src)}" or "${CSV_QUOTE(${CDR(src)})}" will do as
  // well. A name the import does not know is a column it does not read.
  // Error 5 naming what is missing when the columns lack the start time,
  // both numbers, or both the channels and the context.
  static CdrLayout Named(CdrFormat format, std::span<const std::string_view> names);

 private:
  CdrFormat format_ = CdrFormat::kAsterisk;
  std::array<int, static_cast<std::size_t>(CdrField::kCount)> column_{};
  std::size_t columns_ = 0;
};

// The field a column name stands for, or nullopt.
std::optional<CdrField> FieldNamed(std::string_view name);

// A custom layout's column list "src, dst, start, ..." split at commas.
std::vector<std::string> SplitColumnList(std::string_view list);

// What the first rows of a file say about its layout.
struct Detection {
  std::optional<CdrFormat> format;  // nullopt: no layout fits
  bool headerRow = false;           // kCsv: the first row names the columns
};

// Looks at the first rows (a few dozen will do): a header row naming known
// columns is a CSV with a header; otherwise the layout that most rows fit
// (column count and a start time where it belongs) wins.
Detection DetectFormat(std::span<const CsvRow> rows);

}  // namespace cw
