// --version of both programs: the project version of CMakeLists.txt and,
// in a git checkout, the commit the build was made from, never a stale one.
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <string>

#include "run_cwreport.h"

namespace cw::testing {
namespace {

std::string ProjectVersion() {
  const std::string lists = ReadFile(CW_SOURCE_DIR "/CMakeLists.txt");
  std::smatch match;
  if (!std::regex_search(lists, match, std::regex(R"(project\(\w+ VERSION ([0-9.]+))"))) return "";
  return match[1];
}

TEST(Version, BothProgramsTellTheProjectVersionAndCommit) {
  const std::string version = ProjectVersion();
  ASSERT_FALSE(version.empty()) << "no project version in CMakeLists.txt";
  // The commit of the checkout, none outside one: a source archive, even one
  // unpacked inside some other checkout, has no commit of its own.
  int status = -1;
  const std::string source = Quote(CW_SOURCE_DIR);
  const std::string top = RunShell("git -C " + source + " rev-parse --show-toplevel 2>/dev/null", &status);
  const bool ownCheckout = status == 0 && std::filesystem::equivalent(top.substr(0, top.find('\n')), CW_SOURCE_DIR);
  std::string commit = ownCheckout ? RunShell("git -C " + source + " rev-parse --short=12 HEAD", &status) : "";
  commit = commit.substr(0, commit.find('\n'));
  const std::string expected =
      commit.empty() ? version + "\n" : version + " \\(git " + commit + "(-modified)?\\)\n";
  for (const std::string program : {"src/cli/cwreport", "src/app/callwarden-reports"}) {
    const std::string path = CW_BINARY_DIR "/" + program;
    const std::string name = program.substr(program.rfind('/') + 1);
    if (!std::filesystem::exists(path)) continue;  // the desktop program is not part of every build
    const std::string out = RunShell(Quote(path) + " --version", &status);
    EXPECT_EQ(status, 0) << name;
    EXPECT_TRUE(std::regex_match(out, std::regex(name + " " + expected))) << name << " says: " << out;
  }
}

}  // namespace
}  // namespace cw::testing
