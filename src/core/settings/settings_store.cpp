#include "settings/settings_store.h"

#include "support/runtime_error.h"

namespace cw {

namespace {
void ShowStoreError(const RuntimeError& error, std::string_view procedure,
                    const ErrorBoxOutput& errors) {
  const std::string now = errors.now ? errors.now() : std::string();
  const std::string text =
      ErrorBoxText(error, ErrorPlace{"Form", "fReport", procedure}, ErrorBoxForm::kModern, now);
  if (errors.show) errors.show(kErrorBoxTitle, text);
}
}  // namespace

std::string GetOptions(SettingsStore& store, std::string_view app, std::string_view section,
                       std::string_view key, std::string_view defaultValue,
                       const ErrorBoxOutput& errors) {
  try {
    return store.Get(app, section, key, defaultValue);
  } catch (const RuntimeError& error) {
    ShowStoreError(error, "GetOptions", errors);
    return {};
  }
}

bool SaveOptions(SettingsStore& store, std::string_view app, std::string_view section,
                 std::string_view key, std::string_view value, const ErrorBoxOutput& errors) {
  try {
    store.Save(app, section, key, value);
    return true;
  } catch (const RuntimeError& error) {
    ShowStoreError(error, "SaveOptions", errors);
    return false;
  }
}

}  // namespace cw
