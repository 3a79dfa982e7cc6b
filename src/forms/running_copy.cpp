#include "forms/running_copy.h"

#include <QLocalSocket>
#include <utility>

namespace cw {

namespace {

const QByteArray kShowRequest = QByteArrayLiteral("show\n");
const QByteArray kShown = QByteArrayLiteral("shown\n");

}  // namespace

RunningCopyBeacon::RunningCopyBeacon(QString name, QObject* parent) : QObject(parent), name_(std::move(name)) {
  connect(&server_, &QLocalServer::newConnection, this, &RunningCopyBeacon::Answer);
}

bool RunningCopyBeacon::Listen() {
  QLocalServer::removeServer(name_);
  server_.setSocketOptions(QLocalServer::UserAccessOption);
  return server_.listen(name_);
}

void RunningCopyBeacon::Answer() {
  while (QLocalSocket* caller = server_.nextPendingConnection()) {
    connect(caller, &QLocalSocket::disconnected, caller, &QObject::deleteLater);
    connect(caller, &QLocalSocket::readyRead, this, [this, caller] {
      if (!caller->canReadLine()) return;
      if (caller->readLine() == kShowRequest) {
        emit ShowAsked();
        caller->write(kShown);
        caller->flush();
      }
      caller->disconnectFromServer();
    });
  }
}

bool AskRunningCopyToShow(const QString& name, int waitMilliseconds) {
  QLocalSocket socket;
  socket.connectToServer(name);
  if (!socket.waitForConnected(waitMilliseconds)) return false;
  socket.write(kShowRequest);
  if (!socket.waitForBytesWritten(waitMilliseconds)) return false;
  while (!socket.canReadLine()) {
    if (!socket.waitForReadyRead(waitMilliseconds)) return false;
  }
  return socket.readLine() == kShown;
}

}  // namespace cw
