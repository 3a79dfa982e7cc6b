#pragma once
// Settings kept in memory, for tests; can be told to fail like a vanished disk.

#include <map>
#include <string>
#include <string_view>
#include <tuple>

#include "settings/settings_store.h"
#include "support/runtime_error.h"

namespace cw::testing {

class MemorySettingsStore : public SettingsStore {
 public:
  std::string Get(std::string_view app, std::string_view section, std::string_view key,
                  std::string_view defaultValue) override {
    if (failing) throw RuntimeError(err::kPathFileAccess, "Path/File access error: disk gone");
    auto found = values.find({std::string(app), std::string(section), std::string(key)});
    return found == values.end() ? std::string(defaultValue) : found->second;
  }
  void Save(std::string_view app, std::string_view section, std::string_view key,
            std::string_view value) override {
    if (failing) throw RuntimeError(err::kPermissionDenied);
    values[{std::string(app), std::string(section), std::string(key)}] = value;
  }

  // The value saved under section "Reports" of app, or "<unset>".
  std::string Reports(std::string_view app, std::string_view key) const {
    auto found = values.find({std::string(app), "Reports", std::string(key)});
    return found == values.end() ? "<unset>" : found->second;
  }

  std::map<std::tuple<std::string, std::string, std::string>, std::string> values;
  bool failing = false;
};

}  // namespace cw::testing
