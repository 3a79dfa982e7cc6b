#pragma once
// The per-user settings kept in INI files: one file per edition,
// $XDG_CONFIG_HOME/callwarden-reports/<edition>.ini (or ~/.config/... when
// XDG_CONFIG_HOME is unset or not absolute), or the single file named by the
// environment variable CW_SETTINGS for every edition.
//
// File format: sections as "[Reports]", one "Key=value" per line. Keys keep
// their exact spelling, blanks included ("Select Seconds=0"); names are
// matched ignoring ASCII case. A value is everything after the first "=" on
// its line, trimmed of blanks and tabs, Windows-1252 bytes taken and written
// verbatim; a UTF-8 byte-order mark at the start is skipped (and kept). Lines
// ending in CR LF or LF are read; a new
// file is written with LF, an existing one keeps the line end of its first
// line. Other sections, unknown keys and comments are kept on every save.

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>

#include "settings/ini_document.h"
#include "settings/settings_store.h"

namespace cw {

// The environment variables that decide where the settings live.
struct SettingsEnvironment {
  std::string cwSettings;     // CW_SETTINGS
  std::string xdgConfigHome;  // XDG_CONFIG_HOME
  std::string home;           // HOME
};

// Reads the three variables of this process (unset = empty).
SettingsEnvironment SettingsEnvironmentOfProcess();

// Either one file for every edition, or a folder holding <edition>.ini.
struct SettingsLocation {
  std::string file;
  std::string folder;
};

// CW_SETTINGS when not empty; else the folder "callwarden-reports" under
// XDG_CONFIG_HOME when it is an absolute path, else under HOME/.config.
// Both empty when none of the variables helps: reads then give the
// defaults and saves fail with error 76.
SettingsLocation ResolveSettingsLocation(const SettingsEnvironment& environment);

class IniSettingsStore : public SettingsStore {
 public:
  explicit IniSettingsStore(SettingsLocation location);

  // The file that holds an application's settings. Error 5 when the
  // application name cannot be a file name (empty, ".", "..", holds "/").
  std::string FileFor(std::string_view app) const;

  // A missing, unreadable or non-regular file reads as empty: every key gives
  // its default.
  std::string Get(std::string_view app, std::string_view section, std::string_view key,
                  std::string_view defaultValue) override;

  // Writes the whole file again through a temporary file and a rename, so a
  // failed save leaves the previous file whole. Creates the folder when
  // missing. Error 70 when a folder cannot be made for lack of permission, 75
  // for any other failure to write (the reason in the description), 75 too
  // when an existing file cannot be read (it is then left alone rather than
  // replaced by a file holding only this key), 76 when there is no location.
  void Save(std::string_view app, std::string_view section, std::string_view key,
            std::string_view value) override;

 private:
  // What identifies one state of a file on disk; a change reloads it.
  struct FileStamp {
    bool exists = false;
    std::uintmax_t size = 0;
    std::filesystem::file_time_type written{};
    friend bool operator==(const FileStamp&, const FileStamp&) = default;
  };
  struct CachedFile {
    bool loaded = false;
    bool readable = true;
    FileStamp stamp;
    IniDocument document;
  };

  static FileStamp StampOf(const std::string& file);
  // The cached file, read again when the file on disk has changed.
  CachedFile& Current(const std::string& file);

  SettingsLocation location_;
  std::map<std::string, CachedFile, std::less<>> cache_;
};

}  // namespace cw
