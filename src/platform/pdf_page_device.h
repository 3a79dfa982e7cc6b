#pragma once
// A replayed document as a PDF file: vector text in the embedded Liberation
// fonts, at 1440 dots per inch so that every twip of the spool is one device
// unit. The file is written by the program's one file writer: it appears
// under its name only once the document is complete (or, staged, when the
// request's outputs are published), and a device or pipe is written into.

#include <QPainter>
#include <QPdfWriter>
#include <memory>
#include <string>

#include "platform/output_file_device.h"
#include "platform/painter_page_device.h"
#include "printer/output_file.h"
#include "printer/staged_outputs.h"

namespace cw {

class PdfPageDevice final : public PainterPageDevice {
 public:
  // path: the output file as the file system names it; title: the PDF's
  // document title (UTF-8), may be empty. staging: when given, the finished
  // file takes its name when the staging is published, not at EndDocument.
  explicit PdfPageDevice(std::string path, std::string title = {}, StagedOutputs* staging = nullptr);
  // The PDF into an output of the caller's (standard output, say), which
  // EndDocument commits.
  PdfPageDevice(OutputFile& output, std::string title);
  ~PdfPageDevice() override;  // an unfinished document leaves no file behind

  // Errors 76 (folder missing), 75 (cannot create or complete the file, with
  // the reason) and 5 (page size out of range).
  void BeginDocument(const PageSetup& setup) override;
  void BeginPage() override;
  void EndPage() override;
  void EndDocument() override;

  // True once EndDocument has written the whole file.
  bool Completed() const { return completed_; }

 private:
  [[noreturn]] void FailWriting(const std::string& what);

  std::string path_;
  std::string title_;
  StagedOutputs* staging_ = nullptr;
  // Destroyed painter first, then writer, then the device, then the file
  // (which, never committed, removes its temporary file).
  std::unique_ptr<AtomicOutputFile> ownFile_;
  OutputFile* output_ = nullptr;
  std::unique_ptr<OutputFileDevice> device_;
  std::unique_ptr<QPdfWriter> writer_;
  std::unique_ptr<QPainter> painter_;
  bool begun_ = false;
  bool pageOpen_ = false;
  int pages_ = 0;
  bool completed_ = false;
};

}  // namespace cw
