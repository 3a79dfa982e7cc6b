#include "cli/spool_room.h"

#include <sys/stat.h>
#include <sys/statvfs.h>

#include "cli/output_checks.h"
#include "printer/spool_format.h"

namespace cw::cli {

namespace {

// A call record is 103 to 106 characters and CR LF; counting 108 bytes a
// call gives no more calls than the log holds.
constexpr std::uint64_t kLogBytesPerCall = 108;
// A listed call writes one 422-byte text record per column and its share of
// the page headings: about nine on the demo office's listings. Eight keeps
// the estimate under the real size, so that only a report that cannot fit
// is refused.
constexpr std::uint64_t kSpoolRecordsPerCall = 8;

std::string Megabytes(std::uint64_t bytes) { return std::to_string((bytes + (1 << 20) - 1) >> 20) + " MB"; }

}  // namespace

std::uint64_t ListingSpoolBytes(std::uint64_t logBytes) {
  return logBytes / kLogBytesPerCall * kSpoolRecordsPerCall * kSpoolRecordSize;
}

void CheckRoomForListing(const std::string& tempFolder, const std::string& logPath) {
  struct stat log;
  struct statvfs folder;
  if (::stat(logPath.c_str(), &log) != 0 || !S_ISREG(log.st_mode)) return;
  if (::statvfs(tempFolder.c_str(), &folder) != 0) return;
  const std::uint64_t needed = ListingSpoolBytes(static_cast<std::uint64_t>(log.st_size));
  const std::uint64_t free = static_cast<std::uint64_t>(folder.f_bavail) * folder.f_frsize;
  if (needed <= free) return;
  throw OutputRefusal{"the temporary folder " + tempFolder + " has " + Megabytes(free) +
                      " free, and this report's spool needs about " + Megabytes(needed) +
                      ": set TMPDIR to a folder with more room"};
}

}  // namespace cw::cli
