#include "import/call_merger.h"

#include <algorithm>

namespace cw {

namespace {

// A key stands for one call only this long: PBXs count Local/ channels and
// uniqueids again from the start after a restart.
constexpr LocalSeconds kKeySpan = 12 * 3600;

std::string_view WithoutHalf(std::string_view localChannel) {
  const std::size_t semicolon = localChannel.rfind(';');
  return semicolon == std::string_view::npos ? localChannel : localChannel.substr(0, semicolon);
}

// The leg's own key first, then the keys that link it to other legs.
std::vector<std::string> KeysOf(const CdrLeg& leg) {
  std::vector<std::string> keys;
  if (!leg.linkedId.empty()) {
    keys.push_back("L:" + leg.linkedId);
  } else if (!leg.uniqueId.empty()) {
    keys.push_back("U:" + leg.uniqueId);
  } else {
    keys.push_back("S:" + std::to_string(leg.start) + '|' + leg.source + '|' + leg.channel);
  }
  if (!leg.bLegUuid.empty()) keys.push_back("U:" + leg.bLegUuid);
  if (leg.linkedId.empty()) {
    if (leg.channel.starts_with("Local/")) keys.push_back("C:" + std::string(WithoutHalf(leg.channel)));
    if (leg.destinationChannel.starts_with("Local/")) {
      keys.push_back("C:" + std::string(WithoutHalf(leg.destinationChannel)));
    }
  }
  return keys;
}

}  // namespace

LocalSeconds MergedCall::Start() const {
  LocalSeconds start = legs.front().start;
  for (const CdrLeg& leg : legs) start = std::min(start, leg.start);
  return start;
}

void CallMerger::Join(std::uint64_t into, std::uint64_t from) {
  Group& target = groups_.at(into);
  Group& source = groups_.at(from);
  if (source.firstOrder < target.firstOrder) {
    target.key = std::move(source.key);
    target.firstOrder = source.firstOrder;
  }
  for (CdrLeg& leg : source.legs) target.legs.push_back(std::move(leg));
  for (std::string& key : source.keys) {
    groupOfKey_[key] = into;
    target.keys.push_back(std::move(key));
  }
  target.lastTick = std::max(target.lastTick, source.lastTick);
  target.firstStart = std::min(target.firstStart, source.firstStart);
  target.lastEnd = std::max(target.lastEnd, source.lastEnd);
  groups_.erase(from);
}

void CallMerger::Add(CdrLeg leg, std::int64_t tick) {
  const std::vector<std::string> keys = KeysOf(leg);
  std::uint64_t group = 0;
  bool found = false;
  for (const std::string& key : keys) {
    const auto hit = groupOfKey_.find(key);
    if (hit == groupOfKey_.end()) continue;
    const Group& other = groups_.at(hit->second);
    if (leg.start - other.firstStart > kKeySpan || other.firstStart - leg.start > kKeySpan) continue;
    if (!found) {
      group = hit->second;
      found = true;
    } else if (hit->second != group) {
      Join(group, hit->second);
    }
  }
  const std::uint64_t order = nextId_++;
  if (!found) {
    group = order;
    Group& fresh = groups_[group];
    fresh.key = keys.front();
    fresh.firstOrder = order;
    fresh.firstStart = leg.start;
    fresh.lastEnd = leg.EndMoment();
  }
  Group& into = groups_.at(group);
  for (const std::string& key : keys) {
    auto [where, inserted] = groupOfKey_.try_emplace(key, group);
    if (inserted) {
      into.keys.push_back(key);
    } else if (where->second != group) {
      // A key of an old call (see kKeySpan) now names this one.
      where->second = group;
      into.keys.push_back(key);
    }
  }
  into.lastTick = std::max(into.lastTick, tick);
  into.firstStart = std::min(into.firstStart, leg.start);
  into.lastEnd = std::max(into.lastEnd, leg.EndMoment());
  into.legs.push_back(std::move(leg));
}

template <class Done>
std::vector<MergedCall> CallMerger::Take(Done done) {
  std::vector<std::pair<std::uint64_t, MergedCall>> taken;
  for (auto it = groups_.begin(); it != groups_.end();) {
    Group& group = it->second;
    if (!done(group)) {
      ++it;
      continue;
    }
    for (const std::string& key : group.keys) {
      const auto hit = groupOfKey_.find(key);
      if (hit != groupOfKey_.end() && hit->second == it->first) groupOfKey_.erase(hit);
    }
    taken.emplace_back(group.firstOrder, MergedCall{std::move(group.key), std::move(group.legs)});
    it = groups_.erase(it);
  }
  // In the order their first legs arrived, so that the same file gives the
  // same calls in the same order every time.
  std::sort(taken.begin(), taken.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<MergedCall> calls;
  calls.reserve(taken.size());
  for (auto& [order, call] : taken) calls.push_back(std::move(call));
  return calls;
}

std::vector<MergedCall> CallMerger::TakeQuiet(std::int64_t tick) {
  return Take([tick](const Group& group) { return group.lastTick <= tick; });
}

std::vector<MergedCall> CallMerger::TakeEndedBefore(LocalSeconds time) {
  return Take([time](const Group& group) { return group.lastEnd < time; });
}

std::vector<MergedCall> CallMerger::TakeAll() {
  return Take([](const Group&) { return true; });
}

}  // namespace cw
