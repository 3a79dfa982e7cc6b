#pragma once
// One call of the call log from the legs a PBX wrote for it: who called
// whom, on which line, whether a person answered, how long they talked and
// how long it rang first.

#include <cstdint>
#include <span>
#include <string>

#include "import/cdr_leg.h"
#include "import/import_rules.h"

namespace cw {

// A call as the log records it.
struct LogCall {
  LocalSeconds start = 0;
  LocalSeconds end = 0;  // when the line became free again
  bool inbound = true;
  std::int32_t line = 0;
  std::string number;  // the outside party, formatted
  std::string name;    // Windows-1252, as the log holds it
  bool answered = false;
  std::int32_t talkSeconds = 0;
  std::int32_t rings = 0;
};

enum class CallOutcome {
  kCall,           // call holds the call
  kInternal,       // it never touched a trunk
  kUnlistedTrunk,  // it came or went through a channel that looks like a trunk but is not listed
};

struct BuiltCall {
  CallOutcome outcome = CallOutcome::kInternal;
  LogCall call;
  std::string unlistedChannel;  // kUnlistedTrunk: the channel's name without its "-0000001a"
};

// legs: the legs of one call, in any order. channelsKnown: the layout has
// channel columns; without them (FreeSWITCH's default template) a call from
// an inbound context (by default "public") is inbound, one to a number of seven digits or more is
// outbound, and every call is on the trunks' one line.
BuiltCall BuildCall(std::span<const CdrLeg* const> legs, const ImportRules& rules, bool channelsKnown);

// The outside party's number as the log shows it: ten digits as
// "(555) 123-4567", any other count as the digits alone (at most 18).
std::string FormatPartyNumber(std::string_view number);

// A caller name for the log: UTF-8 text turned into Windows-1252 (a
// character it lacks becomes "?"), other bytes kept as Windows-1252, control
// bytes and the code page's five unused bytes made blanks and "?", trimmed,
// at most 40 characters.
std::string CleanCallerName(std::string_view name);

// The channel's name without the PBX's counter: "SIP/telco-0000001a" gives
// "SIP/telco".
std::string_view ChannelStem(std::string_view channel);

}  // namespace cw
