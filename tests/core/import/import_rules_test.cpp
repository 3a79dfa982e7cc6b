#include "import/import_rules.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>

#include "import/call_builder.h"
#include "import/cdr_time.h"
#include "support/date_format.h"
#include "support/runtime_error.h"
#include "testing/expected_file.h"

namespace cw {
namespace {

TEST(ImportRules, TrunkListsAndTheTrunkOfAChannel) {
  ImportRules rules;
  rules.trunks = ParseTrunkList(" SIP/211553=1, PJSIP/telco = 2 ,DAHDI/1=3,DAHDI/1-=4,,");
  EXPECT_EQ(rules.Lines(), (std::vector<std::int32_t>{1, 2, 3, 4}));
  testing::ExpectTableMatches("import/trunk-channels.txt", [&rules](const std::string& channel) {
    const TrunkLine* trunk = rules.TrunkOf(channel);
    return trunk == nullptr ? std::string("no trunk") : "line " + std::to_string(trunk->line);
  });
  for (const char* bad : {"SIP/x", "SIP/x=0", "SIP/x=1000", "=2", "SIP/x=one", "SIP/x=1,SIP/x=2"}) {
    SCOPED_TRACE(bad);
    EXPECT_THROW(ParseTrunkList(bad), RuntimeError);
  }
}

TEST(ImportRules, ContextPatternsNumbersNamesAndTimesAsTheLogShowsThem) {
  testing::ExpectTableMatches("import/context-patterns.txt", [](const std::string& row) {
    const std::size_t slash = row.find(" / ");
    return MatchesPattern(row.substr(0, slash), row.substr(slash + 3)) ? "matches" : "does not match";
  });
  testing::ExpectTableMatches("import/parties.txt", [](const std::string& party) {
    return "number [" + FormatPartyNumber(party) + "] name [" + CleanCallerName(party) + "]";
  });
  testing::ExpectTableMatches("import/cdr-times.txt", [](const std::string& text) {
    const std::optional<LocalSeconds> time = ParseCdrTime(text);
    if (!time) return std::string("none");
    char shown[16];
    const TimeOfDay second = TimeOfDayOf(*time);
    std::snprintf(shown, sizeof shown, " %02d:%02d:%02d", second / 3600, second / 60 % 60, second % 60);
    return FormatDate(DateOf(*time), "mm/dd/yyyy") + shown;
  });
  const auto time = ParseCdrTime("2026-08-17 09:05:42");
  // Seconds since 1970 are read in the system's time zone.
  const std::string zone = std::getenv("TZ") != nullptr ? std::getenv("TZ") : "";
  ::setenv("TZ", "UTC", 1);
  ::tzset();
  EXPECT_EQ(ParseCdrTime("1786957542"), time);
  zone.empty() ? ::unsetenv("TZ") : ::setenv("TZ", zone.c_str(), 1);
  ::tzset();
}

}  // namespace
}  // namespace cw
