// The manual pages against the programs' own help: every option the help
// lists is in the page, under the same subcommand, and the page lists none
// that the help does not. Each difference is shown as a line, so that the
// page can be brought up to date from the failure alone.
#include <gtest/gtest.h>

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
      section = line.substr(4);  // the two sections read are one word each, unquoted
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

// A program's options by scope, as its help tells them: its own from
// "PROGRAM --help" (with the options of its usage lines, and --help, which
// every subcommand takes and the page tells once), each subcommand's from
// "PROGRAM help NAME"; the subcommands are those of the usage lines.
ScopedOptions HelpOptions(const std::string& program, const std::string& name) {
  const std::string help = HelpOf(Quote(program) + " --help");
  ScopedOptions scoped;
  Options& own = scoped[""];
  own = HelpOptionLines(help);
  own.insert("--help");
  std::istringstream lines(help.substr(0, help.find("\n\n")));
  for (std::string line; std::getline(lines, line);) {
    for (std::sregex_iterator it(line.begin(), line.end(), kOption), end; it != end; ++it) own.insert(it->str());
    std::smatch match;
    if (!std::regex_search(line, match, std::regex(name + R"( ([a-z][a-z0-9-]*))"))) continue;
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

TEST(ManPage, EachProgramListsTheOptionsOfItsHelp) {
  for (const std::string name : {"cwreport", "callwarden-reports"}) {
    const std::string program = CW_BINARY_DIR + std::string(name == "cwreport" ? "/src/cli/" : "/src/app/") + name;
    if (!std::filesystem::exists(program)) continue;  // the desktop program is not part of every build
    const ScopedOptions help = HelpOptions(program, name);
    // A parser that found nothing would agree with any page: cwreport has
    // some thirty options and five subcommands, the desktop program two
    // options.
    ASSERT_GE(help.at("").size(), name == "cwreport" ? 30u : 2u) << name;
    ASSERT_EQ(help.size(), name == "cwreport" ? 6u : 1u) << Listing(name, help);
    const std::string page = "data/man/" + name + ".1";
    EXPECT_EQ(Listing(name, PageOptions(ReadFile(CW_SOURCE_DIR "/" + page))), Listing(name, help))
        << page << " (its .SS headings under SUBCOMMANDS and their .TP tags) against the help";
  }
}

}  // namespace
}  // namespace cw::testing
