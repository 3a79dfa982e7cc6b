#pragma once
// The line filter: the user lists the telephone lines a report is limited to,
// as "1,3-5,7", and every range is written out as single line numbers.

#include <string>
#include <string_view>

namespace cw {

inline constexpr std::string_view kLineFilterTitle = "Line Filter";
inline constexpr std::string_view kLineFilterDefault = "1,11-16,18-20,22";

// The text of the input box that asks for the list, lines broken with CR LF.
std::string LineFilterPrompt();

// Writes out every range of the answer: "1,3-5,7" gives "1,3,4,5,7", "2-4"
// gives "2,3,4"; a range whose low end is above its high end ("5-3") gives no
// numbers; a trailing "," is dropped. An empty answer (Cancel) gives an empty
// text, meaning all lines. Each end of a range is a 16-bit whole number:
// error 13 when it is not a number, 6 when it is out of range.
std::string ExpandLineFilter(std::string_view answer);

}  // namespace cw
