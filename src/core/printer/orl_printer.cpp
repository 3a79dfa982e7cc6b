#include "printer/orl_printer.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <limits>

#include "printer/memo_wrap.h"
#include "printer/scale_mode.h"
#include "printer/spool_format.h"
#include "printer/spool_replay.h"
#include "printer/spool_writer.h"
#include "printer/text_export.h"
#include "support/date_format.h"
#include "support/runtime_error.h"
#include "support/temporary_files.h"
#include "support/text.h"
#include "support/whole_numbers.h"

namespace cw {

namespace {

constexpr std::size_t kFontNameWidth = spool::kFontNameWidth;
// The heading block starts half an inch from the top and the left, and ends
// its page number half an inch from the right edge.
constexpr double kHeadingInsetTwips = 720;

// The measuring surface starts with the platform's default picture-box font.
const FontSpec kSurfaceFont{"MS Sans Serif", 8};

std::int16_t PreviewSide(double screenTwips) {
  const double side = RoundHalfEven(screenTwips * 3 / 4);
  if (!(side > 0)) return 0;
  return side > std::numeric_limits<std::int16_t>::max() ? std::numeric_limits<std::int16_t>::max()
                                                          : static_cast<std::int16_t>(side);
}

std::int32_t AttributeWord(const FontSpec& font) {
  return (font.bold ? spool::kAttrBold : 0) | (font.italic ? spool::kAttrItalic : 0) |
         (font.underline ? spool::kAttrUnderline : 0);
}

}  // namespace

struct OrlPrinter::State {
  explicit State(OrlPrinterEnvironment environment) : env(std::move(environment)) {
    options.previewWindowWidth = PreviewSide(env.screenWidthTwips);
    options.previewWindowHeight = PreviewSide(env.screenHeightTwips);
  }

  OrlPrinterEnvironment env;
  bool printerFailed = false;
  // The error that ended the document (Failed()).
  std::optional<RuntimeError> failure;
  std::unique_ptr<SpoolWriter> spool;
  std::string spoolPath;

  std::int16_t orientation = 0;
  std::int16_t scaleMode = 0;
  double x = 0;
  double y = 0;
  std::int16_t page = 0;
  std::int16_t totalPages = 0;
  std::string title;
  std::string subTitle;
  double spacing = spool::kDefaultSpacing;
  bool autoNewPage = false;
  bool autoHeadings = false;
  std::string autoHeadingsFontName;
  std::int16_t autoHeadingsFontSize = 0;
  std::int32_t autoHeadingsFontAttr = 0;
  double bottomMargin = 0;
  double topMargin = 0;
  std::string printTextFile;
  OutputOptions options;

  // The measuring surface: the printable page in twips and the current font.
  double surfaceWidth = PageSetup{}.widthTwips;
  double surfaceHeight = PageSetup{}.heightTwips;
  FontSpec font = kSurfaceFont;
  // Set by BeginDoc to the page height in twips, then by every TextOut to the
  // lowest Y in ScaleMode units at which a line may still start.
  float bottomLimit = 0;
  bool firstPagePending = false;
  // Inside a page's heading block or OnNewPage: their own drawing calls never
  // break the page again, whatever the margins.
  bool beginningPage = false;
  // Record 1 as this object last wrote it. A new object's copy is all zero
  // bytes, and BeginDoc resets only eight of its fields.
  SpoolRecord header{};
};

OrlPrinter::OrlPrinter(OrlPrinterEnvironment environment)
    : state_(std::make_unique<State>(std::move(environment))) {}

OrlPrinter::~OrlPrinter() = default;

// ---------------------------------------------------------------------------
// Helpers

namespace {

class BeginningPage {
 public:
  explicit BeginningPage(bool& flag) : flag_(flag), previous_(flag) { flag_ = true; }
  ~BeginningPage() { flag_ = previous_; }
  BeginningPage(const BeginningPage&) = delete;
  BeginningPage& operator=(const BeginningPage&) = delete;

 private:
  bool& flag_;
  bool previous_;
};

}  // namespace

double OrlPrinter::TwipsToScale(double twips) const {
  return twips / TwipsPerUnit(state_->scaleMode).value_or(1.0);
}

double OrlPrinter::ScaleToTwips(double value) const {
  return value * TwipsPerUnit(state_->scaleMode).value_or(1.0);
}

namespace {

TextMetrics& Metrics(const OrlPrinterEnvironment& env) {
  if (env.metrics == nullptr) throw RuntimeError(err::kInvalidCall, "The document has no text metrics");
  return *env.metrics;
}

SpoolWriter& OpenSpool(std::unique_ptr<SpoolWriter>& spool) {
  if (!spool) throw RuntimeError(err::kBadFile, "No document is open: BeginDoc has not been called");
  return *spool;
}

}  // namespace

// ---------------------------------------------------------------------------
// Document life

void OrlPrinter::BeginDoc() {
  State& s = *state_;
  if (s.env.closeAllFiles) s.env.closeAllFiles();
  s.spool.reset();
  s.printerFailed = false;
  s.failure.reset();
  s.firstPagePending = true;
  ApplyHeaderCreationValues(s.header);
  s.spool = SpoolWriter::CreateTemporary(s.header);
  s.spoolPath = s.spool->Path();
  s.x = 0;
  s.y = 0;
  s.spacing = spool::kDefaultSpacing;
  s.page = 1;
  for (int repeats = 0;; ++repeats) {
    try {
      const PageSetup page = s.env.measurePrinter ? s.env.measurePrinter() : PageSetup{};
      s.surfaceWidth = page.widthTwips;
      s.surfaceHeight = page.heightTwips;
      s.bottomLimit = static_cast<float>(page.heightTwips);
      break;
    } catch (const RuntimeError&) {
      if (!RaisePrinterError()) break;
      if (repeats == kPrinterStepRepeats) {
        s.printerFailed = true;
        break;
      }
    }
  }
}

void OrlPrinter::EndDoc() {
  State& s = *state_;
  ThrowIfFailed();
  SpoolWriter& spool = OpenSpool(s.spool);
  s.totalPages = s.page;
  spool.Append(MakePageRecord(s.page, spool::kEndDoc));
  spool.Close();
}

void OrlPrinter::DestroyReport() {
  State& s = *state_;
  if (s.env.closeAllFiles) s.env.closeAllFiles();
  s.spool.reset();
  const std::string path = PrintFile();
  if (path.empty()) return;
  if (std::remove(path.c_str()) != 0 && errno != ENOENT) {
    throw RuntimeError(err::kPathFileAccess, "Cannot delete the spool file " + path + ": " + std::strerror(errno));
  }
  ForgetTemporaryFile(path);
}

bool OrlPrinter::PrinterFailed() const { return state_->printerFailed; }

bool OrlPrinter::Failed() const { return state_->failure.has_value(); }

// A page that cannot be numbered, or a spool that cannot be written, fails
// the same way on every later row: a report that went on would meet it once a
// call, all the way down the log. The document ends at the first one instead.
void OrlPrinter::Fail(const RuntimeError& error, std::string_view procedure) {
  State& s = *state_;
  if (!s.failure) {
    s.failure = error;
    if (s.env.showError) {
      s.env.showError(ErrorBoxText(error, {"Class Module", "OrlPrinter", procedure}, ErrorBoxForm::kClassic));
    }
  }
  throw *s.failure;
}

void OrlPrinter::ThrowIfFailed() const {
  if (state_->failure) [[unlikely]] throw *state_->failure;
}

bool OrlPrinter::RaisePrinterError() {
  bool retry = false;
  if (OnPrinterError) OnPrinterError(retry);
  if (!retry) state_->printerFailed = true;
  return retry;
}

// ---------------------------------------------------------------------------
// Page layout

namespace {

// The page check's break rule: the bottom limit is kept in single precision,
// and only a line that starts strictly below it moves to the next page.
bool PastBottom(double y, float bottomLimit) { return static_cast<float>(y) > bottomLimit; }

}  // namespace

// The page check run by every drawing call before it writes.
void OrlPrinter::CheckNewPage() {
  State& s = *state_;
  try {
    if (PastBottom(s.y, s.bottomLimit) && s.autoNewPage && !s.beginningPage) NewPage();
    if (s.firstPagePending) {
      s.firstPagePending = false;
      BeginningPage guard(s.beginningPage);
      if (s.autoHeadings) PrintHeadingBlock();
      if (OnNewPage) OnNewPage(s.page);
    }
  } catch (const RuntimeError& error) {
    Fail(error, "CheckNewPage");
  }
}

void OrlPrinter::NewPage() {
  State& s = *state_;
  ThrowIfFailed();
  if (s.printerFailed) return;
  if (s.page == std::numeric_limits<std::int16_t>::max()) throw RuntimeError(err::kOverflow);
  ++s.page;
  s.x = 0;
  s.y = 0;
  OpenSpool(s.spool).Append(MakePageRecord(static_cast<std::int16_t>(s.page - 1), spool::kNewPage));
  BeginningPage guard(s.beginningPage);
  if (s.autoHeadings) PrintHeadingBlock();
  if (OnNewPage) OnNewPage(s.page);
}

void OrlPrinter::NewLine() {
  State& s = *state_;
  ThrowIfFailed();
  if (s.printerFailed) return;
  s.y += TwipsToScale(Metrics(s.env).TextHeight(s.font) * s.spacing);
  s.x = 0;
}

void OrlPrinter::PrintHeadingBlock() {
  State& s = *state_;
  TextMetrics& metrics = Metrics(s.env);
  const FontSpec saved = s.font;
  SetFont(s.autoHeadingsFontName, s.autoHeadingsFontSize, s.autoHeadingsFontAttr);

  const double inset = TwipsToScale(kHeadingInsetTwips);
  s.y = inset;
  if (!s.env.today) throw RuntimeError(err::kInvalidCall, "The document has no date for its heading");
  TextOut(inset, "Date: " + FormatDate(s.env.today(), "mm/dd/yyyy"));
  TextOut(TwipsToScale((s.surfaceWidth - metrics.TextWidth(s.font, s.title)) / 2), s.title);
  const std::string pageText = "Page: " + std::to_string(s.page);
  TextOut(TwipsToScale(s.surfaceWidth - kHeadingInsetTwips - metrics.TextWidth(s.font, pageText)), pageText);
  NewLine();
  NewLine();

  SetFont(s.autoHeadingsFontName, s.autoHeadingsFontSize, s.autoHeadingsFontAttr);
  if (!Trim(s.subTitle).empty()) {
    TextOut(TwipsToScale((s.surfaceWidth - metrics.TextWidth(s.font, s.subTitle)) / 2), s.subTitle);
    NewLine();
  }
  SetFont(saved.name, static_cast<std::int16_t>(saved.points), AttributeWord(saved));
}

// ---------------------------------------------------------------------------
// Drawing

void OrlPrinter::TextOut(double x, std::optional<std::string_view> text) {
  State& s = *state_;
  ThrowIfFailed();
  if (s.printerFailed) return;
  const std::string_view value = text.value_or(std::string_view{});
  try {
    TextMetrics& metrics = Metrics(s.env);
    if (x == -1) x = TwipsToScale((s.surfaceWidth - metrics.TextWidth(s.font, value)) / 2);
    s.bottomLimit = static_cast<float>(TwipsToScale(s.surfaceHeight - ScaleToTwips(s.bottomMargin)));
    CheckNewPage();
    s.x = x;
    if (s.y < s.topMargin) s.y = s.topMargin;
    OpenSpool(s.spool).Append(MakeTextRecord(s.page, s.x, s.y, value));
    s.x += TwipsToScale(metrics.TextWidth(s.font, value));
  } catch (const RuntimeError& error) {
    Fail(error, "TextOut");
  }
}

void OrlPrinter::MemoOut(double x1, double x2, std::optional<std::string_view> text) {
  State& s = *state_;
  ThrowIfFailed();
  if (s.printerFailed) return;
  CheckNewPage();
  TextMetrics& metrics = Metrics(s.env);
  MemoWrap wrap(text.value_or(std::string_view{}), x2 - x1);
  const auto width = [&](std::string_view line) { return TwipsToScale(metrics.TextWidth(s.font, line)); };
  std::string line;
  bool first = true;
  while (wrap.NextLine(width, line)) {
    if (!first) NewLine();
    first = false;
    TextOut(x1, line);
  }
}

double OrlPrinter::MemoHeight(double x1, double x2, std::optional<std::string_view> text) {
  State& s = *state_;
  TextMetrics& metrics = Metrics(s.env);
  MemoWrap wrap(text.value_or(std::string_view{}), x2 - x1);
  const auto width = [&](std::string_view line) { return TwipsToScale(metrics.TextWidth(s.font, line)); };
  const double lineHeight = TwipsToScale(metrics.TextHeight(s.font) * s.spacing);
  std::string line;
  double height = 0;
  bool first = true;
  while (wrap.NextLine(width, line)) {
    if (!first) height += lineHeight;
    first = false;
  }
  return height;
}

void OrlPrinter::SetFont(std::string_view name, std::int16_t size, std::int32_t attr) {
  State& s = *state_;
  ThrowIfFailed();
  if (s.printerFailed) return;
  try {
    const std::string_view cut = Trim(name.substr(0, kFontNameWidth));
    s.font = FontSpec{std::string(cut), static_cast<double>(size), (attr & spool::kAttrBold) != 0,
                      (attr & spool::kAttrItalic) != 0, (attr & spool::kAttrUnderline) != 0};
    SpoolWriter& spool = OpenSpool(s.spool);
    spool.ReopenIfVanished();
    spool.Append(MakeFontRecord(s.page, cut, size, s.font.bold, s.font.italic, s.font.underline));
  } catch (const RuntimeError& error) {
    Fail(error, "SetFont");
  }
}

void OrlPrinter::LineOut(double x1, double y1, double x2, double y2) {
  State& s = *state_;
  ThrowIfFailed();
  if (s.printerFailed) return;
  CheckNewPage();
  OpenSpool(s.spool).Append(MakeGraphicsRecord(s.page, spool::kLineOut, x1, y1, x2, y2));
}

void OrlPrinter::BoxOut(double x1, double y1, double x2, double y2) {
  State& s = *state_;
  ThrowIfFailed();
  if (s.printerFailed) return;
  CheckNewPage();
  OpenSpool(s.spool).Append(MakeGraphicsRecord(s.page, spool::kBoxOut, x1, y1, x2, y2));
}

void OrlPrinter::ImageOut(std::string_view file, double x, double y, double width, double height) {
  State& s = *state_;
  ThrowIfFailed();
  if (s.printerFailed) return;
  CheckNewPage();
  OpenSpool(s.spool).Append(MakeImageRecord(s.page, file, x, y, width, height));
}

// ---------------------------------------------------------------------------
// Pen position and page

double OrlPrinter::X() const { return state_->x; }
void OrlPrinter::SetX(double x) { state_->x = x; }
double OrlPrinter::Y() const { return state_->y; }
void OrlPrinter::SetY(double y) { state_->y = y; }
std::int16_t OrlPrinter::Page() const { return state_->page; }
void OrlPrinter::SetPage(std::int16_t page) { state_->page = page; }
std::int16_t OrlPrinter::TotalPages() const { return state_->totalPages; }

// ---------------------------------------------------------------------------
// Header properties: record 1 on disk first (it fails when no spool is open),
// then this object's copies.

namespace {

template <class Change>
void RewriteHeaderField(std::unique_ptr<SpoolWriter>& spool, SpoolRecord& copy, const Change& change) {
  OpenSpool(spool).RewriteHeader([&](SpoolRecord& header) { change(header.data()); });
  change(copy.data());
}

}  // namespace

std::int16_t OrlPrinter::Orientation() const { return state_->orientation; }
void OrlPrinter::SetOrientation(std::int16_t value) {
  RewriteHeaderField(state_->spool, state_->header,
                     [&](char* record) { PutInt16(record, spool::kOrientation, value); });
  state_->orientation = value;
}

std::int16_t OrlPrinter::ScaleMode() const { return state_->scaleMode; }
void OrlPrinter::SetScaleMode(std::int16_t value) {
  RewriteHeaderField(state_->spool, state_->header,
                     [&](char* record) { PutInt16(record, spool::kScaleMode, value); });
  state_->scaleMode = value;
}

double OrlPrinter::Spacing() const { return state_->spacing; }
void OrlPrinter::SetSpacing(double value) {
  RewriteHeaderField(state_->spool, state_->header,
                     [&](char* record) { PutDouble(record, spool::kSpacing, value); });
  state_->spacing = value;
}

bool OrlPrinter::AutoHeadings() const { return state_->autoHeadings; }
void OrlPrinter::SetAutoHeadings(bool value) {
  RewriteHeaderField(state_->spool, state_->header,
                     [&](char* record) { PutBool(record, spool::kAutoHeadings, value); });
  state_->autoHeadings = value;
}

const std::string& OrlPrinter::AutoHeadingsFontName() const { return state_->autoHeadingsFontName; }
void OrlPrinter::SetAutoHeadingsFontName(std::string_view value) {
  RewriteHeaderField(state_->spool, state_->header, [&](char* record) {
    PutText(record, spool::kAutoHeadingsFontName, spool::kAutoHeadingsFontNameWidth, value);
  });
  state_->autoHeadingsFontName = value;
}

std::int16_t OrlPrinter::AutoHeadingsFontSize() const { return state_->autoHeadingsFontSize; }
void OrlPrinter::SetAutoHeadingsFontSize(std::int16_t value) {
  RewriteHeaderField(state_->spool, state_->header,
                     [&](char* record) { PutInt16(record, spool::kAutoHeadingsFontSize, value); });
  state_->autoHeadingsFontSize = value;
}

std::int32_t OrlPrinter::AutoHeadingsFontAttr() const { return state_->autoHeadingsFontAttr; }
void OrlPrinter::SetAutoHeadingsFontAttr(std::int32_t value) {
  RewriteHeaderField(state_->spool, state_->header,
                     [&](char* record) { PutInt32(record, spool::kAutoHeadingsFontAttr, value); });
  state_->autoHeadingsFontAttr = value;
}

bool OrlPrinter::AutoNewPage() const { return state_->autoNewPage; }
void OrlPrinter::SetAutoNewPage(bool value) {
  RewriteHeaderField(state_->spool, state_->header,
                     [&](char* record) { PutBool(record, spool::kAutoNewPage, value); });
  state_->autoNewPage = value;
}

const std::string& OrlPrinter::Title() const { return state_->title; }
void OrlPrinter::SetTitle(std::string_view value) {
  RewriteHeaderField(state_->spool, state_->header,
                     [&](char* record) { PutText(record, spool::kTitle, spool::kTitleWidth, value); });
  state_->title = value;
}

const std::string& OrlPrinter::SubTitle() const { return state_->subTitle; }
void OrlPrinter::SetSubTitle(std::string_view value) {
  RewriteHeaderField(state_->spool, state_->header,
                     [&](char* record) { PutText(record, spool::kSubTitle, spool::kSubTitleWidth, value); });
  state_->subTitle = value;
}

// ---------------------------------------------------------------------------
// Layout

double OrlPrinter::TopMargin() const { return state_->topMargin; }
void OrlPrinter::SetTopMargin(double value) {
  state_->topMargin = value;
  if (state_->y < value) state_->y = value;
}

double OrlPrinter::BottomMargin() const { return state_->bottomMargin; }
void OrlPrinter::SetBottomMargin(double value) { state_->bottomMargin = value; }

double OrlPrinter::MaxYPos() const {
  const State& s = *state_;
  return static_cast<float>(TwipsToScale(s.surfaceHeight - ScaleToTwips(s.bottomMargin)));
}

std::int32_t OrlPrinter::PageWidth() const { return ToInt32(TwipsToScale(state_->surfaceWidth)); }
std::int32_t OrlPrinter::PageHeight() const { return ToInt32(TwipsToScale(state_->surfaceHeight)); }

OrlPrinter::OutputOptions& OrlPrinter::Options() { return state_->options; }
const OrlPrinter::OutputOptions& OrlPrinter::Options() const { return state_->options; }

// ---------------------------------------------------------------------------
// Outputs

std::string OrlPrinter::PrintFile() const { return std::string(Trim(state_->spoolPath)); }

void OrlPrinter::SetPrintTextFile(std::string_view file) { state_->printTextFile = file; }

std::string OrlPrinter::PrintTextFile() {
  state_->spoolPath = state_->printTextFile;
  return {};
}

void OrlPrinter::PreviewReport() {
  ThrowIfFailed();
  if (state_->printerFailed) return;
  if (state_->env.showPreview) state_->env.showPreview(*this);
}

void OrlPrinter::PrintReport() {
  ThrowIfFailed();
  if (state_->printerFailed) return;
  if (state_->env.printReport) state_->env.printReport(*this);
}

std::string OrlPrinter::AskSaveFileName() {
  if (!state_->env.askSaveFileName) return {};
  std::string name = state_->env.askSaveFileName();
  return Trim(name).empty() ? std::string() : name;
}

void OrlPrinter::SaveReport(std::string_view fileName) {
  std::string name(Trim(fileName));
  if (name.empty()) {
    name = AskSaveFileName();
    if (name.empty()) return;
  }
  state_->printTextFile = name;
  PrintToFile();
}

void OrlPrinter::PrintToFile() {
  State& s = *state_;
  ThrowIfFailed();
  if (s.printerFailed) return;
  ExportProgress progress;
  if (s.options.showProgress && s.env.progress) progress = s.env.progress;
  ExportSpoolToTextFile(PrintFile(), s.printTextFile, progress);
}

}  // namespace cw
