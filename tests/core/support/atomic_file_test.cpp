#include "support/atomic_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <string>
#include <thread>

#include "core/support/error_number.h"
#include "testing/temp_folder.h"

namespace cw {
namespace {

namespace fs = std::filesystem;
using test::ErrorNumberOf;
using testing::ReadBytes;
using testing::WriteBytes;

void WriteWhole(const std::string& target, const std::string& bytes) {
  AtomicFile file(target);
  file.Write(bytes);
  file.Commit();
}

mode_t ModeOf(const std::string& path) {
  struct stat info {};
  EXPECT_EQ(::stat(path.c_str(), &info), 0) << path;
  return info.st_mode & 07777;
}

// Every name a file may be written through, and what is on disk afterwards.
TEST(AtomicFile, FollowsLinksAndKeepsTheModeAndOwnerOfWhatItReplaces) {
  testing::TempFolder folder;
  const std::string real = folder.Write("real.txt", "old");
  ::chmod(real.c_str(), 0640);
  // Only root can give a file to another user, and so see that it stays theirs.
  const uid_t owner = ::geteuid() == 0 ? 4321 : ::geteuid();
  const gid_t group = ::geteuid() == 0 ? 4322 : ::getegid();
  ASSERT_EQ(::chown(real.c_str(), owner, group), 0);
  ::mkdir(folder.File("sub").c_str(), 0755);
  fs::create_symlink("real.txt", folder.File("relative-link"));
  fs::create_symlink("../real.txt", folder.File("sub/up-link"));
  fs::create_symlink(folder.File("relative-link"), folder.File("link-to-link"));
  fs::create_symlink("made-by-writing.txt", folder.File("dangling"));

  struct Case {
    std::string name;     // written through
    std::string lands;    // where the bytes end up
    mode_t mode;          // of the file written
  };
  const mode_t mask = ::umask(0);
  ::umask(mask);
  const Case cases[] = {
      {"real.txt", "real.txt", 0640},
      {"relative-link", "real.txt", 0640},
      {"sub/up-link", "real.txt", 0640},
      {"link-to-link", "real.txt", 0640},
      {"dangling", "made-by-writing.txt", static_cast<mode_t>(0666 & ~mask)},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    WriteWhole(folder.File(c.name), "new " + c.name);
    EXPECT_EQ(ReadBytes(folder.File(c.lands)), "new " + c.name);
    EXPECT_EQ(ModeOf(folder.File(c.lands)), c.mode);
  }
  for (const char* link : {"relative-link", "sub/up-link", "link-to-link", "dangling"}) {
    EXPECT_TRUE(fs::is_symlink(folder.File(link))) << link << " was replaced";
  }
  // Nothing but the files above: no temporary file is left.
  EXPECT_EQ(folder.Names().size(), 6u);
  struct stat info {};
  ASSERT_EQ(::stat(real.c_str(), &info), 0);
  EXPECT_EQ(info.st_uid, owner);
  EXPECT_EQ(info.st_gid, group);
}

TEST(AtomicFile, WritesIntoDevicesAndPipesWithoutReplacingThem) {
  // A device of the test's own is written into by cwreport's
  // OutputSafety.DevicesAreWrittenInto; a full device is a failed write, not
  // a replaced node.
  testing::TempFolder folder;
  struct stat info {};
  EXPECT_EQ(ErrorNumberOf([] { WriteWhole("/dev/full", std::string(100, 'x')); }), err::kPathFileAccess);
  ASSERT_EQ(::stat("/dev/full", &info), 0);
  EXPECT_TRUE(S_ISCHR(info.st_mode));

  const std::string fifo = folder.File("pipe");
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
  std::string received;
  std::thread reader([&] { received = ReadBytes(fifo); });
  WriteWhole(fifo, "through the pipe");
  reader.join();
  EXPECT_EQ(received, "through the pipe");
  ASSERT_EQ(::lstat(fifo.c_str(), &info), 0);
  EXPECT_TRUE(S_ISFIFO(info.st_mode));

  EXPECT_EQ(ResolveOutputTarget("/dev/stdout").kind, OutputKind::kStream);
}

TEST(AtomicFile, RefusesWhatCannotBeAnOutputAndLeavesItAlone) {
  testing::TempFolder folder;
  ::mkdir(folder.File("folder").c_str(), 0755);
  fs::create_symlink("folder", folder.File("link-to-folder"));
  fs::create_symlink("loop-b", folder.File("loop-a"));
  fs::create_symlink("loop-a", folder.File("loop-b"));
  const std::string socketPath = folder.File("socket");
  const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, socketPath.c_str(), sizeof address.sun_path - 1);
  ASSERT_EQ(::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);

  for (const auto& [name, refusal] : {std::pair{"folder", "a folder"}, {"link-to-folder", "a folder"},
                                      {"socket", "a socket"}, {"loop-a", "a loop of links"}}) {
    const test::RaisedError error = test::ErrorOf([&] { WriteWhole(folder.File(name), "x"); });
    EXPECT_EQ(error.number, err::kPathFileAccess) << name;
    EXPECT_NE(error.description.find(refusal), std::string::npos) << error.description;
  }
  ::close(socket);
  EXPECT_TRUE(fs::is_directory(folder.File("folder")));
  EXPECT_TRUE(fs::is_empty(folder.File("folder")));
  EXPECT_TRUE(fs::is_socket(socketPath));
  EXPECT_EQ(folder.Names().size(), 5u);
  // A missing folder is 76, as the classic error for a path not found.
  EXPECT_EQ(ErrorNumberOf([&] { WriteWhole(folder.File("missing/x.txt"), "x"); }), err::kPathNotFound);
}

TEST(AtomicFile, TakesItsNameOnlyWhenCompleteAndPublished) {
  testing::TempFolder folder;
  const std::string target = folder.Write("report.txt", "previous");
  {
    AtomicFile dropped(target);
    dropped.Write("half of it");
  }
  EXPECT_EQ(ReadBytes(target), "previous");
  {
    AtomicFile later(target, AtomicFile::Publishing::kLater);
    later.Write("complete");
    later.Commit();
    EXPECT_EQ(ReadBytes(target), "previous");
    later.Publish();
    EXPECT_EQ(ReadBytes(target), "complete");
  }
  {
    AtomicFile unpublished(target, AtomicFile::Publishing::kLater);
    unpublished.Write("never published");
    unpublished.Commit();
  }
  EXPECT_EQ(ReadBytes(target), "complete");
  EXPECT_EQ(folder.Names().size(), 1u);
}

TEST(AtomicFile, IdentityIsTheSameWhateverTheSpelling) {
  testing::TempFolder folder;
  const std::string file = folder.Write("CallLog.txt", "calls");
  fs::create_hard_link(file, folder.File("hard"));
  fs::create_symlink(file, folder.File("soft"));
  const std::optional<FileIdentity> identity = IdentityOf(file);
  ASSERT_TRUE(identity);
  for (const std::string& name : {folder.File("hard"), folder.File("soft"), folder.Path().string() + "/./CallLog.txt"}) {
    EXPECT_EQ(IdentityOf(name), identity) << name;
  }
  EXPECT_NE(IdentityOf(folder.Write("other.txt", "calls")), identity);
  EXPECT_FALSE(IdentityOf(folder.File("missing")));
  EXPECT_FALSE(IdentityOf(""));
}

}  // namespace
}  // namespace cw
