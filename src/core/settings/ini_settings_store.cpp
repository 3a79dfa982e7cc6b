#include "settings/ini_settings_store.h"

#include <cstdlib>
#include <system_error>

#include "support/file_helpers.h"
#include "support/runtime_error.h"

namespace cw {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kSettingsFolderName = "callwarden-reports";

std::string EnvironmentValue(const char* name) {
  const char* value = std::getenv(name);
  return value ? std::string(value) : std::string();
}

}  // namespace

SettingsEnvironment SettingsEnvironmentOfProcess() {
  return SettingsEnvironment{EnvironmentValue("CW_SETTINGS"), EnvironmentValue("XDG_CONFIG_HOME"),
                             EnvironmentValue("HOME")};
}

SettingsLocation ResolveSettingsLocation(const SettingsEnvironment& environment) {
  if (!environment.cwSettings.empty()) return SettingsLocation{environment.cwSettings, {}};
  // A relative XDG_CONFIG_HOME is to be ignored, as the base-directory rules say.
  if (!environment.xdgConfigHome.empty() && environment.xdgConfigHome.front() == '/') {
    return SettingsLocation{{}, JoinPath(environment.xdgConfigHome, kSettingsFolderName)};
  }
  if (!environment.home.empty()) {
    return SettingsLocation{{}, JoinPath(JoinPath(environment.home, ".config"), kSettingsFolderName)};
  }
  return SettingsLocation{};
}

IniSettingsStore::IniSettingsStore(SettingsLocation location) : location_(std::move(location)) {}

std::string IniSettingsStore::FileFor(std::string_view app) const {
  if (app.empty() || app == "." || app == ".." || app.find('/') != std::string_view::npos ||
      app.find('\0') != std::string_view::npos) {
    throw RuntimeError(err::kInvalidCall, "Invalid procedure call or argument: \"" + std::string(app) +
                                              "\" cannot name a settings file");
  }
  if (!location_.file.empty()) return location_.file;
  if (location_.folder.empty()) return {};
  return JoinPath(location_.folder, std::string(app) + ".ini");
}

IniSettingsStore::FileStamp IniSettingsStore::StampOf(const std::string& file) {
  std::error_code error;
  const fs::file_status status = fs::status(file, error);
  if (error || !fs::is_regular_file(status)) return {};
  FileStamp stamp;
  stamp.exists = true;
  stamp.size = fs::file_size(file, error);
  if (error) stamp.size = 0;
  stamp.written = fs::last_write_time(file, error);
  return stamp;
}

IniSettingsStore::CachedFile& IniSettingsStore::Current(const std::string& file) {
  CachedFile& cached = cache_[file];
  const FileStamp stamp = StampOf(file);
  if (cached.loaded && cached.stamp == stamp) return cached;
  cached = CachedFile{};
  cached.loaded = true;
  cached.stamp = stamp;
  if (stamp.exists) {
    try {
      cached.document = IniDocument::Parse(ReadWholeFile(file));
    } catch (const RuntimeError&) {
      cached.readable = false;
    }
  } else {
    // Something that is there but is no normal file (a folder, say) must not
    // be replaced by a save either.
    std::error_code error;
    const fs::file_status entry = fs::symlink_status(file, error);
    cached.readable = error || !fs::exists(entry) || fs::is_symlink(entry);
  }
  return cached;
}

std::string IniSettingsStore::Get(std::string_view app, std::string_view section, std::string_view key,
                                  std::string_view defaultValue) {
  const std::string file = FileFor(app);
  if (file.empty()) return std::string(defaultValue);
  const CachedFile& cached = Current(file);
  std::optional<std::string_view> value = cached.document.Find(section, key);
  return std::string(value ? *value : defaultValue);
}

void IniSettingsStore::Save(std::string_view app, std::string_view section, std::string_view key,
                            std::string_view value) {
  const std::string file = FileFor(app);
  if (file.empty()) {
    throw RuntimeError(err::kPathNotFound,
                       "Path not found: no settings folder (set CW_SETTINGS, XDG_CONFIG_HOME or HOME)");
  }
  CachedFile& cached = Current(file);
  if (!cached.readable) {
    throw RuntimeError(err::kPathFileAccess,
                       "Path/File access error: cannot read " + file + "; it is left as it is");
  }
  IniDocument changed = cached.document;
  changed.Set(section, key, value);

  const fs::path parent = fs::path(file).parent_path();
  if (!parent.empty()) {
    std::error_code error;
    fs::create_directories(parent, error);
    if (error) {
      const int number = error == std::errc::permission_denied ? err::kPermissionDenied : err::kPathFileAccess;
      throw RuntimeError(number, std::string(StandardErrorText(number)) + ": cannot make the folder " +
                                     parent.string() + ": " + error.message());
    }
  }
  // A settings file that is a link (kept with the user's other dotfiles) is
  // written where it points, so that the link stays.
  WriteFileAtomically(file, changed.Text());
  cached.document = std::move(changed);
  cached.stamp = StampOf(file);
}

}  // namespace cw
