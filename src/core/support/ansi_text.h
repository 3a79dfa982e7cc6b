#pragma once
// Every file the program reads or writes is Windows-1252 single-byte text. The
// core keeps bytes as they are; these two conversions are used only where text
// crosses into Unicode (Qt) and back.

#include <optional>
#include <string>
#include <string_view>

namespace cw {

std::string Win1252ToUtf8(std::string_view bytes);
// Characters that Windows-1252 cannot hold become '?'; invalid UTF-8 bytes too.
std::string Utf8ToWin1252(std::string_view utf8);

// True when the bytes are well-formed UTF-8 (no overlong forms, surrogates or
// code points past U+10FFFF).
bool IsValidUtf8(std::string_view bytes);

// The Windows-1252 bytes of well-formed UTF-8 text in which every character
// has a byte; nullopt otherwise, with the first character that has none (as
// UTF-8) in *unmappable when it is given. Text that is not UTF-8 at all leaves
// *unmappable empty.
std::optional<std::string> Utf8ToWin1252Exactly(std::string_view utf8, std::string* unmappable = nullptr);

}  // namespace cw
