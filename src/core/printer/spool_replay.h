#pragma once
// Replays a spool onto a PageDevice: the printer, the PDF and PNG exports and
// the preview all draw the same record stream; only the device differs.
//
// Coordinates are converted from the header's ScaleMode to twips. Records are
// executed by their keyword; unknown keywords and damaged records are skipped
// and reported. A page range From..To skips the records of pages below From
// and ends at the first record of a page above To; a NEWPAGE in the range
// starts a new physical page only when its page number is below To.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "printer/page_device.h"
#include "printer/spool_reader.h"

namespace cw {

// How often one failed printer step is repeated when the error handler asks
// for it. The report form's handler asks every time, so a printer that stays
// away would otherwise keep the user answering boxes for ever; after these
// repeats the printer counts as failed and the rest of the job is dropped.
inline constexpr int kPrinterStepRepeats = 3;

struct ReplayOptions {
  // The paper; its sides are swapped to match the header's orientation.
  PageSetup page;
  std::int16_t fromPage = 1;
  std::int16_t toPage = 32767;
  // Each copy is the whole range again, as a document of its own.
  std::int16_t copies = 1;
  // The printer's physical offsets, in twips: positions are measured from the
  // paper's edge, so these come off every X and Y.
  double offsetXTwips = 0;
  double offsetYTwips = 0;
  // Called before each copy: the printer job takes the document's title here.
  std::function<void(std::int16_t copy)> beginCopy;
  // Asked before each record (the desktop lets pending events run in it);
  // true stops the replay, the cancel button of the progress window.
  std::function<bool()> shouldStop;
  // One step per record read, against (whole records in the file) x copies.
  std::function<void(std::int64_t done, std::int64_t total)> progress;
  // A device step that throws is a printer error. With this set, it is asked
  // whether to retry: true repeats the failed step, false gives up the rest
  // of the replay (ReplayResult::printerFailed). Without it the error passes
  // on to the caller.
  std::function<bool()> onPrinterError;
};

struct ReplayResult {
  std::int32_t pagesBegun = 0;
  std::int64_t recordsRead = 0;
  bool stopped = false;        // shouldStop said so
  bool printerFailed = false;  // a printer error that was not retried
  std::vector<std::string> missingImages;
  SpoolProblems problems;      // the reader's, and the pictures that could not be loaded
};

// Replays the spool file at `spoolPath`. Errors 53 and 75 when it cannot be
// opened; everything wrong inside it is reported in the result.
ReplayResult ReplaySpool(const std::string& spoolPath, PageDevice& device, const ReplayOptions& options);

// The header's page: `paper` turned to the header's orientation.
PageSetup OrientedPage(const PageSetup& paper, std::int16_t orientation);

// Where each page begins, found in one pass, so that a page is drawn without
// reading the pages before it.
class SpoolPageIndex {
 public:
  // Reads from record 2 to ENDDOC (or the end of the file).
  static SpoolPageIndex Build(SpoolReader& reader);

  // Highest page number seen.
  std::int16_t LastPage() const { return static_cast<std::int16_t>(firstRecord_.size()); }
  // The first record whose page number is at least `page`; nullopt past the end.
  std::optional<std::int64_t> FirstRecord(std::int16_t page) const;
  // Byte offset of that record in the file.
  std::optional<std::int64_t> ByteOffset(std::int16_t page) const;

 private:
  std::vector<std::int64_t> firstRecord_;  // [page - 1]
};

// Draws one page between BeginPage and EndPage: from the page's first record
// until NEWPAGE, ENDDOC or a record of another page. Returns the picture files
// that could not be loaded; they and any damaged record are also in the
// reader's problems. A page past the last draws an empty page.
std::vector<std::string> ReplayPage(SpoolReader& reader, const SpoolPageIndex& index, std::int16_t page,
                                    PageDevice& device);

}  // namespace cw
