#include "settings/edition.h"

#include <string>

#include "support/runtime_error.h"

namespace cw {

std::string_view LoggingIniName(std::string_view edition) {
  if (edition == kEditionCallwarden) return "Callwarden.ini";
  if (edition == kEditionRingtally) return "Ringtally.ini";
  throw RuntimeError(err::kInvalidCall, "Invalid procedure call or argument: unknown edition \"" +
                                            std::string(edition) + "\"");
}

}  // namespace cw
