#include "settings/ini_document.h"

#include <gtest/gtest.h>

#include "core/support/error_number.h"
#include "testing/case_table.h"
#include "testing/expected_file.h"

namespace cw {
namespace {

TEST(IniDocument, FindsNamesIgnoringCaseAndTrimsValues) {
  const IniDocument document = IniDocument::Parse(
      "; comment=not a key\r\n[Other]\r\nPath=wrong\r\n[reports]\r\n  Select Seconds =1\r\n"
      "SearchText= Smith \t\r\nLogs = /srv/log/CallLog.txt\r\nEmpty=\r\n[Reports]\r\nLater=ignored");
  testing::ExpectTableMatches("settings/ini-finds.txt", [&](const std::string& name) {
    const std::size_t bar = name.find('|');
    return "\"" + std::string(document.Find(name.substr(0, bar), name.substr(bar + 1)).value_or("<none>")) + "\"";
  });
}

TEST(IniDocument, SetChangesOneLineAndKeepsTheRest) {
  IniDocument document = IniDocument::Parse(
      "[Other]\r\nKeep=1\r\n\r\n[Reports]\r\n; note\r\nlasttab=2\r\nPrintChart=0\r\n\r\n[Tail]\r\nX=y\r\n");
  document.Set("Reports", "LastTab", "5");
  document.Set("Reports", "Select Seconds", "1");
  document.Set("New Section", "Key", "v");
  EXPECT_EQ(document.Text(),
            "[Other]\r\nKeep=1\r\n\r\n[Reports]\r\n; note\r\nlasttab=5\r\nPrintChart=0\r\nSelect Seconds=1\r\n"
            "\r\n[Tail]\r\nX=y\r\n\r\n[New Section]\r\nKey=v\r\n");
}

// Editors on Windows save UTF-8 with a byte-order mark: the first section is
// still found, and a save keeps the mark.
TEST(IniDocument, AByteOrderMarkIsSkippedAndKept) {
  IniDocument document = IniDocument::Parse("\xEF\xBB\xBF[Reports]\r\nLogs=/p/CallLog.txt\r\n");
  EXPECT_EQ(document.Find("Reports", "Logs").value(), "/p/CallLog.txt");
  document.Set("Reports", "LastTab", "2");
  EXPECT_EQ(document.Text(), "\xEF\xBB\xBF[Reports]\r\nLogs=/p/CallLog.txt\r\nLastTab=2\r\n");
  // Only at the very start: elsewhere those bytes are Windows-1252 text.
  EXPECT_FALSE(IniDocument::Parse(" \xEF\xBB\xBF[Reports]\nA=1\n").Find("Reports", "A"));
}

TEST(IniDocument, LineEndsFollowTheFirstLine) {
  IniDocument lf = IniDocument::Parse("[Reports]\nA=1");
  lf.Set("Reports", "B", "2");
  EXPECT_EQ(lf.Text(), "[Reports]\nA=1\nB=2\n");
}

TEST(IniDocument, StartsAFileOrRefusesNamesAndValuesThatCannotBeLines) {
  testing::ExpectTableMatches("settings/ini-sets.txt", [](const std::string& line) {
    const std::vector<std::string> part = testing::Split(testing::Unescaped(line), '|');
    IniDocument document;
    const std::string outcome = test::OutcomeText([&] {
      document.Set(part[0], part[1], part[2]);
      return std::string("set");
    });
    return outcome + ", \"" + testing::Visible(document.Text()) + "\"";
  });
}

}  // namespace
}  // namespace cw
