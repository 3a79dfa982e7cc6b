#pragma once
// The one runtime-error type of the program. Every failure that reaches the
// user carries the classic error number and text, the procedure that trapped it
// and the source line where it was raised, and is shown through the host in one
// of the two error-box forms built below.

#include <cstdint>
#include <source_location>
#include <stdexcept>
#include <string>
#include <string_view>

namespace cw {

// Classic error numbers used by the program.
namespace err {
inline constexpr int kInvalidCall = 5;
inline constexpr int kOverflow = 6;
inline constexpr int kSubscript = 9;
inline constexpr int kDivisionByZero = 11;
inline constexpr int kTypeMismatch = 13;
inline constexpr int kBadFile = 52;
inline constexpr int kFileNotFound = 53;
inline constexpr int kPastEndOfFile = 62;
inline constexpr int kPermissionDenied = 70;
inline constexpr int kPathFileAccess = 75;
inline constexpr int kPathNotFound = 76;
}  // namespace err

// The classic text of an error number ("Overflow" for 6); empty for numbers
// that have no standard text (a class's own errors carry their own).
std::string_view StandardErrorText(int number);

class RuntimeError : public std::runtime_error {
 public:
  // description empty: the standard text of the number.
  explicit RuntimeError(int number, std::string description = {}, std::string source = {},
                        std::source_location where = std::source_location::current());

  int Number() const noexcept { return number_; }
  const std::string& Description() const noexcept { return description_; }
  // Who raised it: a class name for a class's own errors ("cFastCat"), else empty.
  const std::string& Source() const noexcept { return source_; }
  // Source line where the error was raised.
  std::uint32_t Line() const noexcept { return line_; }

  // Extra context for the box ("Processing: " and the record), set by the
  // procedure that traps the error.
  const std::string& Processing() const noexcept { return processing_; }
  void SetProcessing(std::string record) { processing_ = std::move(record); }

 private:
  int number_;
  std::string description_;
  std::string source_;
  std::uint32_t line_;
  std::string processing_;
};

// Where an error was trapped, as the box names it.
struct ErrorPlace {
  std::string_view moduleKind;  // "Form" or "Class Module"
  std::string_view module;      // "fReport", "OrlPrinter"
  std::string_view procedure;   // "Build_CallMatrix"
};

enum class ErrorBoxForm {
  kClassic,             // "Error 6 ... in Form fReport procedure X. The error Occurred at line: N"
  kClassicWithCopyHint, // the classic form closed by the Ctrl-C hint
  kModern,              // "Line: / Error: / Description: / Module Name: ... Date:"
};

// The text of the standard error box (title "Error"). `now` is the date and
// time text shown by the modern form; lines are separated by CR LF.
std::string ErrorBoxText(const RuntimeError& error, const ErrorPlace& place, ErrorBoxForm form,
                         std::string_view now = {});

inline constexpr std::string_view kErrorBoxTitle = "Error";

}  // namespace cw
