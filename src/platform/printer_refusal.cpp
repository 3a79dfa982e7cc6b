#include "platform/printer_refusal.h"

#include <cups/cups.h>

#include <cstring>
#include <memory>

namespace cw {

QString PrinterRefusal(const QString& name) {
  const QByteArray queue = name.toLocal8Bit();
  const std::unique_ptr<cups_dest_t, void (*)(cups_dest_t*)> dest(
      cupsGetNamedDest(CUPS_HTTP_DEFAULT, queue.constData(), nullptr), [](cups_dest_t* d) { cupsFreeDests(1, d); });
  if (!dest) return {};
  const char* accepting = cupsGetOption("printer-is-accepting-jobs", dest->num_options, dest->options);
  if (accepting == nullptr || std::strcmp(accepting, "false") != 0) return {};
  QString refusal = QStringLiteral("it does not accept jobs");
  const char* message = cupsGetOption("printer-state-message", dest->num_options, dest->options);
  if (message != nullptr && *message != '\0') refusal += QStringLiteral(" (%1)").arg(QString::fromLocal8Bit(message));
  return refusal;
}

}  // namespace cw
