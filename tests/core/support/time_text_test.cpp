#include "support/time_text.h"

#include <gtest/gtest.h>

#include "core/support/error_number.h"

namespace cw {
namespace {

using test::ErrorNumberOf;

constexpr TimeOfDay At(int hour, int minute, int second = 0) { return hour * 3600 + minute * 60 + second; }

TEST(TimeTextTest, AcceptsEveryWrittenForm) {
  struct Case {
    const char* text;
    TimeOfDay time;
  };
  const Case cases[] = {
      {"9:05", At(9, 5)},          {"09:05", At(9, 5)},         {"9:05:30", At(9, 5, 30)},
      {"09:05:30", At(9, 5, 30)},  {"0:00", 0},                 {"23:59:59", At(23, 59, 59)},
      {"9:05AM", At(9, 5)},        {"9:05 am", At(9, 5)},       {"9:05 PM", At(21, 5)},
      {"9:05pm", At(21, 5)},       {"9:05 A", At(9, 5)},        {"9:05p", At(21, 5)},
      {"9:05  Pm", At(21, 5)},     {"09:05:30 aM", At(9, 5, 30)}, {"9:05:30PM", At(21, 5, 30)},
      {"12:00 AM", 0},             {"12:00AM", 0},              {"12:30:15 am", At(0, 30, 15)},
      {"12:00PM", At(12, 0)},      {"12:59 p", At(12, 59)},     {"11:59:59 PM", At(23, 59, 59)},
      {"  7:15  ", At(7, 15)},     {" 7:15 AM ", At(7, 15)},
  };
  for (const Case& c : cases) EXPECT_EQ(ParseTimeText(c.text), c.time) << '"' << c.text << '"';
}

TEST(TimeTextTest, RejectsEverythingElseAsTypeMismatch) {
  for (const char* text :
       {"", "   ", "9", "9:", "9:5", "9:5 AM", ":05", "9 :05", "9: 05", "9.05", "109:05", "9:055",
        "9:05:3", "9:05:", "9:05:30:00", "-1:00", "+9:05", "24:00", "9:60", "9:05:60", "13:00 PM",
        "13:00AM", "9:05 M", "9:05 XM", "9:05 AMX", "9:05 AM extra", "9:05 P.M.", "\t9:05",
        "nine:05"}) {
    EXPECT_EQ(ErrorNumberOf([&] { ParseTimeText(text); }), 13) << '"' << text << '"';
  }
}

}  // namespace
}  // namespace cw
