#pragma once
// How often the report routines' record loops tell the host how far they
// have come: often enough for a live progress bar, rarely enough to cost
// nothing per record.

#include <cstdint>

namespace cw {

// Records read between two progress reports.
inline constexpr std::int64_t kProgressEvery = 4096;

}  // namespace cw
