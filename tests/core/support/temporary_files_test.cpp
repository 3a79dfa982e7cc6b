#include "support/temporary_files.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>

#include "support/atomic_file.h"
#include "support/file_helpers.h"
#include "testing/temp_folder.h"

namespace cw {
namespace {

namespace fs = std::filesystem;

// Runs `body` in a child process with the cleanup installed and TMPDIR set to
// `folder`; returns the child's wait status.
int InChild(const std::string& folder, const std::function<void()>& body) {
  std::fflush(nullptr);  // else the child's exit writes the parent's pending output again
  const pid_t child = ::fork();
  if (child == 0) {
    // An abort would otherwise leave a core file in the test's folder.
    const rlimit noCore{0, 0};
    ::setrlimit(RLIMIT_CORE, &noCore);
    ::setenv("TMPDIR", folder.c_str(), 1);
    InstallTemporaryFileCleanup();
    body();
    ::_exit(0);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return status;
}

// A spool and an output being written when the process is killed or aborts:
// both go, the process still ends by its signal, and a file that has taken
// its final name stays.
TEST(TemporaryFiles, ASignalOrAnAbortRemovesThemAndStillEndsTheProcess) {
  for (const int signal : {SIGTERM, SIGINT, SIGABRT}) {
    SCOPED_TRACE(signal);
    testing::TempFolder folder;
    const std::string output = folder.File("report.txt");
    const std::string kept = folder.File("kept.txt");
    const int status = InChild(folder.Path().string(), [&] {
      ASSERT_FALSE(GetTempFile("VPR").empty());
      AtomicFile finished(kept);
      finished.Write("complete");
      finished.Commit();
      AtomicFile half(output);
      half.Write("half");
      if (signal == SIGABRT) std::abort();
      ::raise(signal);
    });
    ASSERT_TRUE(WIFSIGNALED(status)) << status;
    EXPECT_EQ(WTERMSIG(status), signal);
    EXPECT_EQ(folder.Names(), std::set<std::string>{"kept.txt"});
  }
}

TEST(TemporaryFiles, AnOrdinaryExitRemovesWhatWasLeftAndForgottenFilesStay) {
  testing::TempFolder folder;
  std::string forgotten = folder.Write("forgotten.tmp", "kept");
  const int status = InChild(folder.Path().string(), [&] {
    // A file taken off the list (renamed to its final name, say) is not
    // removed, even when a later file of the same list is.
    RegisterTemporaryFile(forgotten);
    ForgetTemporaryFile(forgotten);
    GetTempFile("VPR");
    std::exit(0);
  });
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(folder.Names(), std::set<std::string>{"forgotten.tmp"});
}

}  // namespace
}  // namespace cw
