#include "settings/command_line.h"

#include <gtest/gtest.h>

#include "settings/edition.h"
#include <optional>

#include "core/support/error_number.h"

namespace cw {
namespace {

TEST(ResolveCommandLine, EditionHistoryNumberAndWindowHandle) {
  struct Case {
    const char* line;
    std::string_view edition;
    bool historyMode;
    std::string historyNumber;
    std::optional<std::int32_t> handle;
  };
  const Case cases[] = {
      {"", kEditionRingtally, false, "", std::nullopt},
      {"   ", kEditionRingtally, false, "", std::nullopt},
      {"5551234", kEditionCallwarden, true, "5551234", std::nullopt},
      {"h=1234", kEditionCallwarden, false, "", 1234},
      {"h=1234,5551234", kEditionCallwarden, true, "5551234", 1234},
      {"h=Callwarden", kEditionCallwarden, false, "", std::nullopt},
      {"h=Trubru,5550000", kEditionRingtally, true, "5550000", std::nullopt},
      {"h=Callwarden Trubru", kEditionCallwarden, false, "", std::nullopt},  // the word tested first decides
      {"H=1234", kEditionCallwarden, true, "H=1234", std::nullopt},         // the marker is exact
      // Only exactly two parts give the number after a handle; after a
      // number, the second part wins and more parts keep the first.
      {"h=1234,5551234,x", kEditionCallwarden, false, "", 1234},
      {"5551234,a,b", kEditionCallwarden, true, "5551234", std::nullopt},
      {"5551234,5559999", kEditionCallwarden, true, "5559999", std::nullopt},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.line);
    const CommandLineChoice choice = ResolveCommandLine(c.line);
    EXPECT_EQ(choice.edition, c.edition);
    EXPECT_EQ(choice.historyMode, c.historyMode);
    if (c.historyMode) {
      EXPECT_EQ(choice.historyNumber, c.historyNumber);
    }
    EXPECT_EQ(choice.windowHandle, c.handle);
  }
}

TEST(ResolveCommandLine, BadHandleIsTypeMismatchOrOverflow) {
  EXPECT_EQ(test::ErrorNumberOf([] { ResolveCommandLine("h=12ab"); }), err::kTypeMismatch);
  EXPECT_EQ(test::ErrorNumberOf([] { ResolveCommandLine("h="); }), err::kTypeMismatch);
  EXPECT_EQ(test::ErrorNumberOf([] { ResolveCommandLine("h=99999999999"); }), err::kOverflow);
}

}  // namespace
}  // namespace cw
