#include "forms/host_window_watch.h"

#include <utility>

namespace cw {

HostWindowWatch::HostWindowWatch(std::function<bool()> exists, QObject* parent)
    : QObject(parent), exists_(std::move(exists)) {
  connect(&timer_, &QTimer::timeout, this, &HostWindowWatch::Look);
  timer_.start(kIntervalMilliseconds);
}

void HostWindowWatch::Look() {
  if (!timer_.isActive() || exists_()) return;
  timer_.stop();
  emit Gone();
}

}  // namespace cw
