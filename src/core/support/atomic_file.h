#pragma once
// The one writer of every file the program produces (text export, kept
// spool, PDF, page images, settings).
//
// What a name refers to decides how it is written:
// - a regular file or a name not yet taken: the bytes go to a hidden
//   temporary file beside it, which takes the name only when complete, so a
//   failure leaves the previous file as it was. A file that is replaced keeps
//   its permissions and, where the system allows, its owner.
// - a symbolic link: followed, so that the file it points to is written and
//   the link stays.
// - a character device, a FIFO or a terminal (/dev/null, a named pipe,
//   /dev/stdout, /dev/fd/N): written straight into, never replaced.
// - anything else (a folder, a socket, a block device) is refused.

#include <sys/types.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cw {

enum class OutputKind {
  kNewFile,   // nothing is there yet
  kFile,      // a regular file, replaced whole
  kStream,    // a device or FIFO, written into
  kRefused,   // cannot be an output
};

// A name after its links are followed, and what is there.
struct OutputTarget {
  std::string path;    // the name to write (the links' end)
  OutputKind kind = OutputKind::kNewFile;
  std::string refusal;  // kRefused: what is there, e.g. "a folder"
};

// Follows the links of `name` and says what it refers to. Never throws: a
// name that cannot be looked into is a new file, whose creation will tell
// why it fails.
OutputTarget ResolveOutputTarget(const std::string& name);

// The identity of an existing file (after links), to tell whether two names
// are one file however they are spelt.
struct FileIdentity {
  dev_t device = 0;
  ino_t inode = 0;
  friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};
std::optional<FileIdentity> IdentityOf(const std::string& path);

class AtomicFile {
 public:
  // When a complete file takes its name: at Commit, or only at Publish (to
  // make several outputs appear together, after all of them are complete).
  enum class Publishing { kAtCommit, kLater };

  // Opens the temporary file (or the device). Errors: 75 with the reason, or
  // 76 when the folder does not exist; 75 too for a target that cannot be an
  // output.
  explicit AtomicFile(std::string target, Publishing publishing = Publishing::kAtCommit);
  // Without Publish the temporary file is removed; the target is untouched.
  ~AtomicFile();
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  void Write(std::string_view bytes);
  // Every byte is written and on disk. With kAtCommit the file then takes its
  // name. Errors 75/76; the temporary file is then removed.
  void Commit();
  // After Commit, with kLater: the complete file takes its name. Errors
  // 75/76 (the target keeps what it had).
  void Publish();

  const std::string& Target() const { return target_; }
  // True when the target is a device or FIFO written straight into.
  bool Streamed() const { return streamed_; }

 private:
  void Flush();
  void KeepOwnerAndMode();
  [[noreturn]] void Fail(int error, const std::string& reason = {});
  void Discard() noexcept;

  std::string target_;     // as given, for messages
  std::string path_;       // where it is written (links followed)
  std::string temporary_;  // empty when streamed or done
  Publishing publishing_;
  bool streamed_ = false;
  bool committed_ = false;
  bool replacing_ = false;
  mode_t mode_ = 0;
  uid_t owner_ = 0;
  gid_t group_ = 0;
  int fd_ = -1;
  // Grows with what is written, up to one block: most files written are a
  // settings file of a few hundred bytes, which a block set aside up front
  // would cost a megabyte of fresh pages each time.
  std::vector<char> pending_;
};

}  // namespace cw
