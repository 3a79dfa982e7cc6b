// The report request: checks, the document's configuration, the hand-over to
// the tab's report routine, and the document's two event handlers.
#include "reports/report_form.h"

#include <cstdio>
#include <utility>

#include "data/record_selection.h"
#include "printer/scale_mode.h"
#include "reports/busy_columns.h"
#include "reports/callback_columns.h"
#include "reports/condensed_columns.h"
#include "reports/form_error_box.h"
#include "reports/summary_tables.h"
#include "settings/settings_keys.h"
#include "support/date_format.h"
#include "support/file_helpers.h"
#include "support/text.h"
#include "support/whole_numbers.h"

namespace cw {

namespace {

constexpr std::string_view kBodyFontName = "Times New Roman";
constexpr std::string_view kHeadingFontName = "Arial";
constexpr std::int16_t kReportFontSize = 9;
constexpr std::int32_t kBold = 1;

// Every page's own drawing starts here, under the heading block and its rule.
constexpr double kFirstRowY = 1.4;

// A text box's value for the abandoned-filter checks: digits only, after
// trimming ("0" passes; "12a" and blanks do not).
bool IsThreshold(std::string_view text) { return IsAllDigits(Trim(text)); }

std::string_view CheckValue(bool checked) { return checked ? "1" : "0"; }

// Sets a flag for the length of a report and clears it however the report
// ends.
class FlagDuring {
 public:
  FlagDuring(bool& flag, bool value) : flag_(flag) { flag_ = value; }
  ~FlagDuring() { flag_ = false; }
  FlagDuring(const FlagDuring&) = delete;
  FlagDuring& operator=(const FlagDuring&) = delete;

 private:
  bool& flag_;
};

}  // namespace

ReportForm::ReportForm(ReportEnvironment environment, ReportHost& host, TextMetrics& metrics,
                       SettingsStore& settings)
    : environment_(std::move(environment)), host_(host), metrics_(metrics), settings_(settings) {}

ReportForm::~ReportForm() {
  // As the form unloads: the spool of a report that stopped half-way is
  // still in the temporary folder.
  if (!document_) return;
  const std::string spool = document_->PrintFile();
  document_.reset();
  if (!spool.empty()) std::remove(spool.c_str());
}

// ---------------------------------------------------------------------------
// The preview button

RequestOutcome ReportForm::cmdPrintQuery_Click() {
  errorShown_ = false;
  previewShown_ = false;
  repeatedErrors_ = 0;
  rolledDates_ = 0;
  const RequestOutcome outcome = RunRequest();
  // A document that failed itself is of no use, and its spool may be large
  // (a report that ran into the last page wrote gigabytes of it).
  if (documentFailed_ && document_) {
    try {
      document_->DestroyReport();
    } catch (const RuntimeError&) {
      // A spool that cannot be deleted is left to the temporary folder.
    }
  }
  // Which errors were shown, and that the document failed, hold within the
  // request only: a box of the form outside a request is always shown.
  shownErrors_.clear();
  documentFailed_ = false;
  return outcome;
}

RequestOutcome ReportForm::RunRequest() {
  // Set when a report routine ran (and possibly failed) rather than the
  // request being stopped by one of its checks.
  bool reportRan = false;
  // The document the request started with: a request stopped before a
  // report routine ran leaves it as it was, and the fresh document, which
  // never reached a report, loses its spool.
  std::unique_ptr<OrlPrinter> previous;
  bool freshDocument = false;
  auto discardFresh = [&] {
    if (!freshDocument || reportRan) return;
    freshDocument = false;
    std::unique_ptr<OrlPrinter> unused = std::exchange(document_, std::move(previous));
    try {
      if (unused) unused->DestroyReport();
    } catch (const RuntimeError&) {
      // A spool that cannot be deleted is left to the temporary folder.
    }
  };
  try {
    // Files of the program are opened and closed by the procedure that needs
    // them, so none is left open here to close.
    if (!FileExists(environment_.logPath)) {
      host_.MessageBox("Cannot Find the Call Logs File",
                       "If you are using a shared log then please make sure the file exists and reset the "
                       "path to the proper log folder.",
                       MessageIcon::kCritical, MessageButtons::kOk);
      return RequestOutcome::kRefused;
    }
    if (Trim(request_.fromDate).empty()) {
      host_.MessageBox("", "Missing Start Date", MessageIcon::kCritical, MessageButtons::kOk);
      return RequestOutcome::kRefused;
    }
    // An empty or garbled To date is not checked: its conversion fails and
    // ends in this procedure's error box.
    fromDate_ = ParseCaptionDate(request_.fromDate);
    toDate_ = ParseCaptionDate(request_.toDate);
    periodText_ = FormatDate(fromDate_, "mmm dd, yyyy") + " to " + FormatDate(toDate_, "mmm dd, yyyy");

    previous = std::move(document_);
    freshDocument = true;
    ConfigureDocument();

    auto refuse = [&](std::string_view title, std::string_view text, MessageIcon icon) {
      host_.MessageBox(title, text, icon, MessageButtons::kOk);
      discardFresh();
      return RequestOutcome::kRefused;
    };

    OrlPrinter& document = *document_;
    switch (request_.kind) {
      case kind::kDailyCallStatistics:
        host_.SetBusy(true);
        document.SetTitle("DAILY CALL ANALYSIS REPORT");
        reportRan = true;
        Process_DailySummary();
        break;
      case kind::kLineUsageStatistics:
        host_.SetBusy(true);
        document.SetTitle("LINE USAGE SUMMARY REPORT");
        reportRan = true;
        Process_LineUsage();
        break;
      case kind::kAllLinesBusy:
        document.SetTitle("ALL LINES BUSY REPORT");
        host_.SetBusy(true);
        reportRan = true;
        if (request_.variant == "Detailed") {
          Print_BusyReport();
        } else if (request_.variant == "Summary") {
          Process_BusySummary();
        }
        break;
      case kind::kAbandonedCalls: {
        const AbandonedFilter& filter = request_.abandoned;
        if (!filter.notLasting && !filter.ringCount && !filter.unanswered) {
          return refuse("Missing Filter", "Please Choose One or More Options", MessageIcon::kCritical);
        }
        if (filter.notLasting && !IsThreshold(filter.seconds)) {
          return refuse("Missing Filter (Time In Seconds)", "Please Enter a Valid Numberic Time In Seconds",
                        MessageIcon::kCritical);
        }
        if (filter.ringCount && !IsThreshold(filter.rings)) {
          return refuse("Missing Filter (Rings)", "Please Enter a Valid Numberic Ring Count",
                        MessageIcon::kCritical);
        }
        const ErrorBoxOutput errors = HostErrorBoxOutput(host_, [this] { errorShown_ = true; });
        const std::string& app = environment_.edition;
        // A store that refuses one key refuses the next: its box is shown
        // once, and the keys after it are not tried.
        SaveOptions(settings_, app, kReportsSection, setting::kSelectSeconds.name, CheckValue(filter.notLasting),
                    errors) &&
            SaveOptions(settings_, app, kReportsSection, setting::kAbandonedSeconds.name, filter.seconds, errors) &&
            SaveOptions(settings_, app, kReportsSection, setting::kAbandonedRings.name, filter.rings, errors) &&
            SaveOptions(settings_, app, kReportsSection, setting::kSelectRings.name, CheckValue(filter.ringCount),
                        errors) &&
            SaveOptions(settings_, app, kReportsSection, setting::kSelectAnswered.name,
                        CheckValue(filter.unanswered), errors);
        host_.SetBusy(true);
        document.SetTitle("ABANDONED CALLS DETAIL REPORT");
        reportRan = true;
        Print_Detail(1);
        break;
      }
      case kind::kByName:
      case kind::kByTelNumber: {
        const bool byName = request_.kind == kind::kByName;
        if (Trim(request_.searchText).empty()) {
          return refuse("Missing Search Criteria", byName ? "Please Enter a Name" : "Please Enter a Number",
                        MessageIcon::kExclamation);
        }
        host_.SetBusy(true);
        document.SetTitle("CALLER DETAIL REPORT");
        reportRan = true;
        // Only these two reports match partially; the flag must not outlive
        // them, whatever happens inside.
        FlagDuring partial(partialMatch_, request_.partial);
        Print_Detail(byName ? 2 : 3);
        break;
      }
      case kind::kCallHistory:
        host_.SetBusy(true);
        reportRan = true;
        if (request_.chart) {
          document.SetTitle("LOGGED CALLS SUMMARY REPORT");
          Print_Detail_Condensed();
        } else {
          document.SetTitle("LOGGED CALLS DETAIL REPORT");
          Print_Detail(0);
        }
        break;
      case kind::kCallBacks: {
        // The abandoned-call filter, when it is used, says which answered
        // calls count as missed; its thresholds are checked as on its own tab.
        const AbandonedFilter& filter = request_.abandoned;
        if (filter.notLasting && !IsThreshold(filter.seconds)) {
          return refuse("Missing Filter (Time In Seconds)", "Please Enter a Valid Numberic Time In Seconds",
                        MessageIcon::kCritical);
        }
        if (filter.ringCount && !IsThreshold(filter.rings)) {
          return refuse("Missing Filter (Rings)", "Please Enter a Valid Numberic Ring Count",
                        MessageIcon::kCritical);
        }
        host_.SetBusy(true);
        document.SetTitle("CALL BACK REPORT");
        reportRan = true;
        Print_CallBacks();
        break;
      }
      case kind::kByLineNumber:
        document.SetTitle("LINE DETAILS REPORT");
        reportRan = true;
        Print_Lines();
        break;
      default:
        document.SetTitle("CALLER DETAIL REPORT");
        reportRan = true;
        Print_Detail(0);
        break;
    }
    host_.SetBusy(false);
    EraseMatrices();
  } catch (const RuntimeError& error) {
    discardFresh();
    ShowError(error, "cmdPrintQuery_Click");
    if (reportRan) EraseMatrices();
  }
  // A routine may stop without a document after an error, or without one
  // (Print_Lines with no line chosen, or a busy variant that names no
  // report).
  if (!previewShown_) return errorShown_ ? RequestOutcome::kFailed : RequestOutcome::kRefused;
  return errorShown_ || rolledDates_ > 0 ? RequestOutcome::kProducedWithErrors : RequestOutcome::kProduced;
}

void ReportForm::ConfigureDocument() {
  OrlPrinterEnvironment env;
  env.metrics = &metrics_;
  env.measurePrinter = environment_.measurePrinter;
  env.printReport = environment_.printReport;
  env.askSaveFileName = environment_.askSaveFileName;
  env.today = [this] { return host_.Today(); };
  env.showError = [this](const std::string& text) {
    errorShown_ = true;
    documentFailed_ = true;
    host_.MessageBox(kErrorBoxTitle, text, MessageIcon::kCritical, MessageButtons::kOk);
  };
  // Only a preview that came through counts: the headless host throws when
  // an output cannot be written.
  env.showPreview = [this](OrlPrinter& document) {
    host_.ShowPreview(document, *data_);
    previewShown_ = true;
  };
  env.progress = [this](std::int64_t done, std::int64_t total) { host_.Progress(done, total); };
  const ScreenTwips screen = host_.Screen();
  env.screenWidthTwips = screen.width;
  env.screenHeightTwips = screen.height;

  document_ = std::make_unique<OrlPrinter>(std::move(env));
  data_ = std::make_unique<ReportData>(environment_.keepData);
  OrlPrinter& document = *document_;
  document.OnNewPage = [this](std::int16_t page) { OnNewPage(page); };
  document.OnPrinterError = [this](bool& retry) { OnPrinterError(retry); };

  document.BeginDoc();
  document.SetScaleMode(scale::kInches);
  document.SetOrientation(1);
  OrlPrinter::OutputOptions& options = document.Options();
  options.previewSizable = true;
  // The preview's size is kept in 16 bits: a screen too large for it
  // overflows, as it always has.
  options.previewWindowHeight = ToInt16(screen.height * 0.96);
  options.previewWindowWidth = ToInt16(screen.width * 0.72);
  document.SetSpacing(1.0);
  document.SetBottomMargin(0.5);
  document.SetAutoHeadings(true);
  options.showPrintDialog = true;
  options.showPreviewFind = false;
  options.showProgress = true;
  document.SetAutoNewPage(true);
  document.SetAutoHeadingsFontName("Arial");
  document.SetAutoHeadingsFontSize(10);
  document.SetAutoHeadingsFontAttr(kBold);
  document.SetSubTitle("Report Period: " + periodText_);
  options.closeButtonCaption = "Close";
  options.zoomPercent = 100;
  document.SetFont("Arial", kReportFontSize, 0);
  document.SetY(kFirstRowY);
}

void ReportForm::EraseMatrices() { matrices_ = Matrices{}; }

SelectionCriteria ReportForm::PeriodCriteria(std::string_view direction, std::string_view file) {
  SelectionCriteria criteria;
  criteria.from = fromDate_;
  criteria.to = toDate_;
  criteria.direction = direction;
  criteria.onRolledDate = [this, file = std::string(file)](std::int64_t record, std::string_view dateText,
                                                           CivilDate readAs) {
    WarnOfRolledDate(file, record, dateText, readAs);
  };
  return criteria;
}

void ReportForm::WarnOfRolledDate(std::string_view file, std::int64_t record, std::string_view dateText,
                                  CivilDate readAs) {
  // The first such record of a request is named; a log with many would
  // otherwise say so at every new date, and one rolled past the period ends
  // the reading there anyway.
  if (rolledDates_++ > 0) return;
  host_.MessageBox("Warning",
                   "Record " + std::to_string(record) + " of " + std::string(file) + " is dated " +
                       std::string(dateText) + ", which is not a calendar date; it was read as " +
                       FormatDate(readAs, "mm/dd/yyyy") + ".",
                   MessageIcon::kExclamation, MessageButtons::kOk);
}

// ---------------------------------------------------------------------------
// Fonts and right alignment

void ReportForm::SetBodyFont() {
  pictureFont_ = FontSpec{std::string(kBodyFontName), kReportFontSize};
  document_->SetFont(kBodyFontName, kReportFontSize, 0);
}

void ReportForm::SetHeadingFont() {
  pictureFont_ = FontSpec{std::string(kHeadingFontName), kReportFontSize, true};
  document_->SetFont(kHeadingFontName, kReportFontSize, kBold);
}

double ReportForm::RightAlignedX(double x, std::string_view text) {
  return x - metrics_.TextWidth(pictureFont_, text) / scale::kTwipsPerInch;
}

// ---------------------------------------------------------------------------
// Document events

void ReportForm::OnNewPage(std::int16_t page) {
  OrlPrinter& document = *document_;
  const double y = document.Y();
  document.LineOut(0, y + 0.03, 9.0, y + 0.03);
  document.LineOut(0, y + 0.05, 9.0, y + 0.05);
  document.SetY(kFirstRowY);

  auto left = [&](double x, std::string_view text) { document.TextOut(x, text); };
  auto right = [&](double x, std::string_view text) { document.TextOut(RightAlignedX(x, text), text); };
  auto endHeadings = [&] {
    SetBodyFont();
    document.SetY(document.Y() + 0.03);
    document.NewLine();
  };
  const DetailColumns& x = request_.columns;

  switch (request_.kind) {
    case kind::kLineUsageStatistics:
      // The first page has the report's own weekday table; later pages repeat
      // its heading.
      if (page < 2) return;
      SetHeadingFont();
      document.TextOut(-1, "Day of the Week Summary");
      document.NewLine();
      SetBodyFont();
      // The weekday columns of the other summaries, not the first page's
      // wider ones: the two spacings have always differed.
      summary::TableWriter(*this, document).WeekdayHeadings(summary::WeekdayColumnX);
      document.SetY(document.Y() + 0.03);
      document.NewLine();
      return;
    case kind::kAllLinesBusy:
      if (request_.variant != "Detailed") return;
      SetHeadingFont();
      left(busy::kDateX, "Date");
      right(busy::kStartTimeX, "Start Time");
      right(busy::kEndTimeX, "End Time");
      right(busy::kDurationX, "Duration");
      right(busy::kLinesX, "Lines");
      endHeadings();
      return;
    case kind::kCallBacks:
      SetHeadingFont();
      left(callback::kLineX, "Line");
      left(callback::kNameX, "Name");
      right(callback::kNumberX, "Number");
      left(callback::kDateX, "Date");
      right(callback::kTimeX, "Time");
      left(callback::kReturnedX, "Returned");
      left(callback::kByLineX, "By");
      right(callback::kAfterX, "After");
      endHeadings();
      return;
    case kind::kCallHistory:
      if (request_.chart) {
        SetHeadingFont();
        left(condensed::kNameX, "Name");
        right(condensed::kNumberX, "Number");
        right(condensed::kCallsX, "Calls");
        right(condensed::kDurationX, "Duration");
        endHeadings();
        return;
      }
      [[fallthrough]];
    case kind::kAbandonedCalls:
    case kind::kByName:
    case kind::kByTelNumber:
    case kind::kByLineNumber:
      SetHeadingFont();
      left(x[0], "Line");
      left(x[1], "Name");
      right(x[2], "Number");
      left(x[3], "Date");
      right(x[4], "Time");
      left(x[5], "Call");
      right(x[6], "Minutes");
      left(x[7], "Ans");
      left(x[8], "Ring");
      if (request_.dtmf) left(x[9], "DTMF");
      endHeadings();
      return;
    default:
      // The chart, when there is one, takes the room of the three lines.
      if (!request_.chart) {
        document.NewLine();
        document.NewLine();
        document.NewLine();
      }
      SetHeadingFont();
      return;
  }
}

void ReportForm::OnPrinterError(bool& retry) {
  host_.MessageBox("Printer Error", "THE PRINTER IS NOT READY OR NO PRINTER IS INSTALLED.", MessageIcon::kCritical,
                   MessageButtons::kRetryCancel);
  // Both buttons close the box with a non-zero answer, so the engine is always
  // told to retry.
  retry = true;
}

// ---------------------------------------------------------------------------
// Errors

void ReportForm::ShowError(const RuntimeError& error, std::string_view procedure, ErrorBoxForm form) {
  errorShown_ = true;
  if (!AlreadyShown(error, procedure)) {
    const std::string text = ErrorBoxText(error, ErrorPlace{"Form", "fReport", procedure}, form,
                                          ErrorBoxDateTime(host_.Today(), host_.Now()));
    host_.MessageBox(kErrorBoxTitle, text, MessageIcon::kCritical, MessageButtons::kOk);
  }
  host_.SetBusy(false);
}

bool ReportForm::AlreadyShown(const RuntimeError& error, std::string_view procedure) {
  // A report routine that the failed document stopped passes the document's
  // error on; the document's box has told it.
  if (documentFailed_) return true;
  for (const auto& [number, where] : shownErrors_) {
    if (number == error.Number() && where == procedure) {
      ++repeatedErrors_;
      return true;
    }
  }
  shownErrors_.emplace_back(error.Number(), procedure);
  return false;
}

}  // namespace cw
