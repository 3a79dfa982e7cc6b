#include "support/runtime_error.h"

#include <gtest/gtest.h>

namespace cw {
namespace {

TEST(RuntimeErrorTest, CarriesNumberStandardTextAndRaisingLine) {
  const int line = __LINE__ + 1;
  RuntimeError overflow(err::kOverflow);
  // Its number and description show in the classic box below.
  EXPECT_STREQ(overflow.what(), "Overflow");
  EXPECT_EQ(overflow.Line(), static_cast<std::uint32_t>(line));

  EXPECT_EQ(StandardErrorText(76), "Path not found");
  EXPECT_EQ(RuntimeError(12345).Description(), "Application-defined or object-defined error");
}

// The classic box with its processing line and the modern box are pinned,
// line numbers aside, by the reports' and cwreport's error transcripts
// (tests/data/reports/detail-errors.txt, tests/data/cli/bad-log-date.txt).
TEST(RuntimeErrorTest, ClassicBoxWithTheCopyHint) {
  RuntimeError plain(err::kOverflow);
  EXPECT_EQ(ErrorBoxText(plain, {"Class Module", "OrlPrinter", "CheckNewPage"}, ErrorBoxForm::kClassicWithCopyHint),
            "Error 6 Overflow\r\nin Class Module OrlPrinter procedure CheckNewPage.\r\n"
            "The error Occurred at line: " + std::to_string(plain.Line()) +
            "\r\n\r\nPress Ctrl-C to copy error text to the clipboard.");
}

}  // namespace
}  // namespace cw
