#include "cli/local_clock.h"

#include <chrono>
#include <ctime>

namespace cw::cli {

namespace {

std::tm LocalNow() {
  const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  std::tm local{};
  localtime_r(&now, &local);
  return local;
}

}  // namespace

CivilDate TodayFromClock() {
  const std::tm local = LocalNow();
  return CivilDate::FromYmd(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
}

TimeOfDay TimeFromClock() {
  const std::tm local = LocalNow();
  return local.tm_hour * 3600 + local.tm_min * 60 + local.tm_sec;
}

}  // namespace cw::cli
