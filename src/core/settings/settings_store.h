#pragma once
// The per-user settings: text values kept by (application, section, key). The
// application name is the edition text; the section is always "Reports".

#include <functional>
#include <string>
#include <string_view>

namespace cw {

class SettingsStore {
 public:
  virtual ~SettingsStore() = default;

  // The stored value, or defaultValue when the key (or the whole store) is
  // missing. Throws RuntimeError only for a request that cannot name a value
  // (an empty or malformed application, section or key).
  virtual std::string Get(std::string_view app, std::string_view section, std::string_view key,
                          std::string_view defaultValue) = 0;

  // Stores the value; throws RuntimeError when it cannot be kept.
  virtual void Save(std::string_view app, std::string_view section, std::string_view key,
                    std::string_view value) = 0;
};

// Where GetOptions and SaveOptions show their error box: `show` gets the title
// ("Error") and the complete text; `now` gives the date and time the box lists.
struct ErrorBoxOutput {
  std::function<void(std::string_view title, std::string_view text)> show;
  std::function<std::string()> now;
};

// The report form's two settings procedures. A failure of the store is shown
// as the standard error box ("Module Name: fReport", "Procedure Name:
// GetOptions." or "SaveOptions.") and ends the call: GetOptions then returns
// the empty text (not the default), SaveOptions returns false.
std::string GetOptions(SettingsStore& store, std::string_view app, std::string_view section,
                       std::string_view key, std::string_view defaultValue,
                       const ErrorBoxOutput& errors);
bool SaveOptions(SettingsStore& store, std::string_view app, std::string_view section,
                 std::string_view key, std::string_view value, const ErrorBoxOutput& errors);

}  // namespace cw
