#pragma once
// Conversions of stored setting texts into the values the form uses.

#include <cstdint>
#include <string_view>

namespace cw {

// The tab to open from a stored "LastTab": "0" or less, or a text that is not
// a whole number (a hand-edited or damaged file), opens the first tab; a
// number beyond the last tab opens the last one.
std::int16_t ClampLastTab(std::string_view stored, std::int16_t tabCount);

// A stored flag as the runtime converts text to a boolean: "True"/"False" in
// any case, or a number that is true when it is not zero ("1", "-1"); blanks
// around it are ignored. Error 13 for any other text, the empty text included.
bool SettingIsTrue(std::string_view stored);

}  // namespace cw
