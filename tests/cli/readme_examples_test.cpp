// The README's cwreport examples, run as written against the demo office: a
// newcomer's first command must work.
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "run_cwreport.h"

namespace cw::testing {
namespace {

const std::string kSource = CW_SOURCE_DIR;

// The cwreport lines of the README's ```sh blocks.
std::vector<std::string> CwreportExamples() {
  std::istringstream readme(ReadFile(kSource + "/README.md"));
  std::vector<std::string> examples;
  bool inShell = false;
  for (std::string line; std::getline(readme, line);) {
    if (line.starts_with("```")) {
      inShell = !inShell && line == "```sh";
      continue;
    }
    if (inShell && line.starts_with("cwreport ")) examples.push_back(line);
  }
  return examples;
}

class ReadmeExamples : public CliTest {};

TEST_F(ReadmeExamples, EveryCwreportExampleRunsAsWritten) {
  const std::vector<std::string> examples = CwreportExamples();
  ASSERT_GE(examples.size(), 3u) << "the README's cwreport examples were not found";
  // The examples run from a copy of the checkout's demo office: a request
  // may store its choices in the settings, and a chart passes through the
  // logging program's folder.
  std::filesystem::create_directories(Path("examples/demo"));
  for (const char* name : {"CallLog.txt", "BusyLines.log", "Ringtally.ini", "Callwarden.ini", "settings.ini"}) {
    std::filesystem::copy_file(kSource + "/examples/demo/" + name, Path(std::string("examples/demo/") + name));
  }
  const std::string settings = Path("examples/demo/settings.ini");
  for (const std::string& example : examples) {
    SCOPED_TRACE(example);
    // The example with this build's program for "cwreport".
    const ProgramRun run = RunCwreport(example.substr(std::string("cwreport ").size()), folder_ / "stderr.txt",
                                       "cd " + Quote(folder_.string()) + " && CW_SETTINGS=" + Quote(settings) + " ");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "");
  }
  // The outputs the examples name are there.
  for (const char* name : {"daily.pdf", "october.txt", "history.pdf"}) {
    EXPECT_TRUE(std::filesystem::exists(Path(name))) << name;
  }
  EXPECT_NE(ReadFile(Path("october.txt")).find("Report Period: Oct 01, 2026 to Oct 31, 2026"), std::string::npos);
}

}  // namespace
}  // namespace cw::testing
