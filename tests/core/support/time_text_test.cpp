#include "support/time_text.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "core/support/error_number.h"
#include "testing/expected_file.h"

namespace cw {
namespace {

TEST(TimeTextTest, AcceptsEveryWrittenFormAndRejectsEverythingElse) {
  testing::ExpectTableMatches("support/time-texts.txt", [](const std::string& text) {
    return test::OutcomeText([&] {
      const TimeOfDay time = ParseTimeText(text);
      char shown[16];
      std::snprintf(shown, sizeof shown, "%02d:%02d:%02d", time / 3600, time / 60 % 60, time % 60);
      return std::string(shown);
    });
  });
}

}  // namespace
}  // namespace cw
