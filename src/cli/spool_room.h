#pragma once
// A listing of the whole log writes a spool several times the log's size
// into the temporary folder. Before such a report starts, the folder's free
// space is compared with what the spool will take, so that a report that
// cannot fit is refused at once instead of filling the disk first.

#include <cstdint>
#include <string>

namespace cw::cli {

// What the spool of a listing of every call of a log of logBytes takes.
std::uint64_t ListingSpoolBytes(std::uint64_t logBytes);

// Throws OutputRefusal (naming the folder, the room there and the room
// needed) when the temporary folder cannot hold the spool of a listing of the
// whole log. A folder or log that cannot be looked at is let through: the
// report then says what is wrong with it.
void CheckRoomForListing(const std::string& tempFolder, const std::string& logPath);

}  // namespace cw::cli
