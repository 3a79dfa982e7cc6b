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

// The key that names the call of a leg: its linkedid, else its uniqueid,
// else its start, source and channel.
std::string PrimaryKey(const CdrLeg& leg) {
  if (!leg.linkedId.empty()) return "L:" + leg.linkedId;
  if (!leg.uniqueId.empty()) return "U:" + leg.uniqueId;
  return "S:" + std::to_string(leg.start) + '|' + leg.source + '|' + leg.channel;
}

class KeyHash {
 public:
  explicit KeyHash(char kind) { Add(std::string_view(&kind, 1)); }
  KeyHash& Add(std::string_view text) {
    for (char c : text) {
      hash_ ^= static_cast<unsigned char>(c);
      hash_ *= 0x100000001b3ull;  // FNV-1a
    }
    hash_ ^= 0xFF;  // a separator no text holds, so that "ab"+"c" is not "a"+"bc"
    hash_ *= 0x100000001b3ull;
    return *this;
  }
  std::uint64_t Value() const { return hash_; }

 private:
  std::uint64_t hash_ = 0xcbf29ce484222325ull;
};

struct LegKeys {
  std::uint64_t hashes[4];
  int count = 0;
  void Add(const KeyHash& key) { hashes[count++] = key.Value(); }
};

// The leg's own key first, then the keys that link it to other legs.
LegKeys KeysOf(const CdrLeg& leg) {
  LegKeys keys;
  if (!leg.linkedId.empty()) {
    keys.Add(KeyHash('L').Add(leg.linkedId));
  } else if (!leg.uniqueId.empty()) {
    keys.Add(KeyHash('U').Add(leg.uniqueId));
  } else {
    const std::int64_t start = leg.start;
    keys.Add(KeyHash('S').Add(std::string_view(reinterpret_cast<const char*>(&start), sizeof start))
                 .Add(leg.source)
                 .Add(leg.channel));
  }
  if (!leg.bLegUuid.empty()) keys.Add(KeyHash('U').Add(leg.bLegUuid));
  if (leg.linkedId.empty()) {
    if (leg.channel.starts_with("Local/")) keys.Add(KeyHash('C').Add(WithoutHalf(leg.channel)));
    if (leg.destinationChannel.starts_with("Local/")) keys.Add(KeyHash('C').Add(WithoutHalf(leg.destinationChannel)));
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
  for (std::uint64_t key : source.keys) {
    groupOfKey_[key] = into;
    target.keys.push_back(key);
  }
  target.lastTick = std::max(target.lastTick, source.lastTick);
  target.firstStart = std::min(target.firstStart, source.firstStart);
  target.lastEnd = std::max(target.lastEnd, source.lastEnd);
  groups_.erase(from);
}

void CallMerger::Add(CdrLeg leg, std::int64_t tick) {
  const LegKeys keys = KeysOf(leg);
  std::uint64_t group = 0;
  bool found = false;
  for (int i = 0; i < keys.count; ++i) {
    const auto hit = groupOfKey_.find(keys.hashes[i]);
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
    fresh.key = PrimaryKey(leg);
    // Most calls have a leg or two and a key or two: room for them at once.
    fresh.legs.reserve(2);
    fresh.keys.reserve(2);
    fresh.firstOrder = order;
    fresh.firstStart = leg.start;
    fresh.lastEnd = leg.EndMoment();
  }
  Group& into = groups_.at(group);
  for (int i = 0; i < keys.count; ++i) {
    auto [where, inserted] = groupOfKey_.try_emplace(keys.hashes[i], group);
    if (inserted) {
      into.keys.push_back(keys.hashes[i]);
    } else if (where->second != group) {
      // A key of an old call (see kKeySpan) now names this one.
      where->second = group;
      into.keys.push_back(keys.hashes[i]);
    }
  }
  into.lastTick = std::max(into.lastTick, tick);
  into.firstStart = std::min(into.firstStart, leg.start);
  into.lastEnd = std::max(into.lastEnd, leg.EndMoment());
  into.legs.push_back(std::move(leg));
}

template <class Done>
std::vector<MergedCall> CallMerger::Take(Done done) {
  std::vector<MergedCall> taken;
  std::vector<std::pair<std::uint64_t, std::size_t>> arrival;  // first leg's order, index in taken
  for (auto it = groups_.begin(); it != groups_.end();) {
    Group& group = it->second;
    if (!done(group)) {
      ++it;
      continue;
    }
    for (std::uint64_t key : group.keys) {
      const auto hit = groupOfKey_.find(key);
      if (hit != groupOfKey_.end() && hit->second == it->first) groupOfKey_.erase(hit);
    }
    arrival.emplace_back(group.firstOrder, taken.size());
    taken.push_back(MergedCall{std::move(group.key), std::move(group.legs)});
    it = groups_.erase(it);
  }
  // In the order their first legs arrived, so that the same file gives the
  // same calls in the same order every time. The calls themselves are
  // moved once, not at every step of the sort.
  std::sort(arrival.begin(), arrival.end());
  std::vector<MergedCall> calls;
  calls.reserve(taken.size());
  for (const auto& [order, index] : arrival) calls.push_back(std::move(taken[index]));
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
