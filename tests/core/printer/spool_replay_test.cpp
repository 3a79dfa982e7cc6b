#include "printer/spool_replay.h"

#include <gtest/gtest.h>

#include "recording_device.h"
#include "spool_test_files.h"
#include "support/runtime_error.h"
#include "testing/expected_file.h"

namespace cw {
namespace {

using testing::Bytes;
using testing::DefaultHeader;
using testing::RecordingDevice;
using testing::SpoolBytes;
using testing::SpoolFromText;
using testing::TempFolder;
using testing::WriteBytes;

class SpoolReplayTest : public ::testing::Test {
 protected:
  std::string Spool(const std::string& bytes) {
    const std::string path = folder.File("spool.spl");
    WriteBytes(path, bytes);
    return path;
  }

  // The device's calls so far, kept under a heading and compared, at
  // ExpectReplays, with the test's own file under printer/replay/.
  void KeepCalls(std::string_view heading) {
    replays += testing::Section(heading, device.calls);
    device.calls.clear();
  }
  void ExpectReplays() {
    const std::string test = ::testing::UnitTest::GetInstance()->current_test_info()->name();
    testing::ExpectMatchesFile(replays, "printer/replay/" + test + ".txt");
  }

  TempFolder folder;
  RecordingDevice device;
  std::string replays;
};

// Every page in twips, page ranges, copies, and the paper turned.
TEST_F(SpoolReplayTest, ReplaysThePagesAndCopiesAskedFor) {
  const std::string spool = Spool(SpoolFromText("three-pages"));
  ReplayResult result = ReplaySpool(spool, device, {});
  KeepCalls("three pages in inches");
  EXPECT_EQ(result.pagesBegun, 3);
  EXPECT_EQ(result.recordsRead, 10);
  EXPECT_TRUE(result.problems.Empty());

  ReplayOptions options;
  options.fromPage = options.toPage = 2;
  ReplaySpool(spool, device, options);
  // The font of page 1 is skipped with its page; the NEWPAGE of page 2 is the
  // range's last and starts nothing.
  KeepCalls("page 2 alone");

  options.fromPage = 3;
  options.toPage = 2;
  result = ReplaySpool(spool, device, options);
  KeepCalls("from 3 to 2: nothing");
  EXPECT_EQ(result.pagesBegun, 0);
  EXPECT_EQ(result.recordsRead, 8);  // pages 1 and 2 lie below From; page 3 is past To

  options.fromPage = 2;
  options.toPage = 3;
  options.copies = 2;
  options.offsetXTwips = 360;
  options.offsetYTwips = 180;
  options.beginCopy = [&](std::int16_t copy) { device.calls.push_back("Title for copy " + std::to_string(copy)); };
  std::vector<std::pair<std::int64_t, std::int64_t>> progress;
  options.progress = [&](std::int64_t done, std::int64_t total) { progress.emplace_back(done, total); };
  result = ReplaySpool(spool, device, options);
  KeepCalls("pages 2 and 3 twice, moved by the offsets");
  EXPECT_EQ(result.pagesBegun, 4);
  ASSERT_EQ(progress.size(), 20u);
  EXPECT_EQ(progress.front(), (std::pair<std::int64_t, std::int64_t>{1, 22}));
  EXPECT_EQ(progress.back(), (std::pair<std::int64_t, std::int64_t>{20, 22}));

  // A landscape header turns the paper.
  SpoolRecord landscape = DefaultHeader();
  PutInt16(landscape.data(), spool::kOrientation, 2);
  ReplayOptions a4;
  a4.page = PageSetup{11906, 16838, 1};
  ReplaySpool(Spool(SpoolBytes(landscape, {MakeTextRecord(1, 0, 0, "wide"), MakePageRecord(1, spool::kEndDoc)})),
              device, a4);
  KeepCalls("landscape on A4");

  // A range that holds only an empty page starts no page either.
  ReplayOptions first;
  first.fromPage = first.toPage = 1;
  ReplaySpool(Spool(SpoolFromText("empty-first-page")), device, first);
  KeepCalls("an empty page 1: nothing");
  ExpectReplays();
}

TEST_F(SpoolReplayTest, DamagedSpoolsReplayWhatIsValidAndReportTheRest) {
  device.missingImages = {"chart.bmp"};
  const std::string bytes = SpoolFromText("replay-damaged") + Bytes(MakeTextRecord(1, 1, 3, "cut")).substr(0, 10);
  ReplayResult result = ReplaySpool(Spool(bytes), device, {});
  KeepCalls("what is valid");
  replays += testing::Section("problems", result.problems.Lines());
  EXPECT_EQ(result.missingImages, (std::vector<std::string>{"chart.bmp"}));

  // Nothing at all to replay.
  ReplayResult empty = ReplaySpool(Spool(""), device, {});
  KeepCalls("an empty file: nothing");
  replays += testing::Section("problems of the empty file", empty.problems.Lines());
  ExpectReplays();
  EXPECT_THROW(ReplaySpool(folder.File("absent.spl"), device, {}), RuntimeError);
}

TEST_F(SpoolReplayTest, TheLargestCopyCountEnds) {
  // 32767 copies is a count the print dialog accepts; its copies are counted
  // past it without wrapping. A wrapped counter would start copy -32768,
  // which stops the replay here instead of printing for ever.
  const std::string spool = Spool(SpoolFromText("one-page"));
  std::vector<std::int16_t> copies;
  ReplayOptions options;
  options.copies = 32767;
  options.beginCopy = [&](std::int16_t copy) { copies.push_back(copy); };
  options.shouldStop = [&] { return copies.back() != static_cast<std::int16_t>(copies.size()); };
  ReplayResult result = ReplaySpool(spool, device, options);
  EXPECT_FALSE(result.stopped);
  ASSERT_EQ(copies.size(), 32767u);
  EXPECT_EQ(copies.back(), 32767);
  EXPECT_EQ(result.pagesBegun, 32767);
}

TEST_F(SpoolReplayTest, StopAndPrinterErrorsEndTheReplay) {
  const std::string spool = Spool(SpoolFromText("three-pages"));
  int asked = 0;
  ReplayOptions options;
  options.copies = 3;
  options.shouldStop = [&] { return ++asked > 3; };
  ReplayResult stopped = ReplaySpool(spool, device, options);
  EXPECT_TRUE(stopped.stopped);
  KeepCalls("stopped after page 1");

  // A failing text is retried once when the host says so.
  int failures = 0;
  device.beforeCall = [&](const std::string& call) {
    if (call == "Text 1440,1440 p2" && failures++ == 0) throw RuntimeError(482, "Printer error");
  };
  int retries = 0;
  ReplayOptions retry;
  retry.fromPage = retry.toPage = 2;
  retry.onPrinterError = [&] { return ++retries == 1; };
  ReplayResult retried = ReplaySpool(spool, device, retry);
  EXPECT_FALSE(retried.printerFailed);
  KeepCalls("page 2 with its text retried");

  // Without a retry the rest is dropped.
  failures = 0;
  retries = 1;
  ReplayResult failed = ReplaySpool(spool, device, retry);
  EXPECT_TRUE(failed.printerFailed);
  KeepCalls("page 2 dropped at its text");
  ExpectReplays();

  // A printer that stays away is asked about a bounded number of times even
  // when the host always answers retry, then the job is dropped.
  device.beforeCall = [&](const std::string& call) {
    if (call == "Text 1440,1440 p2") throw RuntimeError(482, "Printer error");
  };
  retries = 0;
  retry.onPrinterError = [&] { return ++retries > 0; };
  ReplayResult gone = ReplaySpool(spool, device, retry);
  EXPECT_TRUE(gone.printerFailed);
  EXPECT_EQ(retries, kPrinterStepRepeats + 1);

  // Without a host to ask, the error goes to the caller.
  retry.onPrinterError = nullptr;
  EXPECT_THROW(ReplaySpool(spool, device, retry), RuntimeError);
}

TEST_F(SpoolReplayTest, ThePageIndexFindsEachPageForTheirOwnReplay) {
  const std::string threePages = SpoolFromText("three-pages");
  const std::string path = Spool(threePages.substr(0, threePages.size() - kSpoolRecordSize) +  // page 4 is empty
                                 Bytes(MakePageRecord(3, spool::kNewPage)) + Bytes(MakePageRecord(4, spool::kEndDoc)));
  SpoolReader reader(path);
  const SpoolPageIndex index = SpoolPageIndex::Build(reader);
  EXPECT_EQ(index.LastPage(), 4);

  // Backwards from the last page to the second, as the preview pages; where
  // each page starts shows in what is replayed.
  EXPECT_EQ(ReplayPage(reader, index, 3, device), (std::vector<std::string>{}));
  KeepCalls("page 3");
  ReplayPage(reader, index, 2, device);
  KeepCalls("page 2");
  ReplayPage(reader, index, 4, device);
  ReplayPage(reader, index, 9, device);
  KeepCalls("the empty page 4, then page 9 past the end");
  ExpectReplays();

  device.missingImages = {"chart.bmp"};
  EXPECT_EQ(ReplayPage(reader, index, 3, device), (std::vector<std::string>{"chart.bmp"}));
}

}  // namespace
}  // namespace cw
