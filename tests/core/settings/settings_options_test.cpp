#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/support/error_number.h"
#include "settings/settings_store.h"
#include "testing/memory_settings_store.h"
#include "settings/settings_values.h"
#include "settings/startup.h"
#include "testing/expected_file.h"
#include "testing/temp_folder.h"

namespace cw {
namespace {

using MemoryStore = testing::MemorySettingsStore;

struct ShownBoxes {
  std::vector<std::string> texts;
  ErrorBoxOutput Output() {
    return ErrorBoxOutput{[this](std::string_view title, std::string_view text) {
                            EXPECT_EQ(title, "Error");
                            texts.emplace_back(text);
                          },
                          [] { return std::string("11/22/2026 9:05:00 AM"); }};
  }
};

TEST(SettingValues, LastTabAndFlags) {
  testing::ExpectTableMatches("settings/setting-values.txt", [](const std::string& stored) {
    return "tab " + std::to_string(ClampLastTab(stored, 8)) + ", flag " +
           test::OutcomeText([&] { return std::string(SettingIsTrue(stored) ? "true" : "false"); });
  });
}

// The whole state in one line, for readable failures.
std::string Shown(const StartupState& state) {
  return state.edition + (state.historyMode ? " history " + state.historyNumber : " no history") +
         (state.windowHandle ? " handle " + std::to_string(*state.windowHandle) : " no handle") + " path " +
         state.data.path + " logs " + state.data.logs + " ini " + state.data.iniPath + " hardware " +
         std::to_string(state.data.hardwareType) + " lines " + std::to_string(state.data.activeLines);
}

TEST(ResolveStartup, ReadsTheEditionsSettingsAndItsIniAndShowsEachStoreFailure) {
  testing::TempFolder temp;
  temp.Write("callwarden.ini", "[Ports]\r\nKVXHardware=5\r\nActiveLines=4\r\n");
  temp.Write("Ringtally.ini", "[Ports]\r\nActiveLines=6\r\n");
  MemoryStore store;
  store.values[{"Callwarden MultiLine", "Reports", "Path"}] = temp.Path().string();
  store.values[{"Callwarden MultiLine", "Reports", "Logs"}] = "/logs/CallLog.txt";
  store.values[{"Vorn Ringtally", "Reports", "Path"}] = temp.Path().string();
  ShownBoxes boxes;

  const std::string path = temp.Path().string();
  EXPECT_EQ(Shown(ResolveStartup("h=77,5551234", store, boxes.Output())),
            "Callwarden MultiLine history 5551234 handle 77 path " + path + " logs /logs/CallLog.txt ini " +
                temp.File("callwarden.ini") + " hardware 5 lines 4");
  EXPECT_EQ(Shown(ResolveStartup("", store, boxes.Output())),
            "Vorn Ringtally no history no handle path " + path + " logs  ini " + temp.File("Ringtally.ini") +
                " hardware 3 lines 6");
  EXPECT_TRUE(boxes.texts.empty());

  // A failing store: one box per setting, empty locations and INI defaults.
  // GetOptions gives the empty text, not the default, and SaveOptions false.
  store.failing = true;
  EXPECT_EQ(Shown(ResolveStartup("5551234", store, boxes.Output())),
            "Callwarden MultiLine history 5551234 no handle path  logs  ini  hardware 3 lines 2");
  EXPECT_EQ(boxes.texts.size(), 2u);
  EXPECT_EQ(GetOptions(store, "Vorn Ringtally", "Reports", "LastTab", "1", boxes.Output()), "");
  EXPECT_FALSE(SaveOptions(store, "Vorn Ringtally", "Reports", "LastTab", "3", boxes.Output()));
  ASSERT_EQ(boxes.texts.size(), 4u);
  EXPECT_NE(boxes.texts[2].find("Description: Path/File access error: disk gone\r\nModule Name: fReport\r\n"
                                "Procedure Name: GetOptions.\r\nDate: 11/22/2026 9:05:00 AM\r\n"),
            std::string::npos)
      << boxes.texts[2];
  EXPECT_NE(boxes.texts[3].find("Error: 70\r\nDescription: Permission denied\r\nModule Name: fReport\r\n"
                                "Procedure Name: SaveOptions."),
            std::string::npos)
      << boxes.texts[3];
}

}  // namespace
}  // namespace cw
