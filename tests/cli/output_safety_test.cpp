// What cwreport does to the files around it: an output never replaces an
// input or something that is not a file, a request that fails leaves the
// files of an earlier run as they were, and a killed run leaves no spool.
#include <gtest/gtest.h>
#include <pty.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <set>
#include <string>
#include <thread>

#include "core/data/log_lines.h"
#include "run_cwreport.h"

namespace cw::testing {
namespace {

namespace fs = std::filesystem;

const std::string kMuller = "--report name --search 'M\xDCLLER ANNA'" + kJanuary;

class OutputSafety : public ReportTest {
 protected:
  void SetUp() override {
    ReportTest::SetUp();
    UseLog(LogOf({Call().Date("01/05/2026").Name("SMITH JOHN"),
                  Call().Date("01/06/2026").Name("M\xDCLLER ANNA").Answered("No").Rings("4"),
                  Call().Date("01/07/2026").Name("Smith John").Direction("Out")}));
    busy_ = Write("BusyLines.log", "01/05/2026,9:00AM,60\r\n");
  }
  // The command run by the shell with its standard error in err.txt.
  std::string Shell(const std::string& arguments) const {
    return Quote(CwreportProgram()) + " " + arguments + " 2>" + Quote(Path("err.txt"));
  }

  std::string busy_;
};

// The refusals and messages are in the transcript; here, that the inputs
// and what is no file are as they were.
TEST_F(OutputSafety, InputsAndWhatIsNoFileAreNeverWrittenOver) {
  fs::create_hard_link(log_, Path("hard-link-to-log"));
  fs::create_symlink(settings_, Path("link-to-settings"));
  fs::create_directory(Path("folder"));
  fs::create_directory(Path("settings-folder"));
  Write("empty.spl", "");
  const std::string log = ReadFile(log_);
  const std::string settings = ReadFile(settings_);
  ExpectTranscript("output-safety.txt", "CW_SETTINGS=settings.ini");
  EXPECT_EQ(ReadFile(log_), log);
  EXPECT_EQ(ReadFile(busy_), "01/05/2026,9:00AM,60\r\n");
  EXPECT_EQ(ReadFile(settings_), settings);
  EXPECT_TRUE(fs::is_symlink(Path("link-to-settings")));
}

TEST_F(OutputSafety, DevicesAreWrittenInto) {
  // A null device of the test's own, so that a fault cannot break the
  // machine's /dev/null.
  const std::string device = Path("null");
  if (::mknod(device.c_str(), S_IFCHR | 0666, makedev(1, 3)) != 0) GTEST_SKIP() << "cannot make a device node here";
  ExpectRun(Report("--report daily" + kJanuary + "--text " + Quote(device) + " --spool " + Quote(device)), 0);
  EXPECT_TRUE(fs::is_character_file(device));
}

// A request whose PDF cannot be written leaves an earlier report whole and
// no CSV beside it. Writing through links and keeping permissions is
// AtomicFile's; which staged output is kept is StagedOutputs'.
TEST_F(OutputSafety, AFailingLaterOutputLeavesTheEarlierFilesAsTheyWere) {
  const std::string kept = Write("report.txt", "an earlier report\r\n");
  const auto before = Names();
  ExpectRun(Report("--report history" + kJanuary + "--text " + Quote(kept) + " --csv " + Quote(Path("calls.csv")) +
                   " --pdf " + Quote(Path("missing/report.pdf"))),
            1, "missing/report.pdf");
  EXPECT_EQ(ReadFile(kept), "an earlier report\r\n");
  EXPECT_EQ(Names(), before);  // and no temporary file is left
}

TEST_F(OutputSafety, TextEncodingAndThePdfOnStandardOutput) {
  // The name as it comes out; CR LF line ends with Windows-1252 only.
  for (const auto& [encoding, name] : {std::pair{"", "M\xDCLLER ANNA"}, {" --encoding windows-1252", "M\xDCLLER ANNA"},
                                       {" --encoding utf-8", "M\xC3\x9CLLER ANNA"}}) {
    SCOPED_TRACE(encoding);
    const ProgramRun run = Report(kMuller + encoding);
    ExpectRun(run, 0);
    EXPECT_THAT(run.out, HasSubstr(name));
    const bool windows = std::string(name).starts_with("M\xDC");
    EXPECT_EQ(run.out.find("\r\n") != std::string::npos, windows);
    EXPECT_EQ(Replaced(run.out, "\r\n", "").find('\r'), std::string::npos) << "a CR without its LF";
  }

  const ProgramRun pdf =
      RunCwreport(DataOptions() + kMuller + " --pdf -", Path("stderr.txt"), "cd " + Quote(folder_.string()) + " && ");
  ExpectRun(pdf, 0);
  EXPECT_TRUE(pdf.out.starts_with("%PDF-")) << pdf.out.substr(0, 20);
  EXPECT_FALSE(fs::exists(Path("-")));
}

// Standard output on a terminal: the text comes in UTF-8 with LF, unless
// --encoding asks for the file format. The terminal is a pseudo-terminal in
// raw mode, so that its own line discipline adds no CR.
TEST_F(OutputSafety, TextOnATerminalIsUtf8WithLf) {
  for (const bool fileFormat : {false, true}) {
    SCOPED_TRACE(fileFormat);
    int terminal = -1;
    int inside = -1;
    ASSERT_EQ(::openpty(&terminal, &inside, nullptr, nullptr, nullptr), 0);
    termios raw{};
    ::tcgetattr(inside, &raw);
    ::cfmakeraw(&raw);
    ::tcsetattr(inside, TCSANOW, &raw);
    const pid_t child =
        Spawn(Shell(DataOptions() + kMuller + (fileFormat ? " --encoding windows-1252" : "")), inside);
    ::close(inside);
    std::string out;
    char chunk[4096];
    // The terminal reads end (EIO) once the program has closed it.
    for (ssize_t n; (n = ::read(terminal, chunk, sizeof chunk)) > 0;) out.append(chunk, static_cast<std::size_t>(n));
    ::close(terminal);
    int status = 0;
    ::waitpid(child, &status, 0);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0) << ReadFile(Path("err.txt"));
    EXPECT_THAT(out, HasSubstr(fileFormat ? "M\xDCLLER ANNA" : "M\xC3\x9CLLER ANNA"));
    EXPECT_EQ(out.find('\r') != std::string::npos, fileFormat) << out;
  }
}

// A spool bigger than the temporary folder can hold is refused before it is
// begun. The log is sparse: it claims a terabyte and takes no room.
TEST_F(OutputSafety, AListingThatCannotFitInTheTemporaryFolderIsRefused) {
  fs::resize_file(log_, std::uintmax_t{1} << 40);
  ExpectRun(Report("--history 5551234567 --today 02/01/2026 --text " + Quote(Path("out.txt"))), 2,
            "set TMPDIR to a folder with more room");
  EXPECT_FALSE(fs::exists(Path("out.txt")));
}

// A long listing killed while it writes its spool leaves no spool and no
// output behind, and still ends by the signal. The signal is sent once the
// spool exists, which a log of this size keeps there for seconds.
TEST_F(OutputSafety, ARunKilledMidwayLeavesNoTemporaryFile) {
  std::string log;
  const std::string call = Call().Date("01/05/2026").Text() + "\r\n";
  for (int i = 0; i < 20000; ++i) log += call;
  Write("CallLog.txt", log);
  const fs::path temporary = folder_ / "tmp";
  fs::create_directory(temporary);

  const pid_t child = Spawn("export TMPDIR=" + Quote(temporary.string()) + "; exec " +
                            Shell(DataOptions() + "--report history" + kJanuary + "--text " + Quote(Path("out.txt")) +
                                  " --pdf " + Quote(Path("out.pdf"))));
  ASSERT_GT(child, 0);
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  const auto spoolIsThere = [&] {
    for (const auto& entry : fs::directory_iterator(temporary)) {
      if (entry.path().filename().string().starts_with("VPR")) return true;
    }
    return false;
  };
  bool spooling = false;
  while (!(spooling = spoolIsThere()) && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  ::kill(child, SIGTERM);
  int status = 0;
  ::waitpid(child, &status, 0);
  ASSERT_TRUE(spooling) << "the report never began its spool";
  ASSERT_TRUE(WIFSIGNALED(status)) << "the report ended before the signal came; status " << status;
  EXPECT_EQ(WTERMSIG(status), SIGTERM);
  // Qt may have made its runtime folder there; no file is left.
  for (const auto& entry : fs::recursive_directory_iterator(temporary)) {
    EXPECT_TRUE(entry.is_directory()) << entry.path();
  }
  EXPECT_EQ(Names(), (std::set<std::string>{"BusyLines.log", "CallLog.txt", "err.txt", "settings.ini", "tmp"}));
}

}  // namespace
}  // namespace cw::testing
