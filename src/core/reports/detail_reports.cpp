// The call detail reports: every call of the period, the abandoned calls, the
// calls of one caller (Print_Detail), the calls per telephone line
// (Print_Lines) and the condensed per-caller history (Print_Detail_Condensed).
// The column headings are the page-heading handler's; these routines write
// the rows and the totals block and finish the document.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/call_record.h"
#include "data/log_buffer.h"
#include "data/log_conversions.h"
#include "data/record_selection.h"
#include "data/sort_the_file.h"
#include "reports/caller_summary.h"
#include "reports/condensed_columns.h"
#include "reports/detail_rules.h"
#include "reports/progress_interval.h"
#include "reports/report_form.h"
#include "support/date_format.h"
#include "support/fast_cat.h"
#include "support/time_text.h"
#include "support/whole_numbers.h"

namespace cw {

namespace {

constexpr int kObjectNotSet = 91;

OrlPrinter& CurrentDocument(const std::unique_ptr<OrlPrinter>& document) {
  if (!document) throw RuntimeError(kObjectNotSet, "Object variable or With block variable not set");
  return *document;
}

void TextOutRight(ReportForm& form, OrlPrinter& document, double x, std::string_view text) {
  document.TextOut(form.RightAlignedX(x, text), text);
}

// The two blank lines between the rows and the totals block, and the page the
// block goes on. The page-heading handler leaves the body font set, so a page
// that began at one of the block's labels would print it in the wrong font;
// the page therefore begins before the labels are written:
// - a listing without rows has drawn nothing, and its first page begins here
//   (with an empty text at the left edge of the line the labels then share);
// - a block of `lines` lines that would cross the bottom of the page moves to
//   the next one whole, so that labels and figures stay together.
void BeginTotalsBlock(OrlPrinter& document, int lines, bool pageBegun) {
  document.NewLine();
  const double before = document.Y();
  document.NewLine();
  const double lineHeight = document.Y() - before;
  if (!pageBegun) {
    document.TextOut(0, "");
    return;
  }
  const double lastLine = document.Y() + (lines - 1) * lineHeight;
  if (document.AutoNewPage() && static_cast<float>(lastLine) > static_cast<float>(document.MaxYPos())) {
    document.NewPage();
  }
}

// The data of a call listing: one row per call.
void BeginListingData(ReportData& data, bool dtmf) {
  std::vector<std::string> columns{"Date",     "Time",    "Number",   "Name",  "Line",
                                   "Direction", "Duration", "Seconds", "Answered", "Rings"};
  if (dtmf) columns.emplace_back("DTMF");
  data.Begin(std::move(columns));
}

// The rows of one call listing and its totals.
class DetailListing {
 public:
  // splitByDirection: the direction chosen is "InOut", and the totals are
  // also kept for inbound and outbound calls apart. pageBegun: the document
  // has drawn on its current page already.
  DetailListing(ReportForm& form, OrlPrinter& document, const DetailColumns& x, bool dtmf,
                bool splitByDirection, bool pageBegun)
      : form_(form),
        document_(document),
        data_(form.Data()),
        x_(x),
        dtmf_(dtmf),
        split_(splitByDirection),
        pageBegun_(pageBegun) {}

  void WriteRow(const CallRecord& record, CivilDate date) {
    // What a bad record can fail on is read before the row begins, so that an
    // error leaves no half-written row behind.
    const std::int32_t seconds = DurationToSeconds(record.Duration());
    const TimeOfDay clock = ParseTimeText(record.Time());
    const std::string time = FormatTime(clock, "h:mmampm");

    rows_ = AddInt32(rows_, 1);
    seconds_ = AddInt32(seconds_, seconds);
    if (split_) {
      const std::string_view direction = record.Direction();
      if (direction == "In") {
        inRows_ = AddInt32(inRows_, 1);
        inSeconds_ = AddInt32(inSeconds_, seconds);
      } else if (direction == "Out") {
        outRows_ = AddInt32(outRows_, 1);
        outSeconds_ = AddInt32(outSeconds_, seconds);
      }
    }

    // The line goes first: a page that begins at it sets the body font before
    // the right-aligned columns are measured.
    document_.TextOut(x_[0], record.Line());
    document_.TextOut(x_[1], record.Name());
    TextOutRight(form_, document_, x_[2], record.Number());
    document_.TextOut(x_[3], record.Date());
    TextOutRight(form_, document_, x_[4], time);
    document_.TextOut(x_[5], record.Direction());
    TextOutRight(form_, document_, x_[6], record.Duration());
    document_.TextOut(x_[7], record.Answered());
    document_.TextOut(x_[8], record.Rings());
    if (dtmf_ && record.Text().size() >= column::kDtmfStart) document_.TextOut(x_[9], record.Dtmf(true));
    document_.NewLine();
    pageBegun_ = true;
    if (data_.Keeping()) WriteData(record, date, clock, seconds);
  }

  // "Total Calls" and "Duration" under the Time and Minutes columns. With
  // "InOut" two more rows split them by direction in the same columns (count,
  // "In" or "Out" under Call, duration), so that the block adds up.
  void WriteCallTotals() {
    BeginTotalsBlock(document_, split_ ? 4 : 2, pageBegun_);
    form_.SetHeadingFont();
    TextOutRight(form_, document_, x_[4], "Total Calls");
    TextOutRight(form_, document_, x_[6], "Duration");
    form_.SetBodyFont();
    document_.NewLine();
    TextOutRight(form_, document_, x_[4], std::to_string(rows_));
    TextOutRight(form_, document_, x_[6], TotalDurationText(seconds_));
    if (split_) {
      WriteDirectionTotal(inRows_, "In", inSeconds_);
      WriteDirectionTotal(outRows_, "Out", outSeconds_);
    }
  }

  // "Total Abandoned Calls:  12 of 40  (30%)".
  void WriteAbandonedTotals(std::int32_t considered) {
    BeginTotalsBlock(document_, 1, pageBegun_);
    form_.SetHeadingFont();
    TextOutRight(form_, document_, x_[4], "Total Abandoned Calls:  ");
    document_.TextOut(document_.X(), AbandonedSummaryText(rows_, considered));
  }

 private:
  void WriteData(const CallRecord& record, CivilDate date, TimeOfDay clock, std::int32_t seconds) {
    std::vector<std::string> cells{DataDate(date),
                                   DataTime(clock),
                                   std::string(record.Number()),
                                   std::string(record.Name()),
                                   std::string(record.Line()),
                                   std::string(record.Direction()),
                                   TotalDurationText(seconds),
                                   std::to_string(seconds),
                                   std::string(record.Answered()),
                                   std::string(record.Rings())};
    if (dtmf_) cells.emplace_back(record.Dtmf(true));
    data_.AddRow(cells);
  }

  void WriteDirectionTotal(std::int32_t rows, std::string_view direction, std::int32_t seconds) {
    document_.NewLine();
    TextOutRight(form_, document_, x_[4], std::to_string(rows));
    document_.TextOut(x_[5], direction);
    TextOutRight(form_, document_, x_[6], TotalDurationText(seconds));
  }

  ReportForm& form_;
  OrlPrinter& document_;
  ReportData& data_;
  const DetailColumns& x_;
  bool dtmf_;
  bool split_;
  bool pageBegun_;
  std::int32_t rows_ = 0;
  std::int32_t seconds_ = 0;
  std::int32_t inRows_ = 0;
  std::int32_t inSeconds_ = 0;
  std::int32_t outRows_ = 0;
  std::int32_t outSeconds_ = 0;
};

void FinishDocument(OrlPrinter& document) {
  document.EndDoc();
  document.PreviewReport();
  document.DestroyReport();
}

}  // namespace

void ReportForm::Print_Detail(std::int16_t mode) {
  try {
    OrlPrinter& document = CurrentDocument(document_);
    const LogBuffer log = LogBuffer::Load(environment_.logPath);

    SelectionCriteria criteria = PeriodCriteria(request_.direction, environment_.logPath);
    if (mode == 2 || mode == 3) {
      criteria.search = mode == 2 ? SearchBy::kName : SearchBy::kNumber;
      criteria.searchText = request_.searchText;
      criteria.partial = partialMatch_;
    }
    std::optional<AbandonedCallTest> abandoned;
    if (mode == 1) abandoned.emplace(request_.abandoned, request_.direction);

    BeginListingData(*data_, request_.dtmf);
    DetailListing listing(*this, document, request_.columns, request_.dtmf, request_.direction == "InOut", false);
    RecordSelection selection(log.Text(), std::move(criteria));
    // Abandoned calls are counted against every call that passed the period
    // and direction tests.
    std::int32_t considered = 0;
    selection.ForEach(
        [&](const CallRecord& record, CivilDate date) {
          if (abandoned) {
            considered = AddInt32(considered, 1);
            if (!abandoned->IsAbandoned(record)) return;
          }
          listing.WriteRow(record, date);
        },
        kProgressEvery, SelectionProgress(host_, selection));

    if (mode == 1) {
      listing.WriteAbandonedTotals(considered);
    } else {
      listing.WriteCallTotals();
    }
    FinishDocument(document);
  } catch (const RuntimeError& error) {
    ShowError(error, "Print_Detail", ErrorBoxForm::kModern);
  }
}

void ReportForm::Print_Lines() {
  try {
    OrlPrinter& document = CurrentDocument(document_);
    const std::vector<std::int16_t> lines = request_.lines.Chosen(environment_.activeLines);
    if (lines.empty()) {
      host_.MessageBox(host_.AppTitle(),
                       "No line # was selected.\r\nChoose a line # or check the \"All Lines\" option.",
                       MessageIcon::kExclamation, MessageButtons::kOk);
      return;
    }

    const LogBuffer log = LogBuffer::Load(environment_.logPath);
    RecordSelection selection(log.Text(), PeriodCriteria(request_.direction, environment_.logPath));
    SelectionProgress progress(host_, selection, static_cast<std::int64_t>(lines.size()));
    BeginListingData(*data_, request_.dtmf);
    // One listing per line, each from the top of a page that names its line
    // in the title; the finished document is titled with the whole choice.
    for (std::size_t k = 0; k < lines.size(); ++k) {
      document.SetTitle(LineListingTitle({lines[k]}));
      if (k > 0) {
        document.NewPage();
        progress.NextPass();
      }
      DetailListing listing(*this, document, request_.columns, request_.dtmf, request_.direction == "InOut",
                            k > 0);
      selection.ForEach(
          [&](const CallRecord& record, CivilDate date) {
            if (TextToInt16(record.Line()) == lines[k]) listing.WriteRow(record, date);
          },
          kProgressEvery, progress);
      listing.WriteCallTotals();
    }
    if (lines.size() > 1) document.SetTitle(LineListingTitle(lines));
    FinishDocument(document);
  } catch (const RuntimeError& error) {
    ShowError(error, "Print_Lines");
  }
}

void ReportForm::Print_Detail_Condensed() {
  try {
    OrlPrinter& document = CurrentDocument(document_);
    const LogBuffer log = LogBuffer::Load(environment_.logPath);
    RecordSelection selection(log.Text(), PeriodCriteria(request_.direction, environment_.logPath));
    CallerSummary callers;
    selection.ForEach([&callers](const CallRecord& record, CivilDate) { callers.Add(record); }, kProgressEvery,
                      SelectionProgress(host_, selection));

    // The builder gets one page for the whole text (two bytes a character):
    // an append that spilled over a page boundary would garble its line.
    std::string sorted;
    {
      cFastCat builder;
      builder.SetPageSize(ToInt32(2.0 * static_cast<double>(callers.SortTextLength()) + 2));
      callers.AppendSortLines(builder);
      sorted = SortTheFile(builder);
    }

    std::int32_t calls = 0;
    std::int32_t seconds = 0;
    std::int64_t written = 0;
    ReportData& data = *data_;
    data.Begin({std::string(kKindColumn), "Name", "Number", "Calls", "Duration", "Seconds"});
    auto dataRow = [&data](std::string_view kind, std::string_view name, std::string_view number,
                           std::int32_t rowCalls, std::int32_t rowSeconds) {
      const std::string cells[] = {std::string(kind),         std::string(name),
                                   std::string(number),       std::to_string(rowCalls),
                                   TotalDurationText(rowSeconds), std::to_string(rowSeconds)};
      data.AddRow(cells);
    };
    const std::string_view text(sorted);
    for (std::size_t start = 0; start < text.size();) {
      std::size_t end = text.find("\r\n", start);
      if (end == std::string_view::npos) end = text.size();
      const std::string_view line = text.substr(start, end - start);
      start = end + 2;
      if (line.empty()) continue;
      const CallerTotals caller = CallerSummary::FromSortLine(line);
      calls = AddInt32(calls, caller.calls);
      seconds = AddInt32(seconds, caller.seconds);
      document.TextOut(condensed::kNameX, caller.name);
      TextOutRight(*this, document, condensed::kNumberX, caller.number);
      TextOutRight(*this, document, condensed::kCallsX, std::to_string(caller.calls));
      TextOutRight(*this, document, condensed::kDurationX, TotalDurationText(caller.seconds));
      document.NewLine();
      dataRow(kDataRow, caller.name, caller.number, caller.calls, caller.seconds);
      if (++written % kProgressEvery == 0) host_.DoEvents();
    }

    // The same totals as the detail listing, under the Calls and Duration
    // columns: they add up the rows above.
    BeginTotalsBlock(document, 2, written > 0);
    SetHeadingFont();
    TextOutRight(*this, document, condensed::kCallsX, "Total Calls");
    TextOutRight(*this, document, condensed::kDurationX, "Duration");
    SetBodyFont();
    document.NewLine();
    TextOutRight(*this, document, condensed::kCallsX, std::to_string(calls));
    TextOutRight(*this, document, condensed::kDurationX, TotalDurationText(seconds));
    dataRow(kTotalsRow, "", "", calls, seconds);
    FinishDocument(document);
  } catch (const RuntimeError& error) {
    ShowError(error, "Print_Detail_Condensed");
  }
}

}  // namespace cw
