#include "printer/spool_format.h"

#include <gtest/gtest.h>

#include <string>

#include "spool_test_files.h"

namespace cw {
namespace {

using testing::Bytes;

std::string Spaces(std::size_t count) { return std::string(count, ' '); }
std::string Zeros(std::size_t count) { return std::string(count, '\0'); }
std::string Raw(std::initializer_list<unsigned char> bytes) { return std::string(bytes.begin(), bytes.end()); }
std::string Padded(std::string text, std::size_t width) { return text + Spaces(width - text.size()); }

// 1.3, 2.5 and -0.75 as little-endian IEEE doubles.
const std::string kOnePointThree = Raw({0xCD, 0xCC, 0xCC, 0xCC, 0xCC, 0xCC, 0xF4, 0x3F});
const std::string kTwoPointFive = Raw({0, 0, 0, 0, 0, 0, 0x04, 0x40});
const std::string kMinusThreeQuarters = Raw({0, 0, 0, 0, 0, 0, 0xE8, 0xBF});

TEST(SpoolFormat, HeaderCreationValuesByteForByte) {
  SpoolRecord header{};
  ApplyHeaderCreationValues(header);
  const std::string expected = Raw({1, 0}) + Raw({5, 0}) + kOnePointThree + Raw({0, 0}) +
                               Padded("Arial", 100) + Raw({12, 0}) + Raw({0, 0, 0, 0}) +
                               Raw({0, 0})      // AutoNewPage: left as it was
                               + Spaces(100)    // Title: empty, all spaces
                               + Zeros(200);    // SubTitle: never written
  ASSERT_EQ(expected.size(), kSpoolRecordSize);
  EXPECT_EQ(Bytes(header), expected);
}

TEST(SpoolFormat, CommandLayoutsByteForByte) {
  EXPECT_EQ(Bytes(MakePageRecord(3, spool::kNewPage)), Raw({3, 0}) + "NEWPAGE " + Zeros(412));
  EXPECT_EQ(Bytes(MakePageRecord(258, spool::kEndDoc)), Raw({2, 1}) + "ENDDOC  " + Zeros(412));

  // Bold, italic, underline on disk, whatever the order of the attribute bits.
  EXPECT_EQ(Bytes(MakeFontRecord(1, "Times New Roman", 9, false, true, false)),
            Raw({1, 0}) + "SETFONT " + Padded("Times New Roman", 200) + Raw({9, 0}) + Raw({0, 0}) +
                Raw({0xFF, 0xFF}) + Raw({0, 0}) + Zeros(204));

  EXPECT_EQ(Bytes(MakeTextRecord(2, 2.5, -0.75, "Total")),
            Raw({2, 0}) + "TEXTOUT " + kTwoPointFive + kMinusThreeQuarters + Padded("Total", 230) + Zeros(166));

  EXPECT_EQ(Bytes(MakeGraphicsRecord(1, spool::kLineOut, 2.5, -0.75, 1.3, 2.5)),
            Raw({1, 0}) + "LINEOUT " + kTwoPointFive + kMinusThreeQuarters + kOnePointThree + kTwoPointFive +
                Zeros(214) + Zeros(166));

  // IMAGEOUT: X, Y, then the height in the third double and the width in the fourth.
  EXPECT_EQ(Bytes(MakeImageRecord(1, "C:\\Chart.bmp", 2.5, -0.75, 1.3, 2.5)),
            Raw({1, 0}) + "IMAGEOUT" + kTwoPointFive + kMinusThreeQuarters + kTwoPointFive + kOnePointThree +
                Padded("C:\\Chart.bmp", 214) + Zeros(166));
}

TEST(SpoolFormat, TextFieldsAreCutAtTheirWidths) {
  const std::string text230(230, 'a');
  EXPECT_EQ(Bytes(MakeTextRecord(1, 0, 0, text230)).substr(26, 230), text230);
  EXPECT_EQ(Bytes(MakeTextRecord(1, 0, 0, text230 + "b")).substr(26, 231), text230 + '\0');

  SpoolRecord header{};
  PutText(header.data(), spool::kTitle, spool::kTitleWidth, std::string(100, 't') + "X");
  EXPECT_EQ(Bytes(header).substr(122, 101), std::string(100, 't') + '\0');
}

}  // namespace
}  // namespace cw
