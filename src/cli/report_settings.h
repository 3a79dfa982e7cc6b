#pragma once
// The settings as cwreport's reports see them. The report form saves the
// filters of an abandoned-calls request for the next time, which a headless
// request can do without: a save that fails (a read-only settings file, a
// folder in its place, no HOME) is one warning on standard error, and the
// request goes on as if it had been saved.

#include <ostream>
#include <string>

#include "settings/settings_store.h"
#include "support/runtime_error.h"

namespace cw::cli {

class ReportSettings final : public SettingsStore {
 public:
  // warned: the user has been told already that the file cannot be kept.
  ReportSettings(SettingsStore& store, std::ostream& err, bool warned = false)
      : store_(store), err_(err), warned_(warned) {}

  std::string Get(std::string_view app, std::string_view section, std::string_view key,
                  std::string_view defaultValue) override {
    return store_.Get(app, section, key, defaultValue);
  }

  void Save(std::string_view app, std::string_view section, std::string_view key,
            std::string_view value) override {
    try {
      store_.Save(app, section, key, value);
    } catch (const RuntimeError& error) {
      // The next save would fail the same way: one warning is enough.
      if (!warned_) {
        err_ << "cwreport: warning: the settings were not saved (error " << error.Number() << ": "
             << error.Description() << ")\n";
      }
      warned_ = true;
    }
  }

 private:
  SettingsStore& store_;
  std::ostream& err_;
  bool warned_;
};

}  // namespace cw::cli
