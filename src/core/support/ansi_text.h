#pragma once
// Every file the program reads or writes is Windows-1252 single-byte text. The
// core keeps bytes as they are; these two conversions are used only where text
// crosses into Unicode (Qt) and back.

#include <string>
#include <string_view>

namespace cw {

std::string Win1252ToUtf8(std::string_view bytes);
// Characters that Windows-1252 cannot hold become '?'; invalid UTF-8 bytes too.
std::string Utf8ToWin1252(std::string_view utf8);

}  // namespace cw
