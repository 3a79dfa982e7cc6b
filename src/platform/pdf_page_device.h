#pragma once
// A replayed document as a PDF file: vector text in the embedded Liberation
// fonts, at 1440 dots per inch so that every twip of the spool is one device
// unit. The file appears under its name only once the document is complete;
// until then it is written to a temporary file beside it.

#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <memory>
#include <string>

#include "platform/painter_page_device.h"

namespace cw {

class PdfPageDevice final : public PainterPageDevice {
 public:
  // path: the output file as the file system names it; title: the PDF's
  // document title (UTF-8), may be empty.
  explicit PdfPageDevice(std::string path, std::string title = {});
  ~PdfPageDevice() override;  // an unfinished document leaves no file behind

  // Errors 76 (folder missing), 75 (cannot create or complete the file, with
  // the reason) and 5 (page size out of range).
  void BeginDocument(const PageSetup& setup) override;
  void BeginPage() override;
  void EndPage() override;
  void EndDocument() override;

  // True once EndDocument has written the file under its name.
  bool Completed() const { return completed_; }

 private:
  std::string path_;
  std::string title_;
  // Destroyed painter first, then writer, then the file (which, never
  // committed, removes its temporary file).
  std::unique_ptr<QSaveFile> file_;
  std::unique_ptr<QPdfWriter> writer_;
  std::unique_ptr<QPainter> painter_;
  bool begun_ = false;
  bool pageOpen_ = false;
  int pages_ = 0;
  bool completed_ = false;
};

}  // namespace cw
