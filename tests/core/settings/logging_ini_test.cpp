#include "settings/logging_ini.h"

#include <filesystem>
#include <gtest/gtest.h>

#include "settings/edition.h"
#include "support/runtime_error.h"
#include "testing/case_table.h"
#include "testing/expected_file.h"
#include "testing/temp_folder.h"

namespace cw {
namespace {

using testing::TempFolder;

TEST(ProfileIntValue, LeadingWholeNumberLikeTheProfileFunction) {
  testing::ExpectTableMatches("settings/profile-ints.txt",
                              [](const std::string& text) { return std::to_string(ProfileIntValue(text)); });
}

TEST(ProfileIntFromText, DefaultsForWhatIsMissing) {
  const char* ini = "[General]\r\nActiveLines=9\r\n[ports]\r\nkvxhardware = 5\r\nActiveLines=\r\nOther=x\r\n";
  testing::ExpectTableMatches("settings/profile-lookups.txt", [&](const std::string& lookup) {
    const std::vector<std::string> f = testing::Split(lookup, '|');
    return std::to_string(ProfileIntFromText(f[0] == "-" ? "" : ini, f[1], f[2], std::stoi(f[3])));
  });
}

// A file found whatever its case, and its values, ResolveStartup's test
// checks, and an empty "Path" too; here what is missing or odd.
TEST(LoggingIni, MissingOrOddFilesGiveThePlainNameAndTheDefaults) {
  TempFolder temp;
  // No Ringtally.ini in the folder: the plain name.
  EXPECT_EQ(LoggingIniPath(temp.Path().string(), kEditionRingtally), temp.File("Ringtally.ini"));

  // A folder that does not exist still names the file.
  EXPECT_EQ(LoggingIniPath(temp.File("gone"), kEditionRingtally), temp.File("gone/Ringtally.ini"));
  // No file, or a folder where the file should be: the defaults.
  std::filesystem::create_directory(temp.File("dir.ini"));
  EXPECT_EQ(ReadHardwareType(temp.File("dir.ini")), 3);
  EXPECT_EQ(ReadActiveLines(temp.File("gone/Ringtally.ini")), 2);

  EXPECT_THROW(LoggingIniPath(temp.Path().string(), "Other Edition"), RuntimeError);
  EXPECT_EQ(LoggingProductFile(temp.Path().string(), "busylines.log"), temp.File("busylines.log"));
  temp.Write("BusyLines.log", "");
  EXPECT_EQ(LoggingProductFile(temp.Path().string(), "busylines.log"), temp.File("BusyLines.log"));
}

}  // namespace
}  // namespace cw
