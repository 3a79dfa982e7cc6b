#pragma once
// Which controls of the report form each tab shows, and what the three
// options and the chart box are called there. The form keeps one set of
// controls for all nine tabs and shows or hides them as the tab changes.

#include <cstdint>
#include <string_view>

namespace cw {

struct ReportTabLayout {
  // Captions of Option1..Option3; an empty caption hides the option.
  std::string_view option1;
  std::string_view option2;
  std::string_view option3;
  // The three options choose the direction of the calls (rather than the
  // variant of the all-lines-busy report, or nothing at all).
  bool directionOptions = true;
  // The chart box and its caption; on the all-lines-busy tab the chosen
  // variant decides whether it is shown.
  bool chart = false;
  std::string_view chartCaption;
  // The name/number box with its label and the partial box.
  bool search = false;
  std::string_view searchLabel;
  bool lines = false;      // the line list and the line filter
  bool abandoned = false;  // the abandoned-call box (whose in/out options then choose the direction)
  bool callBackWindow = false;  // the call-back window in days
};

// The layout of a report kind (1..9); kinds outside the tabs get the layout
// of the first tab.
ReportTabLayout LayoutOfTab(std::int16_t reportKind);

// The caption of the line list's entry that lists every line.
inline constexpr std::string_view kAllLinesEntry = "All Lines (sorted)";

}  // namespace cw
