#include "support/runtime_error.h"

#include <gtest/gtest.h>

namespace cw {
namespace {

TEST(RuntimeErrorTest, CarriesNumberStandardTextAndRaisingLine) {
  const int line = __LINE__ + 1;
  RuntimeError overflow(err::kOverflow);
  EXPECT_EQ(overflow.Number(), 6);
  EXPECT_EQ(overflow.Description(), "Overflow");
  EXPECT_STREQ(overflow.what(), "Overflow");
  EXPECT_EQ(overflow.Line(), static_cast<std::uint32_t>(line));

  EXPECT_EQ(StandardErrorText(76), "Path not found");
  EXPECT_EQ(RuntimeError(12345).Description(), "Application-defined or object-defined error");
}

TEST(RuntimeErrorTest, ErrorBoxTextsInBothForms) {
  RuntimeError error(err::kTypeMismatch);
  const std::string at = std::to_string(error.Line());
  error.SetProcessing("01/05/2024 09:05AM 5551234");

  EXPECT_EQ(ErrorBoxText(error, {"Form", "fReport", "Build_CallMatrix"}, ErrorBoxForm::kClassic),
            "Error 13 Type mismatch\r\nin Form fReport procedure Build_CallMatrix.\r\n"
            "The error Occurred at line: " + at + "\r\nProcessing: 01/05/2024 09:05AM 5551234");

  RuntimeError plain(err::kOverflow);
  const std::string plainAt = std::to_string(plain.Line());
  EXPECT_EQ(ErrorBoxText(plain, {"Class Module", "OrlPrinter", "CheckNewPage"},
                         ErrorBoxForm::kClassicWithCopyHint),
            "Error 6 Overflow\r\nin Class Module OrlPrinter procedure CheckNewPage.\r\n"
            "The error Occurred at line: " + plainAt +
            "\r\n\r\nPress Ctrl-C to copy error text to the clipboard.");

  EXPECT_EQ(ErrorBoxText(plain, {"Form", "fReport", "Form_Unload"}, ErrorBoxForm::kModern,
                         "11/22/2026 9:05:00 AM"),
            "Line: " + plainAt + "\r\nError: 6\r\nDescription: Overflow\r\nModule Name: fReport\r\n"
            "Procedure Name: Form_Unload.\r\nDate: 11/22/2026 9:05:00 AM\r\n\r\n"
            "Press Ctrl-C to copy this error to the clipboard and\r\n"
            "press Ctrl-V to paste error into email for support.");
}

}  // namespace
}  // namespace cw
