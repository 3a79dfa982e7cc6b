#include "reports/form_error_box.h"

#include "support/date_format.h"

namespace cw {

std::string ErrorBoxDateTime(CivilDate date, TimeOfDay time) {
  const int hour = time / 3600;
  const int minute = time / 60 % 60;
  const int second = time % 60;
  const int twelveHour = hour % 12 == 0 ? 12 : hour % 12;
  auto twoDigits = [](int value) { return std::string{static_cast<char>('0' + value / 10), static_cast<char>('0' + value % 10)}; };
  return FormatDate(date, "mm/dd/yyyy") + " " + std::to_string(twelveHour) + ":" + twoDigits(minute) + ":" +
         twoDigits(second) + (hour < 12 ? " AM" : " PM");
}

ErrorBoxOutput HostErrorBoxOutput(ReportHost& host, std::function<void()> onShown) {
  ErrorBoxOutput output;
  output.show = [&host, onShown = std::move(onShown)](std::string_view title, std::string_view text) {
    host.MessageBox(title, text, MessageIcon::kCritical, MessageButtons::kOk);
    if (onShown) onShown();
  };
  output.now = [&host] { return ErrorBoxDateTime(host.Today(), host.Now()); };
  return output;
}

}  // namespace cw
