// The bundled demo office: its files are what the generator writes (the
// desktop form's tests run every report over them), and the generator's own
// options work as the benchmarks use them.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "run_cwreport.h"

namespace cw::testing {
namespace {

const std::string kDemo = CW_SOURCE_DIR "/examples/demo";

class DemoOffice : public CliTest {
 protected:
  int Generate(const std::string& arguments) {
    int status = -1;
    RunShell(Quote(CW_BINARY_DIR "/examples/demo/cw_make_demo") + " " + arguments + " 2>/dev/null", &status);
    return status;
  }
};

TEST_F(DemoOffice, CommittedFilesAreWhatTheReadmeCommandWrites) {
  ASSERT_EQ(Generate("--calls 4000 --lines 4 --start 08/17/2026 --days 91 --seed 1 --log " + Quote(Path("CallLog.txt")) +
                     " --busy " + Quote(Path("BusyLines.log")) + " --ini-dir " + Quote(folder_.string())),
            0);
  for (const char* name : {"CallLog.txt", "BusyLines.log", "Callwarden.ini", "Ringtally.ini"}) {
    EXPECT_TRUE(ReadFile(Path(name)) == ReadFile(kDemo + "/" + name)) << name << " differs from the generator's";
  }
}

TEST_F(DemoOffice, GeneratorOptions) {
  ASSERT_EQ(Generate("--calls 300 --seed 7 --lines 2 --log " + Quote(Path("a.txt")) + " --ini-dir " +
                     Quote(folder_.string())),
            0);
  const std::string a = ReadFile(Path("a.txt"));
  EXPECT_EQ(std::count(a.begin(), a.end(), '\n'), 300);
  EXPECT_NE(ReadFile(Path("Callwarden.ini")).find("ActiveLines=2"), std::string::npos);

  // A benchmark log: at least the size asked for, and nothing beside it.
  std::filesystem::create_directory(Path("big"));
  EXPECT_EQ(Generate("--size-mb 1 --days 30 --log " + Quote(Path("big/s.txt"))), 0);
  const std::string sized = ReadFile(Path("big/s.txt"));
  EXPECT_GE(sized.size(), 1u << 20);
  EXPECT_LT(sized.size(), (1u << 20) + 200);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(Path("big")), {}), 1);

  for (const char* bad : {"--calls 0", "--calls x", "--start 13/01/2026", "--start 1/5/2026", "--lines 0",
                          "--size-mb 5 --calls 5", "--size-mb 5 --busy x.log", "--unknown 1", "--days"}) {
    EXPECT_EQ(Generate(std::string(bad) + " --log " + Quote(Path("bad.txt"))), 2) << bad;
  }
}

}  // namespace
}  // namespace cw::testing
