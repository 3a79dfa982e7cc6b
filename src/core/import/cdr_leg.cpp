#include "import/cdr_leg.h"

#include "support/text.h"

namespace cw {

namespace {

// A whole number of seconds as PBXs write it ("42", " 42", "42.0" from some
// database exports); nullopt for anything else.
std::optional<std::int32_t> Seconds(std::string_view text) {
  text = Trim(text);
  if (const std::size_t dot = text.find('.'); dot != std::string_view::npos) {
    if (text.substr(dot + 1).find_first_not_of('0') != std::string_view::npos) return std::nullopt;
    text = text.substr(0, dot);
  }
  if (text.empty() || text.size() > 9) return std::nullopt;
  std::int32_t value = 0;
  for (char c : text) {
    if (!IsDigit(c)) return std::nullopt;
    value = value * 10 + DigitValue(c);
  }
  return value;
}

// The time of a field that may be empty; false when it holds no time.
bool OptionalTime(std::string_view text, std::optional<LocalSeconds>& into) {
  text = Trim(text);
  into.reset();
  if (text.empty()) return true;
  into = ParseCdrTime(text);
  return into.has_value();
}

std::string Quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

}  // namespace

std::optional<LocalSeconds> CdrLeg::AnswerMoment() const {
  if (answer) return answer;
  if (end && billsec) return *end - *billsec;
  return std::nullopt;
}

LocalSeconds CdrLeg::EndMoment() const { return end ? *end : start; }

std::string_view QuotedCallerName(std::string_view callerId) {
  callerId = Trim(callerId);
  if (callerId.empty() || callerId.front() != '"') return {};
  // The name may hold quotes of its own: it ends at the last quote before
  // the number in angle brackets.
  const std::size_t angle = callerId.rfind('<');
  const std::string_view head = callerId.substr(0, angle);
  const std::size_t close = head.rfind('"');
  if (close == 0 || close == std::string_view::npos) return callerId.substr(1);
  return callerId.substr(1, close - 1);
}

std::string ReadLeg(const CsvRow& row, const CdrLayout& layout, CdrLeg& leg) {
  if (row.unterminatedQuote) return "a quoted field is not closed";
  if (std::string problem = layout.CheckColumns(row.fields.size()); !problem.empty()) return problem;
  auto field = [&](CdrField which) { return layout.Get(row, which); };

  leg.row = row.line;
  const std::string_view start = Trim(field(CdrField::kStart));
  if (start.empty()) return "no start time";
  const std::optional<LocalSeconds> startTime = ParseCdrTime(start);
  if (!startTime) return "start time " + Quoted(start) + " is not a date and time";
  leg.start = *startTime;
  if (!OptionalTime(field(CdrField::kAnswer), leg.answer)) {
    return "answer time " + Quoted(Trim(field(CdrField::kAnswer))) + " is not a date and time";
  }
  if (!OptionalTime(field(CdrField::kEnd), leg.end)) {
    return "end time " + Quoted(Trim(field(CdrField::kEnd))) + " is not a date and time";
  }
  leg.billsec.reset();
  if (const std::string_view billsec = Trim(field(CdrField::kBillsec)); !billsec.empty()) {
    leg.billsec = Seconds(billsec);
    if (!leg.billsec) return "billsec " + Quoted(billsec) + " is not a number of seconds";
  }
  if (!leg.end) {
    // Some exports leave the end out; the duration says when it was.
    if (const std::optional<std::int32_t> duration = Seconds(field(CdrField::kDuration))) {
      leg.end = leg.start + *duration;
    }
  }
  if (layout.Has(CdrField::kDisposition)) {
    leg.answered = Trim(field(CdrField::kDisposition)) == "ANSWERED";
  } else {
    leg.answered = leg.answer.has_value();
  }

  leg.source.assign(Trim(field(CdrField::kSource)));
  leg.destination.assign(Trim(field(CdrField::kDestination)));
  leg.context.assign(Trim(field(CdrField::kContext)));
  leg.callerName.assign(layout.Has(CdrField::kCallerName) ? field(CdrField::kCallerName)
                                                          : QuotedCallerName(field(CdrField::kCallerId)));
  leg.channel.assign(Trim(field(CdrField::kChannel)));
  leg.destinationChannel.assign(Trim(field(CdrField::kDestinationChannel)));
  leg.lastApp.assign(Trim(field(CdrField::kLastApp)));
  leg.lastData.assign(field(CdrField::kLastData).substr(0, 200));
  leg.uniqueId.assign(Trim(field(CdrField::kUniqueId)));
  leg.linkedId.assign(Trim(field(CdrField::kLinkedId)));
  leg.bLegUuid.assign(Trim(field(CdrField::kBLegUuid)));
  return {};
}

}  // namespace cw
