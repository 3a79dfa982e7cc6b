#pragma once
// Runs cwreport as a program (the one CWREPORT names, or else this build's),
// and the scratch folder each command-line test works in.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>

#include "testing/expected_file.h"
#include "testing/temp_folder.h"

namespace cw::testing {

using ::testing::HasSubstr;
using ::testing::Not;

struct ProgramRun {
  int status = -1;
  std::string out;
  std::string err;
};

inline std::string Quote(const std::string& text) { return "'" + text + "'"; }

// The number of records in a call log, each checked to be whole: 102
// characters and CR LF.
inline std::size_t WholeRecords(const std::string& log) {
  std::size_t start = 0;
  std::size_t records = 0;
  for (std::size_t end; (end = log.find("\r\n", start)) != std::string::npos; start = end + 2, ++records) {
    EXPECT_EQ(end - start, 102u) << log.substr(start, end - start);
  }
  EXPECT_EQ(start, log.size()) << "a record without its line end";
  return records;
}

inline std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// The standard output of a shell command; the exit status goes to status.
inline std::string RunShell(const std::string& command, int* status = nullptr) {
  std::string out;
  std::FILE* pipe = ::popen(command.c_str(), "r");
  if (pipe == nullptr) throw std::runtime_error("cannot run " + command);
  char chunk[4096];
  for (std::size_t n; (n = std::fread(chunk, 1, sizeof chunk, pipe)) > 0;) out.append(chunk, n);
  const int result = ::pclose(pipe);
  if (status != nullptr) *status = WIFEXITED(result) ? WEXITSTATUS(result) : -1;
  return out;
}

// A shell command in a child process, its standard output on `out` if given.
inline pid_t Spawn(const std::string& command, int out = -1) {
  const pid_t child = ::fork();
  if (child == 0) {
    if (out >= 0) ::dup2(out, STDOUT_FILENO);
    ::execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char*>(nullptr));
    ::_exit(127);
  }
  return child;
}

inline std::string CwreportProgram() {
  const char* fromEnvironment = std::getenv("CWREPORT");
  return fromEnvironment ? fromEnvironment : CW_BINARY_DIR "/src/cli/cwreport";
}

// arguments are already quoted for the shell, and `before` goes before the
// program (a folder to go to, variables to set); standard error is kept
// apart in run.err by way of errFile.
inline ProgramRun RunCwreport(const std::string& arguments, const std::filesystem::path& errFile,
                              const std::string& before = {}) {
  ProgramRun run;
  run.out = RunShell(before + Quote(CwreportProgram()) + " " + arguments + " 2>" + Quote(errFile.string()),
                     &run.status);
  run.err = ReadFile(errFile);
  std::filesystem::remove(errFile);
  return run;
}

inline const std::string kCliData = CW_TEST_DATA_DIR "/cli/";

// A fresh folder for each test, removed after it.
class CliTest : public ::testing::Test {
 protected:
  std::string Path(const std::string& name) const { return temp_.File(name); }
  std::string Write(const std::string& name, const std::string& bytes) { return temp_.Write(name, bytes); }
  // The names in the folder, hidden ones too, sorted.
  std::set<std::string> Names() const { return temp_.Names(); }
  ProgramRun Cwreport(const std::string& arguments) { return RunCwreport(arguments, folder_ / "stderr.txt"); }
  // Runs the "$ cwreport ..." lines of a transcript in tests/data/cli (a
  // variable may be set before the program's name), as the shell would in
  // the test's folder with `environment` set, and compares the transcript
  // of what they did with the file: after each command its standard output,
  // its standard error with every line marked "! ", and its exit status; at
  // the end, the names left in the folder. The folder's own path reads as
  // $DIR. Lines that begin with # are comments.
  void ExpectTranscript(const std::string& name, const std::string& environment = {}) {
    std::istringstream expected(ReadFile(kCliData + name));
    std::string actual;
    for (std::string line; std::getline(expected, line);) {
      if (line.starts_with("#")) actual += line + "\n";
      const std::size_t program = line.find("cwreport ");
      if (!line.starts_with("$ ") || program == std::string::npos) continue;
      const std::string before =
          "cd " + Quote(folder_.string()) + " && " + environment + " " + line.substr(2, program - 2);
      const ProgramRun run = RunCwreport(line.substr(program + 9), folder_ / ".stderr", before);
      std::string err = run.err.empty() ? "" : "! " + Replaced(run.err, "\n", "\n! ");
      err.resize(err.size() - (err.ends_with("! ") ? 2 : 0));
      actual += line + "\n" + Replaced(run.out + err, folder_.string(), "$DIR") + "[exit " +
                std::to_string(run.status) + "]\n\n";
    }
    actual += "[files:";
    for (const std::string& file : Names()) actual += " " + file;
    ExpectMatchesFile(actual + "]\n", "cli/" + name);
  }

  TempFolder temp_;
  const std::filesystem::path& folder_ = temp_.Path();
};

// The exit status, and a part of standard error (empty: any).
inline void ExpectRun(const ProgramRun& run, int status, const std::string& errPart = {}) {
  EXPECT_EQ(run.status, status) << run.err;
  EXPECT_THAT(run.err, HasSubstr(errPart));
}

// Report requests on a log of the test's own, in a folder with settings that
// name it and the folder as the logging program's; the data options that
// name them again come first, the request's arguments follow.
class ReportTest : public CliTest {
 protected:
  void UseLog(const std::string& log) {
    log_ = Write("CallLog.txt", log);
    settings_ = Write("settings.ini", "[Reports]\r\nCallType=InOut\r\nLogs=" + log_ + "\r\nPath=" + folder_.string() + "\r\n");
  }
  std::string DataOptions() const {
    return "--settings " + Quote(settings_) + " --path " + Quote(folder_.string()) + " --log " + Quote(log_) + " ";
  }
  ProgramRun Report(const std::string& arguments) { return Cwreport(DataOptions() + arguments); }

  std::string log_;
  std::string settings_;
};

inline const std::string kJanuary = " --from 01/01/2026 --to 01/31/2026 ";

}  // namespace cw::testing
