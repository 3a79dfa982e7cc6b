#include "support/runtime_error.h"

namespace cw {

std::string_view StandardErrorText(int number) {
  switch (number) {
    case err::kInvalidCall: return "Invalid procedure call or argument";
    case err::kOverflow: return "Overflow";
    case err::kSubscript: return "Subscript out of range";
    case err::kDivisionByZero: return "Division by zero";
    case err::kTypeMismatch: return "Type mismatch";
    case err::kBadFile: return "Bad file name or number";
    case err::kFileNotFound: return "File not found";
    case err::kPastEndOfFile: return "Input past end of file";
    case err::kPermissionDenied: return "Permission denied";
    case err::kPathFileAccess: return "Path/File access error";
    case err::kPathNotFound: return "Path not found";
    default: return {};
  }
}

namespace {
std::string DescriptionOrStandard(int number, std::string description) {
  if (!description.empty()) return description;
  std::string_view standard = StandardErrorText(number);
  if (!standard.empty()) return std::string(standard);
  return "Application-defined or object-defined error";
}
}  // namespace

RuntimeError::RuntimeError(int number, std::string description, std::string source,
                           std::source_location where)
    : std::runtime_error(DescriptionOrStandard(number, description)),
      number_(number),
      description_(DescriptionOrStandard(number, std::move(description))),
      source_(std::move(source)),
      line_(where.line()) {}

std::string ErrorBoxText(const RuntimeError& error, const ErrorPlace& place, ErrorBoxForm form,
                         std::string_view now) {
  constexpr std::string_view kBreak = "\r\n";
  std::string text;
  auto line = [&](auto&&... parts) {
    if (!text.empty()) text += kBreak;
    (text += ... += parts);
  };
  const std::string number = std::to_string(error.Number());
  const std::string at = std::to_string(error.Line());
  if (form == ErrorBoxForm::kModern) {
    line("Line: ", at);
    line("Error: ", number);
    line("Description: ", error.Description());
    line("Module Name: ", place.module);
    line("Procedure Name: ", place.procedure, ".");
    line("Date: ", now);
    line("");
    line("Press Ctrl-C to copy this error to the clipboard and");
    line("press Ctrl-V to paste error into email for support.");
    return text;
  }
  line("Error ", number, " ", error.Description());
  line("in ", place.moduleKind, " ", place.module, " procedure ", place.procedure, ".");
  line("The error Occurred at line: ", at);
  if (!error.Processing().empty()) line("Processing: ", error.Processing());
  if (form == ErrorBoxForm::kClassicWithCopyHint) {
    line("");
    line("Press Ctrl-C to copy error text to the clipboard.");
  }
  return text;
}

}  // namespace cw
