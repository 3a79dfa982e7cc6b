#include "reports/busy_log.h"

#include <optional>

#include "support/file_helpers.h"
#include "support/runtime_error.h"
#include "support/text.h"
#include "support/whole_numbers.h"

namespace cw {

BusyLine SplitBusyLine(std::string_view line) {
  std::string_view fields[4];
  std::size_t start = 0;
  for (std::string_view& field : fields) {
    const std::size_t comma = line.find(',', start);
    if (comma == std::string_view::npos) throw RuntimeError(err::kSubscript);
    field = Trim(line.substr(start, comma - start));
    start = comma + 1;
  }
  return {fields[0], fields[1], fields[2], fields[3], Trim(line.substr(start))};
}

std::int32_t BusySeconds(std::string_view field) {
  // The whole-number conversion would round a fraction; a length with one is
  // not what the logger writes, so it is refused before that.
  if (field.find('.') != std::string_view::npos) throw RuntimeError(err::kTypeMismatch);
  return TextToInt32(field);
}

LogBuffer LoadBusyLog(std::string_view pathFolder) {
  // An empty "Path" must not send the look-up to the current folder.
  if (pathFolder.empty()) return LogBuffer{};
  const std::optional<std::string> file = FindFileNoCase(pathFolder, kBusyLogName);
  if (!file) return LogBuffer{};
  return LogBuffer::Load(*file);
}

}  // namespace cw
