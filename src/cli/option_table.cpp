#include "cli/option_table.h"

#include <charconv>

namespace cw::cli {

namespace {

constexpr std::size_t kHelpColumn = 24;
constexpr std::string_view kRangeMark = "{range}";

const OptionSpec* Lookup(std::span<const OptionSpec* const> table, std::string_view name) {
  for (const OptionSpec* spec : table) {
    if (spec->name == name) return spec;
  }
  return nullptr;
}

std::int64_t WholeNumber(const OptionSpec& spec, const std::string& text) {
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  // A number too long for 64 bits is out of range as much as 40000 is.
  const bool digits = !text.empty() && end == text.data() + text.size() &&
                      (error == std::errc() || error == std::errc::result_out_of_range);
  if (!digits || error != std::errc() || value < spec.minimum || value > spec.maximum) {
    throw UsageError{RangeText(spec) + ", not \"" + text + "\""};
  }
  return value;
}

}  // namespace

const GivenOption* ParsedArguments::Find(const OptionSpec& spec) const {
  for (const GivenOption& given : options) {
    if (given.spec == &spec) return &given;
  }
  return nullptr;
}

std::string RangeText(const OptionSpec& spec) {
  return std::string(spec.name) + " needs a whole number from " + std::to_string(spec.minimum) + " to " +
         std::to_string(spec.maximum);
}

ParsedArguments ParseArguments(std::span<const OptionSpec* const> table, const std::vector<std::string>& arguments,
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
    const OptionSpec* spec = Lookup(table, name);
    if (spec == nullptr) throw UsageError{"unknown option " + std::string(name)};
    if (parsed.Find(*spec) != nullptr) throw UsageError{std::string(name) + " given twice"};

    GivenOption given;
    given.spec = spec;
    if (equals != std::string::npos) {
      if (spec->kind == ValueKind::kNone) throw UsageError{std::string(name) + " takes no value"};
      given.value = argument.substr(equals + 1);
    } else if (spec->kind == ValueKind::kText || spec->kind == ValueKind::kWhole) {
      if (i + 1 >= arguments.size()) {
        throw UsageError{std::string(name) + " needs a value"};
      }
      given.value = arguments[++i];
    } else if (spec->kind == ValueKind::kOptional && i + 1 < arguments.size() &&
               !arguments[i + 1].starts_with("--")) {
      given.value = arguments[++i];
    }
    if (spec->kind == ValueKind::kWhole) given.number = WholeNumber(*spec, given.value);
    parsed.options.push_back(std::move(given));
  }
  return parsed;
}

std::string OptionHelp(std::span<const OptionSpec* const> table) {
  std::string help;
  for (const OptionSpec* spec : table) {
    std::string left = "  " + std::string(spec->name);
    if (!spec->valueName.empty()) {
      left += spec->kind == ValueKind::kOptional ? " [" + std::string(spec->valueName) + "]"
                                                 : " " + std::string(spec->valueName);
    }
    std::string text(spec->help);
    if (spec->kind == ValueKind::kWhole) {
      const std::string range = std::to_string(spec->minimum) + " to " + std::to_string(spec->maximum);
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
