#include "settings/command_line.h"

#include <gtest/gtest.h>

#include "settings/edition.h"
#include "support/runtime_error.h"

namespace cw {
namespace {

TEST(ResolveCommandLine, EmptyAndNumberOnly) {
  for (const char* line : {"", "   "}) {
    const CommandLineChoice choice = ResolveCommandLine(line);
    EXPECT_EQ(choice.edition, kEditionRingtally) << '"' << line << '"';
    EXPECT_FALSE(choice.historyMode);
    EXPECT_FALSE(choice.windowHandle);
  }
  const CommandLineChoice number = ResolveCommandLine("5551234");
  EXPECT_EQ(number.edition, kEditionCallwarden);
  EXPECT_TRUE(number.historyMode);
  EXPECT_EQ(number.historyNumber, "5551234");
  EXPECT_FALSE(number.windowHandle);
}

TEST(ResolveCommandLine, WindowHandleEmbedsWithOrWithoutNumber) {
  const CommandLineChoice embedded = ResolveCommandLine("h=1234");
  EXPECT_EQ(embedded.edition, kEditionCallwarden);
  EXPECT_FALSE(embedded.historyMode);
  ASSERT_TRUE(embedded.windowHandle);
  EXPECT_EQ(*embedded.windowHandle, 1234);

  const CommandLineChoice withNumber = ResolveCommandLine("h=1234,5551234");
  ASSERT_TRUE(withNumber.windowHandle);
  EXPECT_EQ(*withNumber.windowHandle, 1234);
  EXPECT_TRUE(withNumber.historyMode);
  EXPECT_EQ(withNumber.historyNumber, "5551234");
}

TEST(ResolveCommandLine, EditionWordsAfterHandleMarker) {
  const CommandLineChoice callwarden = ResolveCommandLine("h=Callwarden");
  EXPECT_EQ(callwarden.edition, kEditionCallwarden);
  EXPECT_FALSE(callwarden.historyMode);
  EXPECT_FALSE(callwarden.windowHandle);

  const CommandLineChoice trubru = ResolveCommandLine("h=Trubru,5550000");
  EXPECT_EQ(trubru.edition, kEditionRingtally);
  EXPECT_FALSE(trubru.windowHandle);
  EXPECT_TRUE(trubru.historyMode);
  EXPECT_EQ(trubru.historyNumber, "5550000");

  // Both words: the edition word tested first decides.
  EXPECT_EQ(ResolveCommandLine("h=Callwarden Trubru").edition, kEditionCallwarden);
  // The marker is exact: "H=1234" is a telephone number, not a handle.
  EXPECT_TRUE(ResolveCommandLine("H=1234").historyMode);
}

TEST(ResolveCommandLine, OnlyExactlyTwoPartsGiveTheNumber) {
  const CommandLineChoice three = ResolveCommandLine("h=1234,5551234,x");
  EXPECT_FALSE(three.historyMode);
  EXPECT_EQ(three.historyNumber, "");
  ASSERT_TRUE(three.windowHandle);

  // A number with extra parts keeps the first part as the number.
  const CommandLineChoice numberThree = ResolveCommandLine("5551234,a,b");
  EXPECT_TRUE(numberThree.historyMode);
  EXPECT_EQ(numberThree.historyNumber, "5551234");

  // A number then a second part: the second part wins.
  const CommandLineChoice numberTwo = ResolveCommandLine("5551234,5559999");
  EXPECT_EQ(numberTwo.historyNumber, "5559999");
}

TEST(ResolveCommandLine, BadHandleIsTypeMismatchOrOverflow) {
  try {
    ResolveCommandLine("h=12ab");
    FAIL() << "expected error 13";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), err::kTypeMismatch);
  }
  try {
    ResolveCommandLine("h=");
    FAIL() << "expected error 13";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), err::kTypeMismatch);
  }
  try {
    ResolveCommandLine("h=99999999999");
    FAIL() << "expected error 6";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), err::kOverflow);
  }
}

}  // namespace
}  // namespace cw
