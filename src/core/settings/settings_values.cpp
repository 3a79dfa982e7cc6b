#include "settings/settings_values.h"

#include <algorithm>

#include "support/runtime_error.h"
#include "support/text.h"
#include "support/whole_numbers.h"

namespace cw {

std::int16_t ClampLastTab(std::string_view stored, std::int16_t tabCount) {
  std::int32_t tab = 1;
  try {
    tab = TextToInt32(stored);
  } catch (const RuntimeError&) {
    tab = 1;
  }
  return static_cast<std::int16_t>(std::clamp<std::int32_t>(tab, 1, std::max<std::int16_t>(tabCount, 1)));
}

bool SettingIsTrue(std::string_view stored) {
  const std::string lowered = LowerCase(Trim(stored));
  if (lowered == "true") return true;
  if (lowered == "false") return false;
  if (!IsNumericText(stored)) throw RuntimeError(err::kTypeMismatch);
  return TextToDouble(stored) != 0.0;
}

}  // namespace cw
