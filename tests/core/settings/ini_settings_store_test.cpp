#include "settings/ini_settings_store.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <gtest/gtest.h>

#include "core/support/error_number.h"
#include "settings/edition.h"
#include "support/runtime_error.h"
#include "testing/case_table.h"
#include "testing/expected_file.h"
#include "testing/temp_folder.h"

namespace cw {
namespace {

using testing::TempFolder;

TEST(ResolveSettingsLocation, EnvironmentDecidesTheFile) {
  testing::ExpectTableMatches("settings/settings-locations.txt", [](const std::string& variables) {
    const std::vector<std::string> v = testing::Split(variables, '|');
    const SettingsLocation location = ResolveSettingsLocation({v[0], v[1], v[2]});
    return "file \"" + location.file + "\", folder \"" + location.folder + "\"";
  });
}

TEST(IniSettingsStore, OneFilePerEditionUnlessOneFileIsNamed) {
  TempFolder temp;
  IniSettingsStore perEdition(SettingsLocation{{}, temp.File("cfg")});
  EXPECT_EQ(perEdition.FileFor(kEditionCallwarden), temp.File("cfg/Callwarden MultiLine.ini"));

  // Nothing there yet: defaults, and the first save makes the folder.
  EXPECT_EQ(perEdition.Get(kEditionRingtally, "Reports", "LastTab", "1"), "1");
  perEdition.Save(kEditionRingtally, "Reports", "LastTab", "4");
  perEdition.Save(kEditionCallwarden, "Reports", "LastTab", "6");
  EXPECT_EQ(testing::ReadBytes(temp.File("cfg/Vorn Ringtally.ini")), "[Reports]\nLastTab=4\n");
  EXPECT_EQ(perEdition.Get(kEditionRingtally, "Reports", "LastTab", "1"), "4");
  EXPECT_EQ(perEdition.Get(kEditionCallwarden, "reports", "lasttab", "1"), "6");

  const std::string named = temp.Write("named.ini", "[Reports]\r\nLastTab=2\r\n");
  IniSettingsStore single(SettingsLocation{named, {}});
  EXPECT_EQ(single.Get(kEditionCallwarden, "Reports", "LastTab", "1"), "2");
  EXPECT_EQ(single.Get(kEditionRingtally, "Reports", "LastTab", "1"), "2");
}

// Where a key goes among the others is the document's (IniDocument); that
// no temporary file is left, AtomicFile's.
TEST(IniSettingsStore, SaveKeepsTheBytesGiven) {
  TempFolder temp;
  const std::string file = temp.Write("s.ini", "[Reports]\r\nPath=C:\\Logger\r\n");
  IniSettingsStore store(SettingsLocation{file, {}});
  store.Save("Vorn Ringtally", "Reports", "SearchText", "Jos\xE9 M\xFCller ");
  EXPECT_EQ(testing::ReadBytes(file), "[Reports]\r\nPath=C:\\Logger\r\nSearchText=Jos\xE9 M\xFCller \r\n");
  // Written as given, read trimmed as every value is.
  EXPECT_EQ(store.Get("Vorn Ringtally", "Reports", "SearchText", ""), "Jos\xE9 M\xFCller");
}

TEST(IniSettingsStore, SeesChangesMadeByOthers) {
  TempFolder temp;
  const std::string file = temp.Write("s.ini", "[Reports]\nLogs=/a/CallLog.txt\n");
  IniSettingsStore store(SettingsLocation{file, {}});
  EXPECT_EQ(store.Get("x", "Reports", "Logs", ""), "/a/CallLog.txt");
  temp.Write("s.ini", "[Reports]\nLogs=/somewhere/else/CallLog.txt\n");
  EXPECT_EQ(store.Get("x", "Reports", "Logs", ""), "/somewhere/else/CallLog.txt");
  // A save after an outside change keeps that change.
  store.Save("x", "Reports", "LastTab", "2");
  EXPECT_EQ(testing::ReadBytes(file), "[Reports]\nLogs=/somewhere/else/CallLog.txt\nLastTab=2\n");
  std::filesystem::remove(file);
  EXPECT_EQ(store.Get("x", "Reports", "Logs", "gone"), "gone");
}

TEST(IniSettingsStore, UnreadableOrOddFilesGiveDefaultsAndFailedSavesLeaveThemWhole) {
  TempFolder temp;
  std::filesystem::create_directory(temp.File("folder.ini"));
  IniSettingsStore folderStore(SettingsLocation{temp.File("folder.ini"), {}});
  EXPECT_EQ(folderStore.Get("x", "Reports", "LastTab", "1"), "1");
  EXPECT_EQ(test::ErrorNumberOf([&] { folderStore.Save("x", "Reports", "LastTab", "2"); }), err::kPathFileAccess);
  EXPECT_TRUE(std::filesystem::is_directory(temp.File("folder.ini")));

  // A folder that cannot be made because a file stands in its way.
  temp.Write("plain", "x");
  IniSettingsStore blocked(SettingsLocation{{}, temp.File("plain/cfg")});
  const test::RaisedError error = test::ErrorOf([&] { blocked.Save("x", "Reports", "LastTab", "2"); });
  EXPECT_EQ(error.number, err::kPathFileAccess);
  EXPECT_NE(error.description.find("plain"), std::string::npos) << error.description;

  IniSettingsStore nowhere(SettingsLocation{});
  EXPECT_EQ(nowhere.Get("x", "Reports", "Logs", "d"), "d");
  EXPECT_EQ(test::ErrorNumberOf([&] { nowhere.Save("x", "Reports", "Logs", "v"); }), err::kPathNotFound);

  if (::geteuid() == 0) GTEST_SKIP() << "permissions do not bind root";
  const std::string locked = temp.Write("locked.ini", "[Reports]\nLastTab=7\n");
  ::chmod(locked.c_str(), 0);
  IniSettingsStore lockedStore(SettingsLocation{locked, {}});
  EXPECT_EQ(lockedStore.Get("x", "Reports", "LastTab", "1"), "1");
  EXPECT_THROW(lockedStore.Save("x", "Reports", "LastTab", "2"), RuntimeError);
  ::chmod(locked.c_str(), 0600);
  EXPECT_EQ(testing::ReadBytes(locked), "[Reports]\nLastTab=7\n");

  // A save that fails in a folder it cannot write leaves the file, and what
  // is read from it, as they were.
  std::filesystem::create_directory(temp.File("ro"));
  const std::string file = temp.Write("ro/s.ini", "[Reports]\nLastTab=7\nPath=/p\n");
  ::chmod(temp.File("ro").c_str(), 0500);
  IniSettingsStore store(SettingsLocation{file, {}});
  const test::RaisedError failed = test::ErrorOf([&] { store.Save("x", "Reports", "LastTab", "2"); });
  EXPECT_EQ(failed.number, err::kPathFileAccess);
  EXPECT_NE(failed.description.find("s.ini"), std::string::npos) << failed.description;
  EXPECT_EQ(store.Get("x", "Reports", "LastTab", "1"), "7");
  ::chmod(temp.File("ro").c_str(), 0700);
  EXPECT_EQ(testing::ReadBytes(file), "[Reports]\nLastTab=7\nPath=/p\n");

  ::chmod(temp.Path().c_str(), 0500);
  IniSettingsStore noFolder(SettingsLocation{{}, temp.File("sub/cfg")});
  EXPECT_EQ(test::ErrorNumberOf([&] { noFolder.Save("x", "Reports", "LastTab", "2"); }), err::kPermissionDenied);
}

}  // namespace
}  // namespace cw
