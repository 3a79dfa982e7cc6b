#include "printer/staged_outputs.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "support/runtime_error.h"
#include "testing/temp_folder.h"

namespace cw {
namespace {

namespace fs = std::filesystem;
using testing::ReadBytes;

void Stage(StagedOutputs& staged, const std::string& target, const std::string& bytes) {
  AtomicOutputFile& file = staged.Add(target);
  file.Write(bytes);
  file.Commit();
}

// The second output of a request fails: the first file, though complete,
// does not replace the earlier run's file, and the folder made for the
// request goes again. A request that succeeds publishes every file and
// removes the pages a longer earlier report left.
TEST(StagedOutputs, AFailureLeavesEveryEarlierFileAsItWasAndPublishReplacesThem) {
  testing::TempFolder folder;
  const std::string text = folder.Write("report.txt", "earlier text");
  {
    StagedOutputs staged;
    Stage(staged, text, "new text");
    ::mkdir(folder.File("pages").c_str(), 0755);
    staged.MadeFolder(folder.File("pages"));
    Stage(staged, folder.File("pages/page-0001.png"), "page");
    EXPECT_THROW(Stage(staged, folder.File("missing/report.pdf"), "pdf"), RuntimeError);
  }
  EXPECT_EQ(ReadBytes(text), "earlier text");
  EXPECT_EQ(folder.Names(), std::set<std::string>{"report.txt"});

  ::mkdir(folder.File("pages").c_str(), 0755);
  const std::string stale = folder.Write("pages/page-0002.png", "page 2 of a longer report");
  StagedOutputs staged;
  Stage(staged, text, "new text");
  Stage(staged, folder.File("pages/page-0001.png"), "page 1");
  staged.RemoveAtPublish(stale);
  EXPECT_EQ(ReadBytes(text), "earlier text");
  EXPECT_TRUE(fs::exists(stale));
  staged.Publish();
  EXPECT_EQ(ReadBytes(text), "new text");
  EXPECT_EQ(ReadBytes(folder.File("pages/page-0001.png")), "page 1");
  EXPECT_FALSE(fs::exists(stale));
  // Published files are no longer the staging's to discard.
  staged.Discard();
  EXPECT_EQ(ReadBytes(text), "new text");
}

}  // namespace
}  // namespace cw
