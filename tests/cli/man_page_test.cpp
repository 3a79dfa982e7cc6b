// The manual pages against the programs' own help: every option the help
// lists is in the page, under the same subcommand, and the page lists none
// that the help does not. Each difference is shown as a line, so that the
// page can be brought up to date from the failure alone.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include "run_cwreport.h"

namespace cw::testing {
namespace {

using Options = std::set<std::string>;
// Options by scope: "" for the program's own (cwreport: the report request),
// else the subcommand's name.
using ScopedOptions = std::map<std::string, Options>;

const std::regex kOption("--[a-z0-9][a-z0-9-]*");

std::string FirstOption(const std::string& text) {
  std::smatch match;
  return std::regex_search(text, match, kOption) ? match.str() : "";
}

// The options a page defines: the tag of every .TP paragraph that starts
// with one, under OPTIONS for the program itself and under the .SS
// "cwreport NAME ..." heading of a subcommand in SUBCOMMANDS. Every
// subcommand heading gets its scope, with options or without.
ScopedOptions PageOptions(const std::string& page) {
  ScopedOptions scoped;
  std::istringstream lines(std::regex_replace(page, std::regex(R"(\\-)"), "-"));
  std::string section;
  std::string scope;
  bool tagFollows = false;
  for (std::string line; std::getline(lines, line);) {
    if (line.rfind(".SH", 0) == 0) {
      section = line.substr(3);
      section.erase(std::remove(section.begin(), section.end(), '"'), section.end());
      section.erase(0, section.find_first_not_of(' '));
      scope.clear();
      if (section == "OPTIONS") scoped[scope];
    } else if (line.rfind(".SS", 0) == 0 && section == "SUBCOMMANDS") {
      std::smatch match;
      scope = std::regex_search(line, match, std::regex(R"(cwreport ([a-z][a-z0-9-]*))")) ? match[1].str() : line;
      scoped[scope];
    } else if (line.rfind(".TP", 0) == 0) {
      tagFollows = true;
      continue;
    } else if (tagFollows && (section == "OPTIONS" || section == "SUBCOMMANDS")) {
      if (const std::string option = FirstOption(line); !option.empty()) scoped[scope].insert(option);
    }
    tagFollows = false;
  }
  return scoped;
}

// The options of a help text: the lines "  --name ..." of its option lists.
Options HelpOptionLines(const std::string& help) {
  Options options;
  std::istringstream lines(help);
  for (std::string line; std::getline(lines, line);) {
    if (line.rfind("  --", 0) == 0) options.insert(FirstOption(line));
  }
  return options;
}

std::string HelpOf(const std::string& command) {
  int status = -1;
  const std::string out = RunShell(command + " 2>&1", &status);
  EXPECT_EQ(status, 0) << command << ":\n" << out;
  return out;
}

// cwreport's options by scope, as its help tells them: the report request's
// from "cwreport --help" (with the options of its usage lines, and --help,
// which every subcommand takes and the page tells once), each subcommand's
// from "cwreport help NAME"; the subcommands are those of the usage lines.
ScopedOptions CwreportHelpOptions(const std::string& program) {
  const std::string help = HelpOf(Quote(program) + " --help");
  ScopedOptions scoped;
  Options& request = scoped[""];
  request = HelpOptionLines(help);
  request.insert("--help");
  const std::string usage = help.substr(0, help.find("\n\n"));
  std::istringstream lines(usage);
  for (std::string line; std::getline(lines, line);) {
    for (std::sregex_iterator it(line.begin(), line.end(), kOption), end; it != end; ++it) request.insert(it->str());
    std::smatch match;
    if (!std::regex_search(line, match, std::regex(R"(cwreport ([a-z][a-z0-9-]*))"))) continue;
    const std::string subcommand = match[1];
    scoped[subcommand] =
        subcommand == "help" ? Options{} : HelpOptionLines(HelpOf(Quote(program) + " help " + subcommand));
  }
  return scoped;
}

// A line for each scope and one for each option in it, sorted: compared as
// texts, two listings show each difference as a line one of them lacks.
std::string Listing(const std::string& program, const ScopedOptions& scoped) {
  std::string listing;
  for (const auto& [scope, options] : scoped) {
    const std::string name = scope.empty() ? program : program + " " + scope;
    listing += name + "\n";
    for (const std::string& option : options) listing += name + " " + option + "\n";
  }
  return listing;
}

TEST(ManPage, CwreportListsTheOptionsOfItsHelp) {
  const ScopedOptions help = CwreportHelpOptions(CW_BINARY_DIR "/src/cli/cwreport");
  // A parser that found nothing would agree with any page.
  ASSERT_GE(help.at("").size(), 30u);
  ASSERT_TRUE(help.count("log-summary") && help.count("export"));
  EXPECT_EQ(Listing("cwreport", PageOptions(ReadFile(CW_SOURCE_DIR "/data/man/cwreport.1"))), Listing("cwreport", help))
      << "data/man/cwreport.1 (its .SS headings under SUBCOMMANDS and their .TP tags) against the help";
}

TEST(ManPage, DesktopProgramListsTheOptionsOfItsHelp) {
  if (!std::filesystem::exists(CW_BINARY_DIR "/src/app/callwarden-reports")) {
    GTEST_SKIP() << "the desktop program is not part of this build";
  }
  const Options help = HelpOptionLines(HelpOf(Quote(CW_BINARY_DIR "/src/app/callwarden-reports") + " --help"));
  ASSERT_EQ(help, (Options{"--help", "--version"}));
  EXPECT_EQ(Listing("callwarden-reports", PageOptions(ReadFile(CW_SOURCE_DIR "/data/man/callwarden-reports.1"))),
            Listing("callwarden-reports", {{"", help}}))
      << "data/man/callwarden-reports.1 against the help";
}

}  // namespace
}  // namespace cw::testing
