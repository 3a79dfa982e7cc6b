// Any bytes as a spool file: read record by record, replayed onto a recording
// page device (the whole document; a page range in two copies; page by page
// as the preview draws it) and exported as text. A damaged spool is reported
// in the reader's problem list; it must not crash, hang or throw anything
// but the engine's error type.

#include <algorithm>
#include <cstdint>
#include <string>

#include "fuzz_support.h"
#include "printer/output_file.h"
#include "printer/spool_reader.h"
#include "printer/spool_replay.h"
#include "printer/text_export.h"
#include "recording_device.h"
#include "support/runtime_error.h"

namespace cw::fuzz {
namespace {

// Counts the exported bytes: a spool may ask for lines 32767 columns wide.
class CountingOutput : public OutputFile {
 public:
  void Write(std::string_view bytes) override { written += bytes.size(); }
  void Commit() override {}
  std::size_t written = 0;
};

// The preview draws the first pages and the last one a user pages to.
constexpr std::int16_t kPagesDrawn = 4;

void Replay(const std::string& spool) {
  testing::RecordingDevice device;
  const ReplayResult whole = ReplaySpool(spool, device, {});
  if (whole.pagesBegun < 0) Violated("a negative page count");

  testing::RecordingDevice copies;
  ReplayOptions range;
  range.fromPage = 2;
  range.toPage = 3;
  range.copies = 2;
  range.offsetXTwips = 360;
  ReplaySpool(spool, copies, range);

  SpoolReader reader(spool);
  const SpoolPageIndex index = SpoolPageIndex::Build(reader);
  testing::RecordingDevice pages;
  const std::int16_t last = index.LastPage();
  for (std::int16_t page = 0; page <= std::min(last, kPagesDrawn); ++page) ReplayPage(reader, index, page, pages);
  if (last > kPagesDrawn) ReplayPage(reader, index, last, pages);
  ReplayPage(reader, index, static_cast<std::int16_t>(last + (last < 32767 ? 1 : 0)), pages);

  SpoolReader text(spool);
  CountingOutput output;
  ExportSpoolText(text, output);
}

}  // namespace
}  // namespace cw::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace cw::fuzz;
  const std::string spool =
      ScratchFolder().Write("fuzz.spl", std::string_view(reinterpret_cast<const char*>(data), size));
  try {
    Replay(spool);
  } catch (const cw::RuntimeError&) {
    // Errors 53 and 75 are for a spool that cannot be opened; this one can.
    Violated("a readable spool raised an error");
  }
  return 0;
}
