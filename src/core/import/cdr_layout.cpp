#include "import/cdr_layout.h"

#include "import/cdr_time.h"
#include "support/runtime_error.h"
#include "support/text.h"

namespace cw {

namespace {

struct NamedField {
  std::string_view name;
  CdrField field;
};

// Asterisk's names, FreeSWITCH's, and the few other spellings that CDR
// exports use for the same fields.
constexpr NamedField kFieldNames[] = {
    {"accountcode", CdrField::kAccountCode},
    {"src", CdrField::kSource},
    {"caller_id_number", CdrField::kSource},
    {"dst", CdrField::kDestination},
    {"destination_number", CdrField::kDestination},
    {"dcontext", CdrField::kContext},
    {"context", CdrField::kContext},
    {"clid", CdrField::kCallerId},
    {"caller_id_name", CdrField::kCallerName},
    {"cnam", CdrField::kCallerName},
    {"channel", CdrField::kChannel},
    {"channel_name", CdrField::kChannel},
    {"dstchannel", CdrField::kDestinationChannel},
    {"lastapp", CdrField::kLastApp},
    {"lastdata", CdrField::kLastData},
    {"start", CdrField::kStart},
    {"start_stamp", CdrField::kStart},
    {"calldate", CdrField::kStart},
    {"answer", CdrField::kAnswer},
    {"answer_stamp", CdrField::kAnswer},
    {"end", CdrField::kEnd},
    {"end_stamp", CdrField::kEnd},
    {"duration", CdrField::kDuration},
    {"billsec", CdrField::kBillsec},
    {"disposition", CdrField::kDisposition},
    {"amaflags", CdrField::kAmaFlags},
    {"uniqueid", CdrField::kUniqueId},
    {"uuid", CdrField::kUniqueId},
    {"userfield", CdrField::kUserField},
    {"peeraccount", CdrField::kPeerAccount},
    {"linkedid", CdrField::kLinkedId},
    {"sequence", CdrField::kSequence},
    {"bleg_uuid", CdrField::kBLegUuid},
    {"hangup_cause", CdrField::kHangupCause},
    {"read_codec", CdrField::kReadCodec},
    {"write_codec", CdrField::kWriteCodec},
};

constexpr CdrField kAsteriskOrder[] = {
    CdrField::kAccountCode, CdrField::kSource,   CdrField::kDestination, CdrField::kContext,
    CdrField::kCallerId,    CdrField::kChannel,  CdrField::kDestinationChannel, CdrField::kLastApp,
    CdrField::kLastData,    CdrField::kStart,    CdrField::kAnswer,      CdrField::kEnd,
    CdrField::kDuration,    CdrField::kBillsec,  CdrField::kDisposition, CdrField::kAmaFlags,
    CdrField::kUniqueId,    CdrField::kUserField, CdrField::kPeerAccount, CdrField::kLinkedId,
    CdrField::kSequence,
};

constexpr CdrField kFreeSwitchOrder[] = {
    CdrField::kCallerName, CdrField::kSource,     CdrField::kDestination, CdrField::kContext,
    CdrField::kStart,      CdrField::kAnswer,     CdrField::kEnd,         CdrField::kDuration,
    CdrField::kBillsec,    CdrField::kHangupCause, CdrField::kUniqueId,   CdrField::kBLegUuid,
    CdrField::kAccountCode, CdrField::kReadCodec, CdrField::kWriteCodec,
};

// The start time's column in each fixed layout, for detection.
constexpr std::size_t kAsteriskStartColumn = 9;
constexpr std::size_t kFreeSwitchStartColumn = 4;
constexpr std::size_t kFreeSwitchColumns = std::size(kFreeSwitchOrder);

bool AsteriskColumnCount(std::size_t columns) {
  return columns == 16 || columns == 17 || columns == 18 || columns == 21;
}

// "${CSV_QUOTE(${CDR(src)})}" -> "src": the innermost name of a template.
std::string_view TemplateName(std::string_view name) {
  name = Trim(name);
  while (!name.empty() && (name.front() == '$' || name.front() == '{' || name.front() == '"')) {
    name.remove_prefix(1);
  }
  while (!name.empty() && (name.back() == '}' || name.back() == ')' || name.back() == '"')) name.remove_suffix(1);
  if (const std::size_t open = name.rfind('('); open != std::string_view::npos) name.remove_prefix(open + 1);
  while (!name.empty() && (name.front() == '$' || name.front() == '{')) name.remove_prefix(1);
  return Trim(name);
}

}  // namespace

std::string_view FormatName(CdrFormat format) {
  switch (format) {
    case CdrFormat::kAsterisk: return "asterisk";
    case CdrFormat::kAsteriskCustom: return "asterisk-custom";
    case CdrFormat::kFreeSwitch: return "freeswitch";
    case CdrFormat::kCsv: return "csv";
  }
  return "";
}

std::optional<CdrFormat> FormatNamed(std::string_view name) {
  const std::string lower = LowerCase(Trim(name));
  for (CdrFormat format : {CdrFormat::kAsterisk, CdrFormat::kAsteriskCustom, CdrFormat::kFreeSwitch, CdrFormat::kCsv}) {
    if (lower == FormatName(format)) return format;
  }
  return std::nullopt;
}

std::optional<CdrField> FieldNamed(std::string_view name) {
  const std::string lower = LowerCase(TemplateName(name));
  for (const NamedField& named : kFieldNames) {
    if (lower == named.name) return named.field;
  }
  return std::nullopt;
}

std::vector<std::string> SplitColumnList(std::string_view list) {
  // Template names hold commas of their own only inside "${...}", so the
  // split skips what is inside braces.
  std::vector<std::string> names;
  std::string current;
  int depth = 0;
  for (char c : list) {
    if (c == '{') ++depth;
    if (c == '}' && depth > 0) --depth;
    if (c == ',' && depth == 0) {
      names.emplace_back(Trim(current));
      current.clear();
    } else {
      current += c;
    }
  }
  if (!Trim(current).empty() || !names.empty()) names.emplace_back(Trim(current));
  return names;
}

std::string CdrLayout::CheckColumns(std::size_t columns) const {
  switch (format_) {
    case CdrFormat::kAsterisk:
      if (AsteriskColumnCount(columns)) return {};
      return std::to_string(columns) + " columns; an Asterisk row has 16, 17, 18 or 21";
    case CdrFormat::kFreeSwitch:
      if (columns == kFreeSwitchColumns) return {};
      return std::to_string(columns) + " columns; a FreeSWITCH row has " + std::to_string(kFreeSwitchColumns);
    case CdrFormat::kAsteriskCustom:
    case CdrFormat::kCsv:
      if (columns == columns_) return {};
      return std::to_string(columns) + " columns; the layout has " + std::to_string(columns_);
  }
  return {};
}

CdrLayout CdrLayout::Asterisk() {
  CdrLayout layout;
  layout.format_ = CdrFormat::kAsterisk;
  layout.column_.fill(-1);
  for (std::size_t i = 0; i < std::size(kAsteriskOrder); ++i) {
    layout.column_[static_cast<std::size_t>(kAsteriskOrder[i])] = static_cast<int>(i);
  }
  layout.columns_ = std::size(kAsteriskOrder);
  return layout;
}

CdrLayout CdrLayout::FreeSwitch() {
  CdrLayout layout;
  layout.format_ = CdrFormat::kFreeSwitch;
  layout.column_.fill(-1);
  for (std::size_t i = 0; i < std::size(kFreeSwitchOrder); ++i) {
    layout.column_[static_cast<std::size_t>(kFreeSwitchOrder[i])] = static_cast<int>(i);
  }
  layout.columns_ = kFreeSwitchColumns;
  return layout;
}

CdrLayout CdrLayout::Named(CdrFormat format, std::span<const std::string_view> names) {
  CdrLayout layout;
  layout.format_ = format;
  layout.column_.fill(-1);
  layout.columns_ = names.size();
  for (std::size_t i = 0; i < names.size(); ++i) {
    const std::optional<CdrField> field = FieldNamed(names[i]);
    // The first of two columns of one name is the one read.
    if (field && !layout.Has(*field)) layout.column_[static_cast<std::size_t>(*field)] = static_cast<int>(i);
  }
  std::string missing;
  auto need = [&missing](bool present, std::string_view what) {
    if (present) return;
    missing += missing.empty() ? "" : ", ";
    missing += what;
  };
  need(layout.Has(CdrField::kStart), "the start time (start)");
  need(layout.Has(CdrField::kSource) || layout.Has(CdrField::kDestination), "a number (src or dst)");
  need(layout.HasChannels() || layout.Has(CdrField::kContext), "the channels or the context");
  if (!missing.empty()) throw RuntimeError(err::kInvalidCall, "the columns lack " + missing);
  return layout;
}

Detection DetectFormat(std::span<const CsvRow> rows) {
  if (rows.empty()) return {};
  // A header names columns and holds no time.
  const CsvRow& first = rows.front();
  int named = 0;
  bool startNamed = false;
  bool holdsTime = false;
  for (std::string_view field : first.fields) {
    if (const std::optional<CdrField> known = FieldNamed(field)) {
      ++named;
      startNamed = startNamed || *known == CdrField::kStart;
    }
    holdsTime = holdsTime || ParseCdrTime(field).has_value();
  }
  if (named >= 3 && startNamed && !holdsTime) return {CdrFormat::kCsv, true};

  int asterisk = 0;
  int freeSwitch = 0;
  for (const CsvRow& row : rows) {
    const std::size_t columns = row.fields.size();
    if (AsteriskColumnCount(columns) && ParseCdrTime(row.fields[kAsteriskStartColumn])) ++asterisk;
    if (columns == kFreeSwitchColumns && ParseCdrTime(row.fields[kFreeSwitchStartColumn])) ++freeSwitch;
  }
  if (asterisk == 0 && freeSwitch == 0) return {};
  return {asterisk >= freeSwitch ? CdrFormat::kAsterisk : CdrFormat::kFreeSwitch, false};
}

}  // namespace cw
