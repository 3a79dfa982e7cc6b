#pragma once
// The whole of a spool onto an export device (PDF, page images), for the
// report outputs and for cwreport export alike.

#include <string>
#include <utility>

#include "printer/page_device.h"
#include "printer/spool_reader.h"
#include "printer/spool_replay.h"

namespace cw::cli {

// Replays every page on `paper` and returns what was wrong inside the spool.
// A document that drew nothing is still one page, as a printed report of no
// rows is. Device: a page device with Completed() (PdfPageDevice,
// PngPageDevice).
template <class Device>
SpoolProblems ReplayWholeDocument(const std::string& spool, Device& device, const PageSetup& paper) {
  ReplayOptions options;
  options.page = paper;
  ReplayResult result = ReplaySpool(spool, device, options);
  if (!device.Completed()) {
    device.BeginDocument(OrientedPage(paper, SpoolReader(spool).Header().orientation));
    device.BeginPage();
    device.EndPage();
    device.EndDocument();
  }
  return std::move(result.problems);
}

}  // namespace cw::cli
