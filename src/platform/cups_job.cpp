#include "platform/cups_job.h"

#include <cups/cups.h>

#include <QByteArray>
#include <QPageLayout>
#include <QPrinter>

namespace cw {

namespace {

// CUPS options kept together with the texts they point into.
class JobOptions {
 public:
  JobOptions() = default;
  ~JobOptions() { cupsFreeOptions(count_, options_); }
  JobOptions(const JobOptions&) = delete;
  JobOptions& operator=(const JobOptions&) = delete;

  void Add(const QByteArray& name, const QByteArray& value) {
    count_ = cupsAddOption(name.constData(), value.constData(), count_, &options_);
  }
  int Count() const { return count_; }
  cups_option_t* Options() const { return options_; }

 private:
  int count_ = 0;
  cups_option_t* options_ = nullptr;
};

QByteArray Sides(const QPrinter& printer) {
  switch (printer.duplex()) {
    case QPrinter::DuplexLongSide: return "two-sided-long-edge";
    case QPrinter::DuplexShortSide: return "two-sided-short-edge";
    case QPrinter::DuplexAuto:
      return printer.pageLayout().orientation() == QPageLayout::Portrait ? "two-sided-long-edge"
                                                                          : "two-sided-short-edge";
    case QPrinter::DuplexNone: break;
  }
  return "one-sided";
}

}  // namespace

QString SubmitCupsJob(const QPrinter& printer, const QString& file, const QString& title) {
  JobOptions options;
  options.Add("media", printer.pageLayout().pageSize().key().toLocal8Bit());
  options.Add("sides", Sides(printer));
  if (printer.pageLayout().orientation() == QPageLayout::Landscape) options.Add("landscape", "");
  const int job = cupsPrintFile(printer.printerName().toLocal8Bit().constData(), file.toLocal8Bit().constData(),
                                title.toLocal8Bit().constData(), options.Count(), options.Options());
  if (job > 0) return {};
  return QString::fromLocal8Bit(cupsLastErrorString());
}

}  // namespace cw
