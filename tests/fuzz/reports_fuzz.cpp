// Any bytes as a call log, through every kind of report, measured with the
// fixed-pitch metrics and shown to a recording host that keeps the text
// export. A report may refuse a log or show an error box for it; it must not
// crash, hang or let anything but its own error type escape.
//
// Input: a byte choosing the report (kind, direction, variant, abandoned
// filter, call-back window), a byte choosing the period, active lines and the other boxes, the
// search text up to the first line feed, then the log. The log serves as the
// busy log of the "all lines busy" reports too.

#include <array>
#include <cstdint>
#include <string>

#include "fuzz_support.h"
#include "printer/fixed_pitch_metrics.h"
#include "printer/spool_reader.h"
#include "printer/text_export.h"
#include "reports/report_form.h"
#include "testing/memory_settings_store.h"
#include "testing/recording_host.h"

namespace cw::fuzz {
namespace {

// The text export is kept in memory: writing it to a file and reading it back
// for every input would cost more than the report.
class TextHost : public testing::RecordingHost {
 public:
  void ShowPreview(OrlPrinter& document, const ReportData&) override {
    SpoolReader reader(document.PrintFile());
    testing::MemoryOutput output;
    ExportSpoolText(reader, output);
    Preview preview;
    preview.title = document.Title();
    preview.totalPages = document.TotalPages();
    preview.text = std::move(output.bytes);
    previews.push_back(std::move(preview));
  }
};

struct Period {
  const char* from;
  const char* to;
};
// A few weeks around the fixtures' calls, one day of them, a month without
// any, and decades, which takes in any date the fuzzer writes.
constexpr std::array<Period, 4> kPeriods{{{"10/25/2026", "11/14/2026"},
                                          {"11/02/2026", "11/02/2026"},
                                          {"01/01/2024", "01/31/2024"},
                                          {"01/01/1980", "12/31/2035"}}};
constexpr std::array<std::int16_t, 4> kActiveLines{2, 4, 1, 9};
constexpr std::array<const char*, 3> kDirections{"In", "Out", "InOut"};

}  // namespace
}  // namespace cw::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace cw;
  using namespace cw::fuzz;
  InputBytes input(data, size);
  const unsigned report = input.Byte();
  const unsigned boxes = input.Byte();
  const std::string searchText(input.Line());
  const std::string_view log = input.Rest();

  const testing::TempFolder& folder = ScratchFolder();
  ReportEnvironment environment;
  environment.logPath = folder.Write("CallLog.txt", log);
  environment.pathFolder = folder.Path().string();
  environment.tempFolder = environment.pathFolder;
  environment.activeLines = kActiveLines[(boxes >> 2) & 3];

  ReportRequest request;
  request.kind = static_cast<std::int16_t>(report % 10);  // 0: the default branch
  request.direction = kDirections[(report / 10) % 3];
  const unsigned filter = report / 30;  // 0 to 8
  request.abandoned.notLasting = (filter & 1) != 0;
  request.abandoned.seconds = "30";
  request.abandoned.ringCount = (filter & 2) != 0;
  request.abandoned.rings = "3";
  request.abandoned.unanswered = (filter & 4) != 0;
  request.variant = (filter & 8) != 0 ? "Summary" : "Detailed";
  const Period& period = kPeriods[boxes & 3];
  request.fromDate = period.from;
  request.toDate = period.to;
  request.chart = (boxes & 16) != 0;
  request.partial = (boxes & 32) != 0;
  request.dtmf = (boxes & 64) != 0;
  request.columns = DetailColumnPositions(request.dtmf);
  request.lines.allLines = (boxes & 128) != 0;
  request.lines.lines = {1, 3};
  request.searchText = searchText;
  request.callBackWindowDays = (filter & 1) != 0 ? 1 : 365;
  if (request.kind == kind::kAllLinesBusy) folder.Write("BusyLines.log", log);

  TextHost host;
  FixedPitchMetrics metrics;
  testing::MemorySettingsStore settings;
  ReportForm form(environment, host, metrics, settings);
  form.Request() = request;
  const RequestOutcome outcome = form.cmdPrintQuery_Click();
  if (outcome == RequestOutcome::kProduced && host.previews.empty()) Violated("a document was produced unseen");
  return 0;
}
