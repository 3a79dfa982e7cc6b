#pragma once
// One call of the call log: a single fixed-column text line as the logging
// program writes it. The reports never parse a line into an object; they cut
// the fields they need out of the text by column and trim them. CallRecord is
// a view over that text, so handing records around costs nothing.

#include <cstddef>
#include <string_view>

#include "data/record_words.h"
#include "support/text.h"

namespace cw {

// Start column (counted from 1) and width of a fixed field.
struct LogColumn {
  std::size_t start;
  std::size_t length;
};

// The column map of a call-log line. The columns between the fields (11, 19,
// 38, 79, 83, 87, 95, 99, 103) are separators and are never read.
namespace column {
inline constexpr LogColumn kDate{1, 10};        // "mm/dd/yyyy"
inline constexpr LogColumn kTime{12, 7};        // clock time of the call
inline constexpr LogColumn kNumber{20, 18};     // telephone number, blank-padded
inline constexpr LogColumn kName{39, 40};       // caller name, blank-padded
inline constexpr LogColumn kLine{80, 3};        // telephone line number
inline constexpr LogColumn kDirection{84, 3};   // "In" or "Out"
inline constexpr LogColumn kDuration{88, 7};    // h:mm:ss
inline constexpr LogColumn kAnswered{96, 3};    // "Yes" when answered
inline constexpr LogColumn kRings{100, 3};      // number of rings
// Minutes and seconds of the duration without the hour digit, as the
// abandoned-call filter reads it.
inline constexpr LogColumn kShortDuration{90, 5};
// Touch-tone digits run from this column to the end of the line.
inline constexpr std::size_t kDtmfStart = 104;
}  // namespace column

class CallRecord {
 public:
  constexpr CallRecord() = default;
  // line: one line as GetRecord returns it (already trimmed). The record
  // refers to the caller's text, which must outlive it.
  constexpr explicit CallRecord(std::string_view line) : line_(line) {}

  constexpr std::string_view Text() const { return line_; }

  // A field cut from its columns and trimmed of blanks (or, for a caller
  // that drops blanks itself, untrimmed); a field that lies beyond the end of
  // a short line is empty.
  constexpr std::string_view Field(LogColumn where, bool trimmed = true) const {
    const std::string_view field = Mid(line_, where.start, where.length);
    return trimmed ? Trim(field) : field;
  }

  // The same for a field named when compiling, as the accessors below are.
  // They run several times for every record of a long log, and nearly every
  // line holds the fixed fields whole. The direction and line columns are
  // padded on either side from one record to the next: they are trimmed with
  // a few bit operations. The wider fields are mostly either full (date,
  // time, duration) or padded (name, number) record after record, so one
  // look at their two ends settles most of them.
  template <LogColumn where>
  [[gnu::always_inline]] constexpr std::string_view Field() const {
    if (line_.size() >= where.start - 1 + where.length) {
      const char* first = line_.data() + where.start - 1;
      if constexpr (where.length <= 3) {
        return TrimFixed<where.length>(first);
      } else {
        if (first[0] != ' ' && first[where.length - 1] != ' ') return std::string_view(first, where.length);
        if constexpr (where.length <= 8) return TrimFixed<where.length>(first);
      }
    }
    return Field(where);
  }

  [[gnu::always_inline]] constexpr std::string_view Date() const { return Field<column::kDate>(); }
  [[gnu::always_inline]] constexpr std::string_view Time() const { return Field<column::kTime>(); }
  [[gnu::always_inline]] constexpr std::string_view Number() const { return Field<column::kNumber>(); }
  [[gnu::always_inline]] constexpr std::string_view Name() const { return Field<column::kName>(); }
  [[gnu::always_inline]] constexpr std::string_view Line() const { return Field<column::kLine>(); }
  [[gnu::always_inline]] constexpr std::string_view Direction() const { return Field<column::kDirection>(); }
  [[gnu::always_inline]] constexpr std::string_view Duration() const { return Field<column::kDuration>(); }
  [[gnu::always_inline]] constexpr std::string_view Answered() const { return Field<column::kAnswered>(); }
  [[gnu::always_inline]] constexpr std::string_view Rings() const { return Field<column::kRings>(); }
  [[gnu::always_inline]] constexpr std::string_view ShortDuration() const { return Field<column::kShortDuration>(); }

  // The touch-tone digits exist only on a line longer than the fixed fields,
  // and are shown only when the DTMF option is on; otherwise they count as
  // empty.
  constexpr std::string_view Dtmf(bool dtmfOption) const {
    if (!dtmfOption || line_.size() < column::kDtmfStart) return {};
    return Trim(line_.substr(column::kDtmfStart - 1));
  }

 private:
  std::string_view line_;
};

}  // namespace cw
