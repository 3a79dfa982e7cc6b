#include "cli/output_checks.h"

#include <sys/stat.h>

#include "support/atomic_file.h"

namespace cw::cli {

namespace {

[[noreturn]] void Refuse(const NamedOutput& output, const std::string& why) {
  throw OutputRefusal{output.option + " " + output.path + ": " + why};
}

void CheckFolder(const NamedOutput& output) {
  struct stat info;
  // A missing folder is made; anything else there must be a folder.
  if (::stat(output.path.c_str(), &info) == 0 && !S_ISDIR(info.st_mode)) {
    Refuse(output, "not a folder; the page images need a folder");
  }
}

}  // namespace

void CheckOutputs(const std::vector<NamedOutput>& outputs, const std::vector<NamedInput>& inputs) {
  int toStandardOutput = 0;
  for (const NamedOutput& output : outputs) {
    if (output.path == "-") {
      if (output.option != "--text" && output.option != "--pdf") Refuse(output, "cannot go to standard output");
      if (++toStandardOutput > 1) Refuse(output, "only one output can go to standard output");
      continue;
    }
    if (output.folder) {
      CheckFolder(output);
      continue;
    }
    const OutputTarget target = ResolveOutputTarget(output.path);
    if (target.kind == OutputKind::kRefused) {
      Refuse(output, "this is " + target.refusal + "; an output must be a file, a character device or a FIFO");
    }
    // A device (/dev/null) is written into, not replaced: reading from it
    // too is no harm to either.
    if (target.kind != OutputKind::kFile) continue;
    const std::optional<FileIdentity> identity = IdentityOf(target.path);
    for (const NamedInput& input : inputs) {
      if (identity && identity == IdentityOf(input.path)) {
        Refuse(output, "this is " + input.what + " (" + input.path + "), which the report reads");
      }
    }
  }
}

}  // namespace cw::cli
