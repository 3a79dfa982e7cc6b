#pragma once
// The text export: a spool turned into a plain Windows-1252 text file with CR
// LF line ends, one file line per page line.
//
// Each text item goes to the column of its X, converted to the 120-twip
// character cell and widened by 1.2, rounded halves to even; it is padded to
// that column with spaces, or, when the line is already past it, continued on
// the next line at that column. A text lower on the page than the previous one
// starts a new line; items of one page line share a file line in spool order,
// and an item is never split. NEWPAGE writes an empty line and a form-feed
// line. Lines, boxes, pictures and fonts produce no text.
//
// The spool is read as a stream and the output written in blocks, so memory
// stays the same whatever the spool's size.

#include <cstdint>
#include <functional>
#include <string>

#include "printer/output_file.h"
#include "printer/spool_reader.h"

namespace cw {

// Counts records read against the whole records of the file.
using ExportProgress = std::function<void(std::int64_t done, std::int64_t total)>;

// Writes the text of the spool read by `reader` (from record 2) to `output`,
// stopping at ENDDOC. Records the reader finds damaged are skipped, and so is
// a text whose column lies beyond the widest line (32767); both are in the
// reader's problems. Does not commit `output`.
void ExportSpoolText(SpoolReader& reader, OutputFile& output, const ExportProgress& progress = {});

// The export from a spool file to a text file, which appears under its name
// only when complete. Errors 53/75 for the spool, 75/76 for the output (the
// target is then left as it was). Returns the problems found in the spool.
SpoolProblems ExportSpoolToTextFile(const std::string& spoolPath, const std::string& textPath,
                                    const ExportProgress& progress = {});

}  // namespace cw
