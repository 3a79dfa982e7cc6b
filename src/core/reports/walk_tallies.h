#pragma once
// What the daily analysis and the line usage count while they walk the log,
// before it goes into their matrices. The log is in time order, so the calls
// of one hour, and of one day, come together: they are counted here, in
// values the compiler keeps in registers or close at hand, and added to the
// 32-bit cells of the matrices when the hour or the day ends. Millions of
// additions to the same few cells of memory, each waiting for the one
// before, become one addition an hour or a day.

#include <array>
#include <cstdint>
#include <limits>
#include <vector>

#include "support/civil_date.h"

namespace cw {

// The calls of one hour of one day, for the daily analysis.
struct CallHourRun {
  CivilDate date;
  int weekday = 0;
  int hour = -1;  // -1 before the first call
  std::int32_t calls = 0;
  // The calls counted as each kind: [1] in, [2] out ([0], none yet, is not
  // reported).
  std::array<std::int32_t, 3> ofKind{};
  // The kind of the call before (1 in, 2 out, 0 none yet): a call logged
  // without a direction counts as one of those. It carries over from one
  // hour and one day to the next.
  int lastKind = 0;
};

// The calls of one day per line, for the line usage summary.
struct LineUsageDay {
  struct LineCalls {
    std::int32_t calls[3] = {0, 0, 0};  // [kind]: 1 in, 2 out
    // Within the day's headroom below, so it fits in 32 bits.
    std::int32_t seconds = 0;
  };

  explicit LineUsageDay(std::size_t lineCount) : lines(lineCount + 1) {}

  // The seconds of every line this day.
  std::int64_t Seconds() const { return headroom - room; }

  // Whether a call of `seconds` on this day can be counted here.
  bool HasRoomFor(CivilDate callDate, std::int32_t seconds) const {
    return callDate == date && seconds >= 0 && seconds <= room;
  }
  // A seconds cell of the matrices now holds `cell`: the headroom shrinks
  // if it is the fullest yet, and the day starts again from it.
  void RoomAfter(std::int32_t cell) {
    highestCell = highestCell > cell ? highestCell : cell;
    headroom = std::int64_t{std::numeric_limits<std::int32_t>::max()} - highestCell;
    room = headroom;
  }
  // A call of this day, on a line from 1 to N, of kind 1 or 2, that
  // HasRoomFor accepted.
  void Count(std::size_t line, std::size_t kind, std::int32_t seconds) {
    LineCalls& calls = lines[line];
    ++calls.calls[kind];
    calls.seconds += seconds;
    room -= seconds;
    highestLine = highestLine > line ? highestLine : line;
  }

  CivilDate date;
  int weekday = CivilDate().Weekday();
  std::vector<LineCalls> lines;  // [line 1..N]
  std::size_t highestLine = 0;   // lines above it have no calls this day
  // The seconds cells of the matrices are 32 bits wide. None has ever held
  // more than highestCell, so while the day's seconds stay within headroom
  // no cell can outgrow its 32 bits when the day is added; a call that would
  // pass it is added on its own, cell by cell, with the overflow test.
  std::int32_t highestCell = 0;
  std::int64_t headroom = std::numeric_limits<std::int32_t>::max();
  std::int64_t room = headroom;  // what is left of the headroom this day
};

}  // namespace cw
