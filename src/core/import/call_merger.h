#pragma once
// Gathers the legs a PBX writes for one call. Legs belong together when they
// share a linkedid; without one, a uniqueid; without either, the start time,
// source and channel. A leg bridged to another (FreeSWITCH's bleg_uuid) and
// the two halves of a Local/ channel join their calls as well, so ring
// groups come out as one call even from files without a linkedid.

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "import/cdr_leg.h"

namespace cw {

struct MergedCall {
  std::string key;  // the first leg's key: the same call read again has the same key
  std::vector<CdrLeg> legs;
  LocalSeconds Start() const;
};

class CallMerger {
 public:
  // tick: when the leg arrived, in any unit the caller counts (follow mode
  // uses a clock, a one-shot import the row count).
  void Add(CdrLeg leg, std::int64_t tick);

  // Calls whose last leg arrived at or before tick.
  std::vector<MergedCall> TakeQuiet(std::int64_t tick);
  // Calls whose legs all ended before time: a PBX writes a leg when it
  // ends, so a call is complete once the file has moved well past it.
  std::vector<MergedCall> TakeEndedBefore(LocalSeconds time);
  std::vector<MergedCall> TakeAll();

  std::size_t Pending() const { return groups_.size(); }

 private:
  struct Group {
    std::string key;
    std::uint64_t firstOrder = 0;
    std::vector<CdrLeg> legs;
    std::vector<std::uint64_t> keys;  // hashes of the keys that lead here
    std::int64_t lastTick = 0;
    LocalSeconds firstStart = 0;
    LocalSeconds lastEnd = 0;
  };

  template <class Done>
  std::vector<MergedCall> Take(Done done);
  void Join(std::uint64_t into, std::uint64_t from);

  // Keys are looked up by their hash alone: this runs for every row, and
  // two keys of one file sharing a 64-bit hash are not to be expected.
  std::unordered_map<std::uint64_t, std::uint64_t> groupOfKey_;
  std::unordered_map<std::uint64_t, Group> groups_;
  std::uint64_t nextId_ = 0;
};

}  // namespace cw
