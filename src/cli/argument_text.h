#pragma once
// Text typed on the command line, turned into the Windows-1252 bytes the call
// log and the reports hold. The shell hands over the locale's encoding: UTF-8
// in practice, or bytes of some other code set.

#include <string>
#include <string_view>

namespace cw::cli {

// The text of option `option` in Windows-1252. Plain ASCII is kept as it is;
// well-formed UTF-8 is converted (also in the C locale, whose terminals pass
// UTF-8 through); other bytes are taken as Windows-1252 already, unless the
// locale names another code set, which is converted from. Throws UsageError
// naming the option and the character when Windows-1252 has no byte for it.
std::string ArgumentToWin1252(std::string_view option, std::string_view text);

}  // namespace cw::cli
