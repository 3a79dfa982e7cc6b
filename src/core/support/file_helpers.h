#pragma once
// File helpers shared by the engine and the reports.

#include <optional>
#include <string>
#include <string_view>

namespace cw {

// A new, empty, owner-only (0600) file in the temporary folder ($TMPDIR or
// /tmp) whose name starts with the first three characters of prefix; its full
// path, or the empty string when none could be made. Never throws.
std::string GetTempFile(std::string_view prefix);

// True when a normal file of that name exists. Directories, dot-files and
// other non-regular entries do not count; '*' and '?' in the last part of the
// path match any normal file. Empty path: false.
bool FileExists(std::string_view path);

// True when text is not empty and holds only the digits 0 to 9.
bool IsAllDigits(std::string_view text);

// Joins a folder and a name with the platform separator; a name written with
// a leading "\" (as the settings hold "\Callwarden.ini") loses it.
std::string JoinPath(std::string_view folder, std::string_view name);

// The entry of folder whose name equals name ignoring ASCII case (the exact
// name wins when both exist), as the full path JoinPath(folder, entry name);
// nullopt when there is none. A leading "\" on name is dropped as JoinPath does.
std::optional<std::string> FindFileNoCase(std::string_view folder, std::string_view name);

// Reads a whole file into a string in one read; error 53 when it does not
// exist, 75 when it cannot be read.
std::string ReadWholeFile(const std::string& path);

// Writes a file atomically: a temporary file beside it, flushed, then renamed
// over the target. Error 75 (with the reason) when any step fails; nothing is
// left behind under the target name in that case.
void WriteFileAtomically(const std::string& path, std::string_view bytes);

}  // namespace cw
