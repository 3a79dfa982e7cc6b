#pragma once
// A replayed document as one PNG image per page in a folder, named
// page-0001.png, page-0002.png, ... at a chosen resolution. The images are
// written under temporary names and take their names together when the
// document is complete (or, staged, when the request's outputs are
// published); a document that does not finish removes them, and the folder
// when it was made for them, so a folder never shows part of a document as if
// it were all of it.

#include <QImage>
#include <QPainter>
#include <QString>
#include <memory>
#include <string>

#include "platform/painter_page_device.h"
#include "printer/staged_outputs.h"

namespace cw {

class PngPageDevice final : public PainterPageDevice {
 public:
  static constexpr int kMinDpi = 10;
  static constexpr int kMaxDpi = 600;

  // folder: created when missing. dpi: kMinDpi to kMaxDpi, else error 5.
  // staging: when given, the pages take their names when it is published,
  // not at EndDocument.
  PngPageDevice(std::string folder, int dpi, StagedOutputs* staging = nullptr);
  ~PngPageDevice() override;

  // Errors 75/76 (folder or image cannot be written, with the reason) and 5
  // (page size out of range).
  void BeginDocument(const PageSetup& setup) override;
  void BeginPage() override;
  void EndPage() override;
  // Also removes (at publishing) page images left in the folder by an
  // earlier, longer document, which would otherwise read as further pages of
  // this one.
  void EndDocument() override;
  bool Image(const std::string& file, double x, double y, double width, double height) override;

  // "page-0001.png" for page 1.
  static std::string PageFileName(int page);
  int PagesWritten() const { return pages_; }
  // True once EndDocument has finished the document.
  bool Completed() const { return finished_; }

 private:
  QString PagePath(int page) const;

  std::string folder_;
  int dpi_;
  QSize pixels_;
  QImage image_;
  std::unique_ptr<QPainter> painter_;
  StagedOutputs ownStaging_;
  StagedOutputs* staging_;
  int pages_ = 0;
  bool begun_ = false;
  bool pageOpen_ = false;
  bool pictureOnPage_ = false;
  bool finished_ = false;
};

}  // namespace cw
