#pragma once
// Runs cwreport as a program: the one CWREPORT names, or else this build's.

#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace cw::testing {

struct ProgramRun {
  int status = -1;
  std::string out;
  std::string err;
};

inline std::string ShellQuote(const std::string& text) { return "'" + text + "'"; }

// arguments are already quoted for the shell. With an errFile, standard error
// is kept apart in run.err; without one it is merged into run.out.
inline ProgramRun RunCwreport(const std::string& arguments, const std::filesystem::path& errFile = {}) {
  const char* fromEnvironment = std::getenv("CWREPORT");
  const std::string program = fromEnvironment ? fromEnvironment : CW_BINARY_DIR "/src/cli/cwreport";
  const std::string command = ShellQuote(program) + " " + arguments +
                              (errFile.empty() ? std::string(" 2>&1") : " 2>" + ShellQuote(errFile.string()));
  ProgramRun run;
  std::FILE* pipe = ::popen(command.c_str(), "r");
  if (pipe == nullptr) throw std::runtime_error("cannot run " + command);
  char chunk[4096];
  for (std::size_t n; (n = std::fread(chunk, 1, sizeof chunk, pipe)) > 0;) run.out.append(chunk, n);
  const int status = ::pclose(pipe);
  run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  if (!errFile.empty()) {
    std::ifstream in(errFile, std::ios::binary);
    run.err.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    in.close();
    std::filesystem::remove(errFile);
  }
  return run;
}

}  // namespace cw::testing
