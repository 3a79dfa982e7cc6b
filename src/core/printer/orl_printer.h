#pragma once
// OrlPrinter: the report document. A report routine sets its properties, calls
// BeginDoc, draws with TextOut / MemoOut / LineOut / BoxOut / ImageOut /
// SetFont / NewLine / NewPage, and closes it with EndDoc. Nothing is drawn at
// once: every drawing call appends one record to the spool file, which the
// outputs (preview, printer, text export, PDF) replay afterwards.
//
// Coordinates are in ScaleMode units (the reports use 5 = inches). Text is
// single-byte Windows-1252.

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "printer/page_device.h"
#include "printer/text_metrics.h"
#include "support/civil_date.h"

namespace cw {

class OrlPrinter;
class RuntimeError;
class SpoolWriter;

// What the engine needs from the program around it.
struct OrlPrinterEnvironment {
  TextMetrics* metrics = nullptr;  // measuring surface; must outlive the document
  // The current printer's page, measured at BeginDoc; an error thrown here is a
  // printer error (OnPrinterError). Empty: US Letter portrait.
  std::function<PageSetup()> measurePrinter;
  // Today's date for the heading block ("Date: " in the short date format).
  std::function<CivilDate()> today;
  // Shows the standard error box (title "Error") with the given text: the
  // errors that TextOut, SetFont and the page check trap themselves; the
  // document then fails (Failed()). Empty: no box; the error still ends the
  // document and passes on to the caller.
  std::function<void(const std::string& text)> showError;
  // Closes every file the program holds open (BeginDoc, DestroyReport).
  std::function<void()> closeAllFiles;
  // PreviewReport: shows the finished document (the desktop opens the preview
  // window; the headless host writes the requested outputs).
  std::function<void(OrlPrinter& document)> showPreview;
  // SaveReport without a file name: asks for one ("Save Report"); empty answer
  // means cancelled.
  std::function<std::string()> askSaveFileName;
  // PrintReport: the print-options dialog, printer selection and the printer
  // device are the desktop's; the engine drives the replay through it.
  std::function<void(OrlPrinter& document)> printReport;
  // Progress of PrintToFile while ShowProgress is on: records done of total.
  std::function<void(std::int64_t done, std::int64_t total)> progress;
  // The screen, in twips, when the document is created: the preview window
  // starts at three quarters of it. Zero when there is no screen.
  double screenWidthTwips = 0;
  double screenHeightTwips = 0;
};

class OrlPrinter {
 public:
  explicit OrlPrinter(OrlPrinterEnvironment environment);
  ~OrlPrinter();
  OrlPrinter(const OrlPrinter&) = delete;
  OrlPrinter& operator=(const OrlPrinter&) = delete;

  // Events. OnNewPage gets the new page number; OnPrinterError may set its
  // argument to true to retry the failed printer step.
  std::function<void(std::int16_t page)> OnNewPage;
  std::function<void(bool& retry)> OnPrinterError;

  // Document life.
  void BeginDoc();
  void EndDoc();
  void DestroyReport();

  // Drawing.
  void TextOut(double x, std::optional<std::string_view> text);
  void MemoOut(double x1, double x2, std::optional<std::string_view> text);
  double MemoHeight(double x1, double x2, std::optional<std::string_view> text);
  void SetFont(std::string_view name, std::int16_t size, std::int32_t attr);
  void LineOut(double x1, double y1, double x2, double y2);
  void BoxOut(double x1, double y1, double x2, double y2);
  void ImageOut(std::string_view file, double x, double y, double width, double height);
  void NewLine();
  void NewPage();

  // Pen position and page.
  double X() const;
  void SetX(double x);
  double Y() const;
  void SetY(double y);
  std::int16_t Page() const;
  void SetPage(std::int16_t page);
  std::int16_t TotalPages() const;

  // Header properties: setting one rewrites record 1 of the open spool.
  std::int16_t Orientation() const;
  void SetOrientation(std::int16_t value);
  std::int16_t ScaleMode() const;
  void SetScaleMode(std::int16_t value);
  double Spacing() const;
  void SetSpacing(double value);
  bool AutoHeadings() const;
  void SetAutoHeadings(bool value);
  const std::string& AutoHeadingsFontName() const;
  void SetAutoHeadingsFontName(std::string_view value);
  std::int16_t AutoHeadingsFontSize() const;
  void SetAutoHeadingsFontSize(std::int16_t value);
  std::int32_t AutoHeadingsFontAttr() const;
  void SetAutoHeadingsFontAttr(std::int32_t value);
  bool AutoNewPage() const;
  void SetAutoNewPage(bool value);
  const std::string& Title() const;
  void SetTitle(std::string_view value);
  const std::string& SubTitle() const;
  void SetSubTitle(std::string_view value);

  // Layout.
  double TopMargin() const;
  void SetTopMargin(double value);
  double BottomMargin() const;
  void SetBottomMargin(double value);
  double MaxYPos() const;
  std::int32_t PageWidth() const;
  std::int32_t PageHeight() const;
  // Conversions between twips and the document unit.
  double TwipsToScale(double twips) const;
  double ScaleToTwips(double value) const;

  // Stored for the outputs (preview, printing).
  struct OutputOptions {
    bool showProgress = false;
    std::int16_t zoomPercent = 0;
    std::string defaultPrinter;
    bool showPreviewSave = true;
    bool showPreviewFind = true;
    bool showPreviewPrint = true;
    bool previewSizable = false;
    std::string closeButtonCaption;
    std::int16_t previewWindowHeight = 0;
    std::int16_t previewWindowWidth = 0;
    bool showPrintDialog = true;
    std::int16_t printFromPage = 0;
    std::int16_t printToPage = 0;
    std::int16_t printCopies = 0;
  };
  OutputOptions& Options();
  const OutputOptions& Options() const;

  bool PrinterFailed() const;
  // An error that TextOut, SetFont or the page check trapped has ended the
  // document: its box has been shown (once), and every later drawing call,
  // EndDoc and the outputs throw that same error again, so that the report
  // routine stops at once rather than meeting it on every row. BeginDoc
  // starts afresh.
  bool Failed() const;
  // A printer step failed (the printer replay calls this): raises
  // OnPrinterError and returns its answer; without a retry the printer-failed
  // flag is set, and the rest of the document is dropped.
  bool RaisePrinterError();

  // The spool file: PrintFile is its name; reading PrintTextFile makes the
  // stored text-file name the spool (a spool kept from an earlier run).
  std::string PrintFile() const;
  void SetPrintTextFile(std::string_view file);
  std::string PrintTextFile();

  // Outputs; all do nothing while the printer-failed flag is set.
  void PreviewReport();
  void PrintReport();
  void SaveReport(std::string_view fileName = {});
  // The question SaveReport asks when given no name ("Save Report"): the
  // name chosen, empty when cancelled or when nobody can be asked. For a
  // caller that may save the report in another form than text.
  std::string AskSaveFileName();
  // Writes the text export of the spool to the file named by PrintTextFile.
  void PrintToFile();

 private:
  void CheckNewPage();
  void PrintHeadingBlock();
  // The document's end on a trapped error: the box (the first time), then
  // the error thrown to the report routine.
  [[noreturn]] void Fail(const RuntimeError& error, std::string_view procedure);
  // Throws the error that ended the document, if one did.
  void ThrowIfFailed() const;

  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace cw
