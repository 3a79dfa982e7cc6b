#pragma once
// Watches the logging program's window that holds the embedded report form:
// the display does not tell a window's children that it is gone, so the
// window is looked for every second, and Gone() is announced once when it is
// no longer there.

#include <QObject>
#include <QTimer>
#include <functional>

namespace cw {

class HostWindowWatch : public QObject {
  Q_OBJECT

 public:
  static constexpr int kIntervalMilliseconds = 1000;

  // exists: whether the window is still there.
  explicit HostWindowWatch(std::function<bool()> exists, QObject* parent = nullptr);

  // Looks once, as the timer does.
  void Look();

 signals:
  void Gone();

 private:
  std::function<bool()> exists_;
  QTimer timer_;
};

}  // namespace cw
