#pragma once
// The CUPS PDF queue of the printing tests (scripts/start-cups-pdf.sh sets it
// up): its name, whether it is there, and the folder where cups-pdf writes
// the jobs of this user.

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <string>

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

}  // namespace cw::testing
