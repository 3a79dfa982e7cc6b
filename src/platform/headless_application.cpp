#include "platform/headless_application.h"

#include <QApplication>
#include <QByteArray>
#include <QString>

namespace cw {
namespace {

QtMessageHandler defaultHandler = nullptr;
bool handlerInstalled = false;

// A headless run has no session, so Qt's note that the runtime folder is
// not set would read as a message of the report; everything else passes.
void QuietHandler(QtMsgType type, const QMessageLogContext& context, const QString& message) {
  if (type == QtWarningMsg && message.startsWith(QLatin1String("QStandardPaths: XDG_RUNTIME_DIR not set"))) return;
  if (defaultHandler != nullptr) defaultHandler(type, context, message);
}

}  // namespace

std::unique_ptr<QGuiApplication> MakeHeadlessApplication(HeadlessKind kind) {
  if (QGuiApplication::instance() != nullptr) return nullptr;
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  if (!handlerInstalled) {
    defaultHandler = qInstallMessageHandler(QuietHandler);
    handlerInstalled = true;
  }
  // Qt keeps references to the argument count and vector for the life of
  // the application.
  static int argc = 1;
  static char name[] = "cwreport";
  static char* argv[] = {name, nullptr};
  if (kind == HeadlessKind::kWidgets) return std::make_unique<QApplication>(argc, argv);
  return std::make_unique<QGuiApplication>(argc, argv);
}

}  // namespace cw
