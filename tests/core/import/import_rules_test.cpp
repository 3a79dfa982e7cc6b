#include "import/import_rules.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <string>

#include "import/call_builder.h"
#include "import/cdr_time.h"
#include "support/runtime_error.h"

namespace cw {
namespace {

TEST(ImportRules, TrunkListsAndTheTrunkOfAChannel) {
  ImportRules rules;
  rules.trunks = ParseTrunkList(" SIP/211553=1, PJSIP/telco = 2 ,DAHDI/1=3,DAHDI/1-=4,,");
  ASSERT_EQ(rules.trunks.size(), 4u);
  EXPECT_EQ(rules.Lines(), (std::vector<std::int32_t>{1, 2, 3, 4}));
  struct Case {
    std::string channel;
    int line;  // 0: no trunk
  };
  const Case cases[] = {
      {"SIP/211553-0000001a", 1}, {"SIP/211553", 1},  {"SIP/2115530-0001", 0}, {"PJSIP/telco-00000003", 2},
      {"PJSIP/telcox-0003", 0},   {"DAHDI/10-1", 0}, {"DAHDI/1-1", 4},        {"Local/201@x-0001;1", 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.channel);
    const TrunkLine* trunk = rules.TrunkOf(c.channel);
    EXPECT_EQ(trunk == nullptr ? 0 : trunk->line, c.line);
  }
  for (const char* bad : {"SIP/x", "SIP/x=0", "SIP/x=1000", "=2", "SIP/x=one", "SIP/x=1,SIP/x=2"}) {
    SCOPED_TRACE(bad);
    EXPECT_THROW(ParseTrunkList(bad), RuntimeError);
  }
}

TEST(ImportRules, ContextPatterns) {
  struct Case {
    std::string pattern;
    std::string text;
    bool match;
  };
  const Case cases[] = {
      {"from-trunk", "from-trunk", true},  {"from-trunk", "from-trunk2", false}, {"from-*", "from-pstn", true},
      {"*-in", "did-in", true},            {"*-in", "did-inx", false},           {"a*b*c", "aXXbYYc", true},
      {"a*b*c", "aXXbYY", false},          {"*", "", true},                      {"", "x", false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.pattern + " / " + c.text);
    EXPECT_EQ(MatchesPattern(c.pattern, c.text), c.match);
  }
}

TEST(ImportRules, NumbersNamesAndTimesAsTheLogShowsThem) {
  EXPECT_EQ(FormatPartyNumber("5551234567"), "(555) 123-4567");
  EXPECT_EQ(FormatPartyNumber("+1 (555) 123-4567"), "15551234567");
  EXPECT_EQ(FormatPartyNumber("201"), "201");
  EXPECT_EQ(FormatPartyNumber("anonymous"), "");
  EXPECT_EQ(FormatPartyNumber(std::string(25, '9')), std::string(18, '9'));

  EXPECT_EQ(CleanCallerName("Caf\xC3\xA9 \xE2\x98\x83"), "Caf\xE9 ?");  // UTF-8: to Windows-1252
  EXPECT_EQ(CleanCallerName("M\xDCLLER\tA\x81"), "M\xDCLLER A?");     // stray bytes kept
  EXPECT_EQ(CleanCallerName(" " + std::string(50, 'x')), std::string(40, 'x'));

  const auto time = ParseCdrTime("2026-08-17 09:05:42");
  ASSERT_TRUE(time.has_value());
  EXPECT_EQ(DateOf(*time), CivilDate::FromYmd(2026, 8, 17));
  EXPECT_EQ(TimeOfDayOf(*time), 9 * 3600 + 5 * 60 + 42);
  EXPECT_EQ(ParseCdrTime("2026-08-17T09:05:42.250"), time);
  for (const char* bad : {"", "2026-08-17", "2026-13-01 00:00:00", "2026-02-29 00:00:00", "2026-08-17 24:00:00",
                          "17/08/2026 09:05:42", "2026-08-17 09:05:42x", "2026-08-1/ 09:05:42"}) {
    SCOPED_TRACE(bad);
    EXPECT_FALSE(ParseCdrTime(bad).has_value());
  }
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
