#include "settings/command_line.h"

#include <gtest/gtest.h>

#include <string>

#include "core/support/error_number.h"
#include "settings/edition.h"
#include "testing/expected_file.h"

namespace cw {
namespace {

TEST(ResolveCommandLine, EditionHistoryNumberAndWindowHandle) {
  testing::ExpectTableMatches("settings/command-lines.txt", [](const std::string& line) {
    return test::OutcomeText([&] {
      const CommandLineChoice choice = ResolveCommandLine(line);
      return std::string(choice.edition) + (choice.historyMode ? ", history of " + choice.historyNumber : ", no history") +
             (choice.windowHandle ? ", handle " + std::to_string(*choice.windowHandle) : ", no handle");
    });
  });
}

}  // namespace
}  // namespace cw
