#include "settings/ini_document.h"

#include <gtest/gtest.h>

#include "core/support/error_number.h"
#include "support/runtime_error.h"
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
  IniDocument empty;
  empty.Set("Reports", "Path", "/srv/logger");
  EXPECT_EQ(empty.Text(), "[Reports]\nPath=/srv/logger\n");
}

TEST(IniDocument, RefusesNamesAndValuesThatCannotBeLines) {
  const char* badKeys[] = {"", "a=b", " Lead", "Trail ", "[x", ";x", "#x", "two\nlines"};
  for (const char* key : badKeys) {
    IniDocument document;
    EXPECT_EQ(test::ErrorNumberOf([&] { document.Set("Reports", key, "1"); }), err::kInvalidCall) << key;
    EXPECT_EQ(document.Text(), "") << key;
  }
  IniDocument document;
  EXPECT_THROW(document.Set("Re]ports", "Key", "1"), RuntimeError);
  EXPECT_THROW(document.Set("", "Key", "1"), RuntimeError);
  EXPECT_THROW(document.Set("Reports", "SearchText", "a\r\nb"), RuntimeError);
}

}  // namespace
}  // namespace cw
