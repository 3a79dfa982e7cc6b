#pragma once
// A replayed document as one PNG image per page in a folder, named
// page-0001.png, page-0002.png, ... at a chosen resolution. Each image is
// written to a temporary name and renamed when complete; a document that does
// not finish removes the pages it wrote, so a folder never shows part of a
// document as if it were all of it.

#include <QImage>
#include <QPainter>
#include <QString>
#include <memory>
#include <string>
#include <vector>

#include "platform/painter_page_device.h"

namespace cw {

class PngPageDevice final : public PainterPageDevice {
 public:
  static constexpr int kMinDpi = 10;
  static constexpr int kMaxDpi = 600;

  // folder: created when missing. dpi: kMinDpi to kMaxDpi, else error 5.
  PngPageDevice(std::string folder, int dpi);
  ~PngPageDevice() override;

  // Errors 75/76 (folder or image cannot be written, with the reason) and 5
  // (page size out of range).
  void BeginDocument(const PageSetup& setup) override;
  void BeginPage() override;
  void EndPage() override;
  // Also removes page images left in the folder by an earlier, longer
  // document, which would otherwise read as further pages of this one.
  void EndDocument() override;
  bool Image(const std::string& file, double x, double y, double width, double height) override;

  // "page-0001.png" for page 1.
  static std::string PageFileName(int page);
  int PagesWritten() const { return static_cast<int>(written_.size()); }
  // True once EndDocument has finished the document.
  bool Completed() const { return finished_; }

 private:
  QString PagePath(int page) const;

  std::string folder_;
  int dpi_;
  QSize pixels_;
  QImage image_;
  std::unique_ptr<QPainter> painter_;
  std::vector<QString> written_;
  bool begun_ = false;
  bool pageOpen_ = false;
  bool pictureOnPage_ = false;
  bool finished_ = false;
};

}  // namespace cw
