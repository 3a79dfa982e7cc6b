#include "cli/option_table.h"

#include <charconv>

namespace cw::cli {

namespace {

constexpr std::size_t kHelpColumn = 24;
constexpr std::string_view kRangeMark = "{range}";

const OptionRule* Lookup(std::span<const OptionRule* const> table, std::string_view name) {
  for (const OptionRule* rule : table) {
    if (rule->name == name) return rule;
  }
  return nullptr;
}

std::int64_t WholeNumber(const OptionRule& rule, const std::string& text) {
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  // A number too long for 64 bits is out of range as much as 40000 is.
  const bool digits = !text.empty() && end == text.data() + text.size() &&
                      (error == std::errc() || error == std::errc::result_out_of_range);
  if (!digits || error != std::errc() || value < rule.minimum || value > rule.maximum) {
    throw UsageError{RangeText(rule) + ", not \"" + text + "\""};
  }
  return value;
}

}  // namespace

const GivenOption* ParsedArguments::Find(const OptionRule& rule) const {
  for (const GivenOption& given : options) {
    if (given.rule == &rule) return &given;
  }
  return nullptr;
}

std::vector<std::string> ParsedArguments::All(const OptionRule& rule) const {
  std::vector<std::string> values;
  for (const GivenOption& given : options) {
    if (given.rule == &rule) values.push_back(given.value);
  }
  return values;
}

std::string RangeText(const OptionRule& rule) {
  return std::string(rule.name) + " needs a whole number from " + std::to_string(rule.minimum) + " to " +
         std::to_string(rule.maximum);
}

ParsedArguments ParseArguments(std::span<const OptionRule* const> table, const std::vector<std::string>& arguments,
                               std::size_t maxOperands) {
  ParsedArguments parsed;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (argument == "--help" || argument == "-h") {
      parsed.help = true;
      return parsed;
    }
    if (!argument.starts_with("-") || argument == "-") {
      if (parsed.operands.size() >= maxOperands) {
        throw UsageError{maxOperands == 0 ? "unexpected argument \"" + argument + "\""
                                          : "one " + std::string(maxOperands == 1 ? "file" : "operand") +
                                                " only, not also \"" + argument + "\""};
      }
      parsed.operands.push_back(argument);
      continue;
    }
    const std::size_t equals = argument.find('=');
    const std::string_view name = std::string_view(argument).substr(0, equals);
    const OptionRule* rule = Lookup(table, name);
    if (rule == nullptr) throw UsageError{"unknown option " + std::string(name)};
    if (!rule->repeatable && parsed.Find(*rule) != nullptr) throw UsageError{std::string(name) + " given twice"};

    GivenOption given;
    given.rule = rule;
    if (equals != std::string::npos) {
      if (rule->kind == ValueKind::kNone) throw UsageError{std::string(name) + " takes no value"};
      given.value = argument.substr(equals + 1);
    } else if (rule->kind == ValueKind::kText || rule->kind == ValueKind::kWhole) {
      if (i + 1 >= arguments.size()) {
        throw UsageError{std::string(name) + " needs a value"};
      }
      given.value = arguments[++i];
    } else if (rule->kind == ValueKind::kOptional && i + 1 < arguments.size() &&
               !arguments[i + 1].starts_with("--")) {
      given.value = arguments[++i];
    }
    if (rule->kind == ValueKind::kWhole) given.number = WholeNumber(*rule, given.value);
    parsed.options.push_back(std::move(given));
  }
  return parsed;
}

std::string OptionHelp(std::span<const OptionRule* const> table) {
  std::string help;
  for (const OptionRule* rule : table) {
    std::string left = "  " + std::string(rule->name);
    if (!rule->valueName.empty()) {
      left += rule->kind == ValueKind::kOptional ? " [" + std::string(rule->valueName) + "]"
                                                 : " " + std::string(rule->valueName);
    }
    std::string text(rule->help);
    if (rule->kind == ValueKind::kWhole) {
      const std::string range = std::to_string(rule->minimum) + " to " + std::to_string(rule->maximum);
      if (const std::size_t mark = text.find(kRangeMark); mark != std::string::npos) {
        text.replace(mark, kRangeMark.size(), range);
      } else {
        text += " (" + range + ")";
      }
    }
    const std::string indent(kHelpColumn, ' ');
    if (left.size() + 1 > kHelpColumn) {
      help += left + "\n" + indent;
    } else {
      help += left + std::string(kHelpColumn - left.size(), ' ');
    }
    for (char c : text) {
      help += c;
      if (c == '\n') help += indent;
    }
    help += '\n';
  }
  return help;
}

}  // namespace cw::cli
