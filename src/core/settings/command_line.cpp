#include "settings/command_line.h"

#include <vector>

#include "settings/edition.h"
#include "support/text.h"
#include "support/whole_numbers.h"

namespace cw {

namespace {

std::vector<std::string_view> SplitAtCommas(std::string_view text) {
  std::vector<std::string_view> parts;
  std::size_t start = 0;
  while (true) {
    const std::size_t comma = text.find(',', start);
    if (comma == std::string_view::npos) {
      parts.push_back(text.substr(start));
      return parts;
    }
    parts.push_back(text.substr(start, comma - start));
    start = comma + 1;
  }
}

bool Contains(std::string_view text, std::string_view part) { return text.find(part) != std::string_view::npos; }

std::string WithoutAll(std::string_view text, std::string_view part) {
  std::string rest;
  std::size_t start = 0;
  for (std::size_t at = text.find(part); at != std::string_view::npos; at = text.find(part, start)) {
    rest.append(text.substr(start, at - start));
    start = at + part.size();
  }
  rest.append(text.substr(start));
  return rest;
}

}  // namespace

CommandLineChoice ResolveCommandLine(std::string_view commandLine) {
  CommandLineChoice choice;
  const std::string_view line = Trim(commandLine);
  if (line.empty()) {
    choice.edition = kEditionRingtally;
    return choice;
  }
  const std::vector<std::string_view> parts = SplitAtCommas(line);
  const std::string_view first = parts.front();
  // The logging program writes "h=" in lower case; the tests are exact, as
  // the words that name the edition are.
  if (!Contains(first, "h=")) {
    choice.edition = kEditionCallwarden;
    choice.historyMode = true;
    choice.historyNumber = first;
  } else if (Contains(first, "Callwarden")) {
    choice.edition = kEditionCallwarden;
  } else if (!Contains(first, "Trubru")) {
    choice.edition = kEditionCallwarden;
    choice.windowHandle = TextToInt32(WithoutAll(first, "h="));
  } else {
    choice.edition = kEditionRingtally;
  }
  if (parts.size() == 2) {
    choice.historyNumber = parts[1];
    choice.historyMode = true;
  }
  return choice;
}

}  // namespace cw
