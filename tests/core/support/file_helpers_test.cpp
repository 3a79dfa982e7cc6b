#include "support/file_helpers.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <set>
#include <string>

#include "core/support/error_number.h"
#include "testing/expected_file.h"
#include "testing/temp_folder.h"

namespace cw {
namespace {

namespace fs = std::filesystem;
using test::ErrorNumberOf;

// A fresh folder per test, removed afterwards.
class FileHelpersTest : public ::testing::Test, public testing::TempFolder {};

// Sets TMPDIR for the life of the object.
struct TmpDirSetting {
  explicit TmpDirSetting(const std::string& value) { ::setenv("TMPDIR", value.c_str(), 1); }
  ~TmpDirSetting() { old ? ::setenv("TMPDIR", old->c_str(), 1) : ::unsetenv("TMPDIR"); }
  const char* const set = std::getenv("TMPDIR");
  const std::optional<std::string> old = set != nullptr ? std::optional<std::string>(set) : std::nullopt;
};

TEST_F(FileHelpersTest, TempFilesAreNewEmptyPrivateAndUnique) {
  TmpDirSetting tmp(Path().string());
  const std::string first = GetTempFile("VPR");
  const std::string second = GetTempFile("VPRINT");
  EXPECT_NE(first, second);
  for (const std::string& path : {first, second}) {
    EXPECT_EQ(fs::path(path).parent_path(), Path());
    const std::string name = fs::path(path).filename().string();
    EXPECT_EQ(name.substr(0, 3), "VPR");
    // Only three characters of the prefix, then six unique characters.
    EXPECT_EQ(name.size(), 3u + 6u + 4u) << name;
    EXPECT_EQ(name.substr(name.size() - 4), ".tmp");
    struct stat info;
    ASSERT_EQ(::stat(path.c_str(), &info), 0);
    EXPECT_TRUE(S_ISREG(info.st_mode));
    EXPECT_EQ(info.st_size, 0);
    EXPECT_EQ(info.st_mode & 0777, 0600u);
  }
  EXPECT_EQ(Names().size(), 2u);
  TmpDirSetting missing(File("missing"));
  EXPECT_EQ(GetTempFile("VPR"), "");
}

TEST_F(FileHelpersTest, FileExistsOnlyForNormalVisibleFiles) {
  const std::string log = Write("calls.log", "x");
  Write(".hidden.txt", "");
  fs::create_directory(File("reports.txt"));
  Write("a[1].dat", "");

  Write("a1.bin", "");
  EXPECT_FALSE(FileExists(""));
  EXPECT_FALSE(FileExists(Path().string()));
  EXPECT_FALSE(FileExists(log + "/"));
  testing::ExpectTableMatches("support/file-exists.txt", [this](const std::string& name) {
    return FileExists(File(name)) ? "exists" : "no file";
  });
}

TEST(FileHelpers, IsAllDigits) {
  testing::ExpectTableMatches("support/all-digits.txt", [](const std::string& text) {
    return IsAllDigits(text) ? "all digits" : "not all digits";
  });
}

TEST(FileHelpers, JoinPathUsesThePlatformSeparator) {
  testing::ExpectTableMatches("support/joined-paths.txt", [](const std::string& row) {
    const std::size_t plus = row.find(" + ");
    return JoinPath(row.substr(0, plus), row.substr(plus + 3));
  });
}

TEST_F(FileHelpersTest, FindFileNoCasePrefersTheExactName) {
  Write("BusyLines.LOG", "");
  Write("Callwarden.ini", "");
  Write("CALLWARDEN.INI", "");
  testing::ExpectTableMatches("support/find-file-no-case.txt", [this](const std::string& asked) {
    const std::optional<std::string> found = FindFileNoCase(Path().string(), asked);
    return found ? testing::Replaced(*found, File(""), "") : "none";
  });
  EXPECT_EQ(FindFileNoCase(File("missing"), "busylines.log"), std::nullopt);
}

TEST_F(FileHelpersTest, ReadWholeFileGivesEveryByte) {
  const std::string bytes("line 1\r\n\x80\x00\xFFlast", 15);
  EXPECT_EQ(ReadWholeFile(Write("calls.log", bytes)), bytes);
  EXPECT_EQ(ReadWholeFile(Write("empty.log", "")), "");
  EXPECT_EQ(ErrorNumberOf([&] { ReadWholeFile(File("missing.log")); }), 53);
  EXPECT_EQ(ErrorNumberOf([&] { ReadWholeFile(File("missing/calls.log")); }), 53);
  EXPECT_EQ(ErrorNumberOf([&] { ReadWholeFile(Path().string()); }), 75);
  const std::string description = test::ErrorOf([&] { ReadWholeFile(File("missing.log")); }).description;
  EXPECT_NE(description.find(File("missing.log")), std::string::npos) << description;
}

// The mode it keeps and the temporary file it leaves nowhere are the atomic
// file's; here what it adds: every failure to write is error 75.
TEST_F(FileHelpersTest, WriteFileAtomicallyReplacesTheFileOrFailsWith75) {
  const std::string target = File("Reports.ini");
  WriteFileAtomically(target, "[Reports]\r\nTab=3\r\n");
  WriteFileAtomically(target, "[Reports]\r\n");
  EXPECT_EQ(ReadWholeFile(target), "[Reports]\r\n");

  // The target is a folder (the temporary file is written, the rename
  // fails), its folder does not exist, or its "folder" is a file.
  fs::create_directory(File("folder.ini"));
  Write("folder.ini/keep", "");
  const std::string file = Write("plain", "");
  for (const std::string& bad : {File("folder.ini"), File("missing/Reports.ini"), file + "/Reports.ini"}) {
    EXPECT_EQ(ErrorNumberOf([&] { WriteFileAtomically(bad, "x"); }), 75) << bad;
  }
  EXPECT_EQ(Names(), (std::set<std::string>{"Reports.ini", "folder.ini", "plain"}));
  EXPECT_TRUE(fs::is_directory(File("folder.ini")));

  // A folder without write permission stops everyone but the superuser.
  if (::geteuid() != 0) {
    fs::create_directory(File("locked"));
    fs::permissions(File("locked"), fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_EQ(ErrorNumberOf([&] { WriteFileAtomically(File("locked/Reports.ini"), "x"); }), 75);
    fs::permissions(File("locked"), fs::perms::owner_all);
    EXPECT_TRUE(fs::is_empty(File("locked")));
  }
  const std::string description = test::ErrorOf([&] { WriteFileAtomically(File("missing/Reports.ini"), "x"); }).description;
  EXPECT_NE(description.find("No such file or directory"), std::string::npos) << description;
}

}  // namespace
}  // namespace cw
