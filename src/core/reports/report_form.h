#pragma once
// The report half of the report form: the request dispatch, the page-heading
// and printer-error handlers, and every report routine. The desktop form and
// cwreport both drive it; it reaches the screen only through ReportHost.

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "data/call_record.h"
#include "support/civil_date.h"
#include "printer/orl_printer.h"
#include "printer/text_metrics.h"
#include "reports/report_data.h"
#include "reports/report_host.h"
#include "reports/report_request.h"
#include "reports/walk_tallies.h"
#include "settings/settings_store.h"
#include "support/runtime_error.h"

namespace cw {

class RecordSelection;
struct SelectionCriteria;

// Where the data is and what the hardware offers (start-up state).
struct ReportEnvironment {
  std::string edition{kEditionRingtally};
  std::string logPath;       // setting "Logs"
  std::string pathFolder;    // setting "Path": BusyLines.log and the chart bitmap
  std::int16_t activeLines = 2;
  std::int16_t hardwareType = 3;
  std::string tempFolder;    // where the chart goes when "Path" is empty or not writable
  // The printer's page, measured by every BeginDoc; empty: US Letter portrait.
  std::function<PageSetup()> measurePrinter;
  // What the preview's Print and Save buttons reach: the desktop's print
  // dialog and printer, and its "Save Report" file dialog. Empty: the
  // document cannot be printed, and saved only under a name given to it.
  std::function<void(OrlPrinter& document)> printReport;
  std::function<std::string()> askSaveFileName;
  // Keep each report's rows beside its pages, for the CSV.
  bool keepData = false;
};

// How a request ended, for callers that need an exit status.
// kProducedWithErrors: the document was produced, but records (or the
// settings) raised errors on the way, each shown once, or the log held a
// record whose date had to be rolled over into a calendar date.
enum class RequestOutcome { kProduced, kProducedWithErrors, kRefused, kFailed };

class ReportForm {
 public:
  ReportForm(ReportEnvironment environment, ReportHost& host, TextMetrics& metrics,
             SettingsStore& settings);
  ~ReportForm();

  ReportRequest& Request() { return request_; }
  const ReportRequest& Request() const { return request_; }
  const ReportEnvironment& Environment() const { return environment_; }

  // The preview button.
  RequestOutcome cmdPrintQuery_Click();

  // The current report document (the last request's), null before the first.
  OrlPrinter* Document() { return document_.get(); }
  // The current report's rows, beside its document (kept with keepData).
  ReportData& Data() { return *data_; }

  // --- used by the report routines -------------------------------------
  void SetBodyFont();
  void SetHeadingFont();
  double RightAlignedX(double x, std::string_view text);

  // Event handlers of the document.
  void OnNewPage(std::int16_t page);
  void OnPrinterError(bool& retry);

  // Report routines (each finishes the document: EndDoc, PreviewReport, DestroyReport).
  void Print_Detail(std::int16_t mode);
  void Print_Detail_Condensed();
  void Print_Lines();
  void Process_DailySummary();
  // One selected call into the counts of its hour: its time and direction
  // as their trimmed texts give them, and its date as the selection built
  // it. An hour's counts reach the day and hour matrices with AddCallRun,
  // when the next hour begins and after the last call.
  void Build_CallMatrix(const CallRecord& record, CivilDate date, CallHourRun& run);
  void AddCallRun(CallHourRun& run);
  void Print_DailySummary();
  void Process_LineUsage();
  // One selected call on a counted line into the counts of its day: its
  // direction and duration as their trimmed texts give them, and its date as
  // the selection built it. A day's counts reach the line matrices with
  // AddLineUsageDay, when the next day begins and after the last call.
  void Build_LineMatrix(std::int16_t line, const CallRecord& record, CivilDate date, LineUsageDay& day);
  void AddLineUsageDay(LineUsageDay& day);
  void Print_LineUsage();
  void Print_BusyReport();
  void Process_BusySummary();
  void Build_BusyMatrix(std::string_view date, std::string_view start, std::int32_t seconds);
  void Print_BusySummary();
  void Print_CallBacks();

  // The working matrices, erased after every report.
  struct Matrices {
    std::array<std::array<std::int32_t, 4>, 8> day{};     // [weekday 1..7][kind 1..3]
    std::array<std::array<std::int32_t, 9>, 24> hour{};   // [hour][weekday-1 0..6, 7 total, 8]
    std::vector<std::array<std::int32_t, 5>> lineTotals;  // [line 1..N][1 in, 2 out, 3 all, 4 seconds]
    std::vector<std::array<std::int32_t, 10>> lineWeek;   // [row 1..N+1][weekday 1..7, 8 calls, 9 seconds]
    std::array<std::array<std::int32_t, 4>, 8> busyDay{};   // [weekday][1 occurred, 2 seconds]
    std::array<std::array<std::int32_t, 9>, 24> busyHour{}; // [hour][weekday-1, 7 total, 8 seconds]
  };
  const Matrices& WorkingMatrices() const { return matrices_; }

  // The partial-match flag: chkPartial while a tab 5 or 6 report runs, false
  // at every other time.
  bool PartialMatch() const { return partialMatch_; }

  // The standard error box for an error trapped in one of this form's
  // procedures. Within one request an error is shown once: a later error of
  // the same number in the same procedure (the next bad record) is only
  // counted, and nothing is shown once the document has failed (its own box
  // was the one).
  void ShowError(const RuntimeError& error, std::string_view procedure,
                 ErrorBoxForm form = ErrorBoxForm::kClassic);
  // Errors of the last request that were not shown because the same error
  // had been shown already.
  std::int64_t RepeatedErrors() const { return repeatedErrors_; }

 private:
  // The request itself; cmdPrintQuery_Click keeps its per-request state.
  RequestOutcome RunRequest();
  // Whether the error's box has been shown in this request (and notes a
  // repeat); false the first time.
  bool AlreadyShown(const RuntimeError& error, std::string_view procedure);
  void ConfigureDocument();
  void EraseMatrices();
  // The period and direction of the request, for a walk over the call log
  // (or, with file "BusyLines.log", the busy log); a record dated with no
  // calendar date is told to the user (WarnOfRolledDate).
  SelectionCriteria PeriodCriteria(std::string_view direction, std::string_view file);
  // A record whose date is no calendar date was read as the date the log
  // date's reading rolls it over to: shown once a request, and the request
  // ends as produced with errors.
  void WarnOfRolledDate(std::string_view file, std::int64_t record, std::string_view dateText, CivilDate readAs);
  // One call straight into the line matrices, each sum of seconds tested for
  // overflow before any cell changes.
  void WalkLineUsage(RecordSelection& selection);
  void AddLineCall(std::size_t line, std::size_t kind, std::int32_t seconds, LineUsageDay& day);

  ReportEnvironment environment_;
  ReportHost& host_;
  TextMetrics& metrics_;
  SettingsStore& settings_;
  ReportRequest request_;
  std::unique_ptr<OrlPrinter> document_;
  std::unique_ptr<ReportData> data_ = std::make_unique<ReportData>();
  Matrices matrices_;
  bool partialMatch_ = false;  // set only during a tab 5 or 6 report
  std::string periodText_;     // "Jan 05, 2024 to Feb 10, 2024"
  // picGraph's font: text widths for RightAlignedX are measured in it.
  FontSpec pictureFont_{"MS Sans Serif", 8};
  bool errorShown_ = false;    // an error box was shown during the current request
  // The errors shown during the current request, by number and procedure.
  std::vector<std::pair<int, std::string>> shownErrors_;
  bool documentFailed_ = false;  // the document showed its error box in this request
  std::int64_t repeatedErrors_ = 0;
  std::int64_t rolledDates_ = 0;  // records of the current request with no calendar date
  bool previewShown_ = false;  // the current request's document reached the preview
  CivilDate fromDate_;
  CivilDate toDate_;
  // The record the matrix builders are working on, for their error box.
  std::string_view processingRecord_;
};

}  // namespace cw
