#pragma once
// The CUPS PDF queue of the printing tests (scripts/start-cups-pdf.sh sets it
// up): its name, whether it is there, the folder where cups-pdf writes the
// jobs of this user, and how to pick a finished job's PDF out of it.

#include <pwd.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <string>
#include <thread>

namespace cw::testing {

// CW_CUPS_PDF_QUEUE, else CW_PDF.
inline std::string CupsPdfQueueName() {
  const char* name = std::getenv("CW_CUPS_PDF_QUEUE");
  return name != nullptr && *name != '\0' ? name : "CW_PDF";
}

// Whether CUPS has the queue (asked of lpstat, which every CUPS client has).
inline bool CupsQueueExists(const std::string& queue) {
  const std::string command = "lpstat -v '" + queue + "' >/dev/null 2>&1";
  return std::system(command.c_str()) == 0;
}

inline void ReplaceAll(std::string& text, const std::string& what, const std::string& with) {
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size())) {
    text.replace(at, what.size(), with);
  }
}

// Where cups-pdf writes the jobs of this user: its configuration's "Out",
// unless CW_CUPS_PDF_DIR names the folder.
inline std::filesystem::path CupsPdfFolder() {
  if (const char* given = std::getenv("CW_CUPS_PDF_DIR"); given != nullptr && *given != '\0') return given;
  std::string out = "${HOME}/PDF";
  std::ifstream conf("/etc/cups/cups-pdf.conf");
  const std::regex line(R"(^\s*Out\s+(\S.*?)\s*$)");
  std::smatch match;
  for (std::string raw; std::getline(conf, raw);) {
    if (std::regex_match(raw, match, line)) out = match[1];
  }
  // cups-pdf takes the home folder and name of the job's user from the
  // password database, not from the environment.
  const passwd* user = ::getpwuid(::getuid());
  const char* home = std::getenv("HOME");
  ReplaceAll(out, "${HOME}", user != nullptr ? user->pw_dir : home != nullptr ? home : "");
  ReplaceAll(out, "${USER}", user != nullptr ? user->pw_name : "");
  return out;
}

// pdfinfo's page count; -1 while the file is not a whole PDF.
inline int PdfPageCount(const std::filesystem::path& pdf) {
  std::FILE* pipe = ::popen(("pdfinfo '" + pdf.string() + "' 2>/dev/null").c_str(), "r");
  if (pipe == nullptr) return -1;
  std::string info;
  char chunk[1024];
  for (std::size_t n; (n = std::fread(chunk, 1, sizeof chunk, pipe)) > 0;) info.append(chunk, n);
  if (::pclose(pipe) != 0) return -1;
  const std::size_t at = info.find("Pages:");
  return at == std::string::npos ? -1 : std::stoi(info.substr(at + 6));
}

inline std::set<std::filesystem::path> PdfsIn(const std::filesystem::path& folder) {
  std::set<std::filesystem::path> files;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
    if (entry.path().extension() == ".pdf") files.insert(entry.path());
  }
  return files;
}

// The queue writes in the background: waits (bounded) for a finished PDF
// whose name holds nameHolds and that was not among before, and moves it out
// of the queue's folder to keepAs. Empty when none came.
inline std::filesystem::path TakeNewPdf(const std::filesystem::path& folder,
                                        const std::set<std::filesystem::path>& before, const std::string& nameHolds,
                                        const std::filesystem::path& keepAs) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(90);
  while (std::chrono::steady_clock::now() < deadline) {
    for (const std::filesystem::path& pdf : PdfsIn(folder)) {
      if (before.contains(pdf) || pdf.filename().string().find(nameHolds) == std::string::npos) continue;
      if (PdfPageCount(pdf) <= 0) continue;
      std::filesystem::copy_file(pdf, keepAs, std::filesystem::copy_options::overwrite_existing);
      std::filesystem::remove(pdf);
      return keepAs;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
  }
  return {};
}

}  // namespace cw::testing
