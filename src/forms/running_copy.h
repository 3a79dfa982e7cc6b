#pragma once
// One copy of the desktop program runs at a time. The running copy listens on
// a local socket beside its lock file; a second start asks it to bring its
// form to the front and then ends, so that starting the program again always
// shows the user a window.
//
//   RunningCopyBeacon beacon(name);
//   beacon.Listen();
//   connect(&beacon, &RunningCopyBeacon::ShowAsked, ...);   // in the running copy
//   if (!AskRunningCopyToShow(name)) ...                   // in a second start

#include <QLocalServer>
#include <QObject>
#include <QString>

namespace cw {

class RunningCopyBeacon : public QObject {
  Q_OBJECT

 public:
  explicit RunningCopyBeacon(QString name, QObject* parent = nullptr);

  // Takes the name (a socket left by a copy that died is removed: the caller
  // holds the lock). False when it cannot be taken.
  bool Listen();

 signals:
  // A second start asked for the form.
  void ShowAsked();

 private:
  void Answer();

  QString name_;
  QLocalServer server_;
};

// Asks the running copy to show its form; false when no copy answered within
// waitMilliseconds (one that hangs, or one too old to listen).
bool AskRunningCopyToShow(const QString& name, int waitMilliseconds = 3000);

}  // namespace cw
