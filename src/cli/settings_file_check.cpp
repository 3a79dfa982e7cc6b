#include "cli/settings_file_check.h"

#include <filesystem>
#include <fstream>
#include <system_error>

#include "support/text.h"

namespace cw::cli {

namespace {

// Enough of a file to tell settings from something else.
constexpr std::size_t kSample = 1 << 16;

// Settings are lines of text with at least one "[section]"; a NUL byte or
// text without any section is something else.
bool LooksLikeSettings(const std::string& sample) {
  if (sample.find('\0') != std::string::npos) return false;
  std::string_view rest = sample;
  if (rest.starts_with("\xEF\xBB\xBF")) rest.remove_prefix(3);
  bool blank = true;
  while (!rest.empty()) {
    const std::size_t end = rest.find('\n');
    const std::string_view line = Trim(rest.substr(0, end));
    rest = end == std::string_view::npos ? std::string_view{} : rest.substr(end + 1);
    if (line.empty() || line == "\r") continue;
    blank = false;
    if (line.starts_with('[')) return true;
  }
  return blank;
}

}  // namespace

std::optional<std::string> SettingsFileProblem(const std::string& file) {
  if (file.empty()) return std::nullopt;
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(file, error);
  if (error || !std::filesystem::exists(status)) return std::nullopt;
  const std::string start = "cwreport: the settings file \"" + file + "\" ";
  if (std::filesystem::is_directory(status)) {
    return start + "is a folder: no stored setting is read or kept (give a file with --settings or CW_SETTINGS)";
  }
  if (!std::filesystem::is_regular_file(status)) {
    return start + "is not a regular file: no stored setting is read or kept";
  }
  std::ifstream in(file, std::ios::binary);
  std::string sample(kSample, '\0');
  in.read(sample.data(), static_cast<std::streamsize>(sample.size()));
  sample.resize(static_cast<std::size_t>(in.gcount()));
  if (!in && !in.eof()) return start + "cannot be read: no stored setting is used";
  if (!LooksLikeSettings(sample)) {
    return start + "does not hold settings (no \"[Reports]\" section): its values are not used";
  }
  return std::nullopt;
}

}  // namespace cw::cli
