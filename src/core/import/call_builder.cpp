#include "import/call_builder.h"

#include <algorithm>
#include <vector>

#include "support/ansi_text.h"
#include "support/text.h"

namespace cw {

namespace {

constexpr std::size_t kNameWidth = 40;
constexpr std::size_t kNumberWidth = 18;
// A number dialled out has at least this many digits; extensions have fewer.
constexpr std::size_t kOutsideDigits = 7;
constexpr std::int32_t kMaxRings = 999;

bool IsLocalChannel(std::string_view channel) { return channel.starts_with("Local/"); }

std::string DigitsOf(std::string_view text) {
  std::string digits;
  for (char c : text) {
    if (IsDigit(c)) digits += c;
  }
  return digits;
}

std::int32_t TalkOf(const CdrLeg& leg) {
  if (leg.billsec) return *leg.billsec;
  if (leg.answer && leg.end) return static_cast<std::int32_t>(std::max<LocalSeconds>(0, *leg.end - *leg.answer));
  return 0;
}

// Whether the first target of a Dial reaches an outside number through a
// peer: "SIP/telco/5551234567,60" or "PJSIP/5551234567@telco". A phone of
// the office is dialled by its name alone ("SIP/201").
bool DialsOutside(const CdrLeg& leg) {
  if (LowerCase(leg.lastApp) != "dial") return false;
  std::string_view target = leg.lastData;
  target = target.substr(0, std::min(target.find(','), target.find('&')));
  const std::size_t firstSlash = target.find('/');
  if (firstSlash == std::string_view::npos) return false;
  const std::string_view rest = target.substr(firstSlash + 1);
  if (const std::size_t slash = rest.find('/'); slash != std::string_view::npos) {
    return DigitsOf(rest.substr(slash + 1)).size() >= kOutsideDigits - 2;
  }
  if (const std::size_t at = rest.find('@'); at != std::string_view::npos) {
    return DigitsOf(rest.substr(0, at)).size() >= kOutsideDigits - 2;
  }
  return false;
}

struct Party {
  const CdrLeg* leg = nullptr;
  bool inbound = true;
  std::int32_t line = 0;
};

}  // namespace

std::string_view ChannelStem(std::string_view channel) {
  const std::size_t dash = channel.rfind('-');
  return dash == std::string_view::npos || dash == 0 ? channel : channel.substr(0, dash);
}

std::string FormatPartyNumber(std::string_view number) {
  std::string digits = DigitsOf(number);
  if (digits.size() == 10) {
    return "(" + digits.substr(0, 3) + ") " + digits.substr(3, 3) + "-" + digits.substr(6);
  }
  if (digits.size() > kNumberWidth) digits.resize(kNumberWidth);
  return digits;
}

std::string CleanCallerName(std::string_view name) {
  bool ascii = true;
  for (char c : name) ascii = ascii && static_cast<unsigned char>(c) < 0x80;
  std::string text = !ascii && IsValidUtf8(name) ? Utf8ToWin1252(name) : std::string(name);
  for (char& c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte == 0x7F) c = ' ';
    if (byte == 0x81 || byte == 0x8D || byte == 0x8F || byte == 0x90 || byte == 0x9D) c = '?';
  }
  std::string_view trimmed = Trim(text);
  if (trimmed.size() > kNameWidth) trimmed = Trim(trimmed.substr(0, kNameWidth));
  return std::string(trimmed);
}

BuiltCall BuildCall(std::span<const CdrLeg* const> unordered, const ImportRules& rules, bool channelsKnown) {
  BuiltCall built;
  if (unordered.empty()) return built;
  // In order of their start, the order of arrival among equals. A call has
  // a handful of legs: an insertion sort needs no buffer.
  thread_local std::vector<const CdrLeg*> legs;
  legs.assign(unordered.begin(), unordered.end());
  for (std::size_t i = 1; i < legs.size(); ++i) {
    for (std::size_t j = i; j > 0 && legs[j]->start < legs[j - 1]->start; --j) std::swap(legs[j], legs[j - 1]);
  }

  // Who is on the other end, and on which line.
  Party party;
  if (channelsKnown) {
    for (const CdrLeg* leg : legs) {
      const TrunkLine* trunk = rules.TrunkOf(leg->channel);
      if (trunk != nullptr && (rules.inboundContexts.empty() || rules.InboundContext(leg->context))) {
        party = {leg, true, trunk->line};
        break;
      }
    }
    if (party.leg == nullptr && !rules.inboundContexts.empty()) {
      for (const CdrLeg* leg : legs) {
        if (!IsLocalChannel(leg->channel) && !leg->channel.empty() && rules.InboundContext(leg->context) &&
            rules.TrunkOf(leg->channel) == nullptr) {
          built.outcome = CallOutcome::kUnlistedTrunk;
          built.unlistedChannel = ChannelStem(leg->channel);
          return built;
        }
      }
    }
    if (party.leg == nullptr) {
      // The leg that reached the trunk and was answered tells the number
      // best; failing that, the first that reached it.
      for (const CdrLeg* leg : legs) {
        const TrunkLine* trunk = rules.TrunkOf(leg->destinationChannel);
        if (trunk == nullptr) continue;
        if (party.leg == nullptr || (leg->answered && !party.leg->answered)) party = {leg, false, trunk->line};
      }
    }
    if (party.leg == nullptr) {
      for (const CdrLeg* leg : legs) {
        if (!leg->destinationChannel.empty() && !IsLocalChannel(leg->destinationChannel) && DialsOutside(*leg)) {
          built.outcome = CallOutcome::kUnlistedTrunk;
          built.unlistedChannel = ChannelStem(leg->destinationChannel);
          return built;
        }
      }
    }
  } else {
    const std::vector<std::int32_t> lines = rules.Lines();
    const std::int32_t line = lines.empty() ? 1 : lines.front();
    // FreeSWITCH takes calls from outside in its context "public" unless
    // the office says otherwise.
    auto inbound = [&rules](std::string_view context) {
      return rules.inboundContexts.empty() ? context == "public" : rules.InboundContext(context);
    };
    for (const CdrLeg* leg : legs) {
      if (inbound(leg->context)) {
        party = {leg, true, line};
        break;
      }
    }
    if (party.leg == nullptr) {
      for (const CdrLeg* leg : legs) {
        if (!inbound(leg->context) && DigitsOf(leg->destination).size() >= kOutsideDigits) {
          party = {leg, false, line};
          break;
        }
      }
    }
  }
  if (party.leg == nullptr) return built;  // internal

  // A person answered when a leg reached a phone and talked: a leg that
  // only the PBX answered (an announcement, voicemail) has no destination
  // channel, and a Local/ channel counts only through its other half.
  std::vector<std::string_view> bridgedTo;
  for (const CdrLeg* leg : legs) {
    if (!leg->bLegUuid.empty()) bridgedTo.push_back(leg->bLegUuid);
  }
  auto personAnswered = [&](const CdrLeg& leg) {
    if (!leg.answered || TalkOf(leg) <= 0) return false;
    if (channelsKnown) return !leg.destinationChannel.empty() && !IsLocalChannel(leg.destinationChannel);
    return !leg.bLegUuid.empty() ||
           std::find(bridgedTo.begin(), bridgedTo.end(), std::string_view(leg.uniqueId)) != bridgedTo.end();
  };

  LocalSeconds start = legs.front()->start;
  LocalSeconds end = start;
  std::optional<LocalSeconds> answer;
  LocalSeconds lastTalkEnd = start;
  std::int32_t longestTalk = 0;
  int answeredLegs = 0;
  for (const CdrLeg* leg : legs) {
    end = std::max(end, leg->EndMoment());
    if (!personAnswered(*leg)) continue;
    ++answeredLegs;
    longestTalk = std::max(longestTalk, TalkOf(*leg));
    lastTalkEnd = std::max(lastTalkEnd, leg->EndMoment());
    if (const std::optional<LocalSeconds> moment = leg->AnswerMoment()) {
      answer = answer ? std::min(*answer, *moment) : *moment;
    }
  }

  LogCall& call = built.call;
  call.start = start;
  call.end = end;
  call.inbound = party.inbound;
  call.line = party.line;
  call.number = FormatPartyNumber(party.inbound ? party.leg->source : party.leg->destination);
  // The name is the caller's; on a call the office places, the caller ID
  // is the office's own.
  call.name = party.inbound ? CleanCallerName(party.leg->callerName) : std::string();
  call.answered = answeredLegs > 0;
  if (call.answered) {
    // A transferred call talks from its first answer to its last hang-up.
    call.talkSeconds = longestTalk;
    if (answeredLegs > 1 && answer) {
      call.talkSeconds = std::max(longestTalk, static_cast<std::int32_t>(lastTalkEnd - *answer));
    }
  }
  const LocalSeconds ringUntil = call.answered && answer ? *answer : end;
  const LocalSeconds ringing = std::max<LocalSeconds>(0, ringUntil - start);
  const std::int32_t period = std::max(1, rules.ringSeconds);
  call.rings = static_cast<std::int32_t>(std::min<LocalSeconds>(kMaxRings, (ringing + period - 1) / period));
  built.outcome = CallOutcome::kCall;
  return built;
}

}  // namespace cw
