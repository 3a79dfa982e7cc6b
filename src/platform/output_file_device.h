#pragma once
// A write-only QIODevice over an OutputFile, so that Qt writers (the PDF
// writer, the image writer) put their bytes through the program's one file
// writer. A failed write is kept and given back by TakeError, since Qt only
// sees "-1".

#include <QIODevice>
#include <exception>

#include "printer/output_file.h"

namespace cw {

class OutputFileDevice final : public QIODevice {
 public:
  explicit OutputFileDevice(OutputFile& output) : output_(output) { open(QIODevice::WriteOnly); }

  // Rethrows the first error of a write, if there was one.
  void RethrowError() const {
    if (error_) std::rethrow_exception(error_);
  }

 protected:
  qint64 readData(char*, qint64) override { return -1; }
  qint64 writeData(const char* data, qint64 size) override {
    if (error_) return -1;
    try {
      output_.Write(std::string_view(data, static_cast<std::size_t>(size)));
    } catch (...) {
      error_ = std::current_exception();
      setErrorString(QStringLiteral("the file could not be written"));
      return -1;
    }
    return size;
  }

 private:
  OutputFile& output_;
  std::exception_ptr error_;
};

}  // namespace cw
