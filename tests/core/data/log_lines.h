#pragma once
// Test helpers: call-log lines in the logging program's fixed columns.

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace cw::testing {

inline std::string Padded(std::string_view text, std::size_t width) {
  std::string field(text.substr(0, width));
  field.resize(width, ' ');
  return field;
}

// One call as the logging program writes it; every field has a plain default
// so that a test names only the fields it is about:
//   Call().Date("01/05/2024").Name("A").Text()
class Call {
 public:
  Call& Date(std::string v) { date_ = std::move(v); return *this; }
  Call& Time(std::string v) { time_ = std::move(v); return *this; }
  Call& Number(std::string v) { number_ = std::move(v); return *this; }
  Call& Name(std::string v) { name_ = std::move(v); return *this; }
  Call& Line(std::string v) { line_ = std::move(v); return *this; }
  Call& Direction(std::string v) { direction_ = std::move(v); return *this; }
  Call& Duration(std::string v) { duration_ = std::move(v); return *this; }
  Call& Answered(std::string v) { answered_ = std::move(v); return *this; }
  Call& Rings(std::string v) { rings_ = std::move(v); return *this; }
  Call& Dtmf(std::string v) { dtmf_ = std::move(v); return *this; }

  // The line without its line end.
  std::string Text() const {
    std::string text = Padded(date_, 10) + ' ' + Padded(time_, 7) + ' ' + Padded(number_, 18) +
                       ' ' + Padded(name_, 40) + ' ' + Padded(line_, 3) + ' ' +
                       Padded(direction_, 3) + ' ' + Padded(duration_, 7) + ' ' +
                       Padded(answered_, 3) + ' ' + Padded(rings_, 3);
    if (!dtmf_.empty()) text += ' ' + dtmf_;
    return text;
  }

 private:
  std::string date_ = "01/15/2024";
  std::string time_ = "9:05AM";
  std::string number_ = "(555) 123-4567";
  std::string name_ = "SMITH JOHN";
  std::string line_ = "1";
  std::string direction_ = "In";
  std::string duration_ = "0:02:03";
  std::string answered_ = "Yes";
  std::string rings_ = "2";
  std::string dtmf_;
};

// A call log of these calls, each line ended by CR LF.
inline std::string LogOf(const std::vector<Call>& calls) {
  std::string text;
  for (const Call& call : calls) text += call.Text() + "\r\n";
  return text;
}

}  // namespace cw::testing
