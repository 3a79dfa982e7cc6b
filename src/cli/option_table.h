#pragma once
// The one option parser of cwreport: every subcommand describes its options
// in a table (name, what value it takes, its range, its help text), the
// parser reads the arguments against that table, and --help is printed from
// the same table, so what is accepted and what is documented cannot drift
// apart.

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace cw::cli {

// A mistake in the arguments themselves (exit status 2).
struct UsageError {
  std::string text;
};

enum class ValueKind {
  kNone,      // a switch: --chart
  kText,      // --log FILE or --log=FILE
  kOptional,  // --print [PRINTER]: the next argument is its value unless it is an option
  kWhole,     // a whole number within [minimum, maximum]
};

struct OptionRule {
  std::string_view name;       // "--rings"
  std::string_view valueName;  // "N"; empty for a switch
  ValueKind kind = ValueKind::kNone;
  std::string_view help;       // lines after the first are indented under it
  std::int64_t minimum = 0;    // kWhole only
  std::int64_t maximum = 0;
  bool repeatable = false;     // may be given more than once: --trunk A=1 --trunk B=2
};

struct GivenOption {
  const OptionRule* rule = nullptr;
  std::string value;   // as typed; empty for a switch or an optional value not given
  std::int64_t number = 0;  // kWhole: the value, within its range
};

struct ParsedArguments {
  bool help = false;  // --help or -h: nothing else was checked
  std::vector<GivenOption> options;  // in the order given; each option at most once unless repeatable
  std::vector<std::string> operands;  // arguments that are not options ("-" is one)

  // The option given under this rule, or nullptr.
  const GivenOption* Find(const OptionRule& rule) const;
  // Every value given under a repeatable rule, in order.
  std::vector<std::string> All(const OptionRule& rule) const;
};

// Reads --name VALUE and --name=VALUE alike. Throws UsageError for an
// unknown option, a missing or unwanted value, a number out of its range, an
// option given twice (unless repeatable), or more operands than maxOperands.
ParsedArguments ParseArguments(std::span<const OptionRule* const> table, const std::vector<std::string>& arguments,
                               std::size_t maxOperands);

// The help lines of these options, "  --name VALUE   help", the help column
// aligned; a whole number's range is part of its text ("(10 to 600)").
std::string OptionHelp(std::span<const OptionRule* const> table);

// "--dpi needs a whole number from 10 to 600": the range as the help shows it.
std::string RangeText(const OptionRule& rule);

}  // namespace cw::cli
