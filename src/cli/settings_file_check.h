#pragma once
// A settings file that cannot be settings (a folder, binary garbage) reads
// as if empty, so every stored value silently falls back to its default.
// cwreport says so on standard error instead.

#include <optional>
#include <string>

namespace cw::cli {

// The warning for the settings file `file` (empty or missing: none).
std::optional<std::string> SettingsFileProblem(const std::string& file);

}  // namespace cw::cli
