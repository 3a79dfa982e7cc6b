#pragma once
// The spool file: fixed 422-byte records, record 1 the document header,
// records 2 onward the drawing commands in the order they were issued. Writers
// and readers (engine, preview, printer, text export, dump) all go through the
// layouts below, so that they agree byte for byte.
//
// Integers and reals are little-endian; booleans are 16-bit, 0 false and -1
// true. Text fields are single-byte, left-justified, space-padded and cut at
// their width. Bytes a record kind does not use are zero.

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "printer/text_metrics.h"

namespace cw {

inline constexpr std::size_t kSpoolRecordSize = 422;
using SpoolRecord = std::array<char, kSpoolRecordSize>;

// Field offsets and widths.
namespace spool {

// Header (record 1).
inline constexpr std::size_t kOrientation = 0;            // i16, 1 portrait, 2 landscape
inline constexpr std::size_t kScaleMode = 2;              // i16
inline constexpr std::size_t kSpacing = 4;                // f64
inline constexpr std::size_t kAutoHeadings = 12;          // bool
inline constexpr std::size_t kAutoHeadingsFontName = 14;  // text
inline constexpr std::size_t kAutoHeadingsFontNameWidth = 100;
inline constexpr std::size_t kAutoHeadingsFontSize = 114;  // i16
inline constexpr std::size_t kAutoHeadingsFontAttr = 116;  // i32
inline constexpr std::size_t kAutoNewPage = 120;           // bool
inline constexpr std::size_t kTitle = 122;                 // text
inline constexpr std::size_t kTitleWidth = 100;
inline constexpr std::size_t kSubTitle = 222;  // text
inline constexpr std::size_t kSubTitleWidth = 200;

// Every command record.
inline constexpr std::size_t kPage = 0;  // i16
inline constexpr std::size_t kKeyword = 2;
inline constexpr std::size_t kKeywordWidth = 8;

// SETFONT.
inline constexpr std::size_t kFontName = 10;
inline constexpr std::size_t kFontNameWidth = 200;
inline constexpr std::size_t kFontSize = 210;  // i16, whole points
inline constexpr std::size_t kFontBold = 212;  // bool; the disk order is bold, italic, underline
inline constexpr std::size_t kFontItalic = 214;
inline constexpr std::size_t kFontUnderline = 216;

// TEXTOUT.
inline constexpr std::size_t kTextX = 10;  // f64
inline constexpr std::size_t kTextY = 18;  // f64
inline constexpr std::size_t kText = 26;
inline constexpr std::size_t kTextWidth = 230;

// LINEOUT, BOXOUT, IMAGEOUT: four doubles, then the picture file name.
inline constexpr std::size_t kFirstDouble = 10;
inline constexpr std::size_t kSecondDouble = 18;
inline constexpr std::size_t kThirdDouble = 26;
inline constexpr std::size_t kFourthDouble = 34;
inline constexpr std::size_t kImageFile = 42;
inline constexpr std::size_t kImageFileWidth = 214;

// Keywords as they stand on disk before padding.
inline constexpr std::string_view kNewPage = "NEWPAGE";
inline constexpr std::string_view kEndDoc = "ENDDOC";
inline constexpr std::string_view kSetFont = "SETFONT";
inline constexpr std::string_view kTextOut = "TEXTOUT";
inline constexpr std::string_view kLineOut = "LINEOUT";
inline constexpr std::string_view kBoxOut = "BOXOUT";
inline constexpr std::string_view kImageOut = "IMAGEOUT";

// Values the header takes when the file is created.
inline constexpr std::int16_t kDefaultOrientation = 1;
inline constexpr std::int16_t kDefaultScaleMode = 5;
inline constexpr double kDefaultSpacing = 1.3;
inline constexpr std::string_view kDefaultHeadingFontName = "Arial";
inline constexpr std::int16_t kDefaultHeadingFontSize = 12;

// Font attribute word of SetFont and AutoHeadingsFontAttr.
inline constexpr std::int32_t kAttrBold = 1;
inline constexpr std::int32_t kAttrUnderline = 2;
inline constexpr std::int32_t kAttrItalic = 4;

}  // namespace spool

// Little-endian field access. The record is a plain byte array, so these work
// on a buffer read from disk as well as on a SpoolRecord.
inline void PutInt16(char* record, std::size_t offset, std::int16_t value) {
  const auto bits = static_cast<std::uint16_t>(value);
  record[offset] = static_cast<char>(bits & 0xFF);
  record[offset + 1] = static_cast<char>(bits >> 8);
}

inline std::int16_t GetInt16(const char* record, std::size_t offset) {
  const auto low = static_cast<std::uint8_t>(record[offset]);
  const auto high = static_cast<std::uint8_t>(record[offset + 1]);
  return static_cast<std::int16_t>(static_cast<std::uint16_t>(low | (high << 8)));
}

inline void PutInt32(char* record, std::size_t offset, std::int32_t value) {
  const auto bits = static_cast<std::uint32_t>(value);
  for (std::size_t i = 0; i < 4; ++i) record[offset + i] = static_cast<char>((bits >> (8 * i)) & 0xFF);
}

inline std::int32_t GetInt32(const char* record, std::size_t offset) {
  std::uint32_t bits = 0;
  for (std::size_t i = 0; i < 4; ++i) bits |= std::uint32_t{static_cast<std::uint8_t>(record[offset + i])} << (8 * i);
  return static_cast<std::int32_t>(bits);
}

inline void PutDouble(char* record, std::size_t offset, double value) {
  const auto bits = std::bit_cast<std::uint64_t>(value);
  for (std::size_t i = 0; i < 8; ++i) record[offset + i] = static_cast<char>((bits >> (8 * i)) & 0xFF);
}

inline double GetDouble(const char* record, std::size_t offset) {
  std::uint64_t bits = 0;
  for (std::size_t i = 0; i < 8; ++i) bits |= std::uint64_t{static_cast<std::uint8_t>(record[offset + i])} << (8 * i);
  return std::bit_cast<double>(bits);
}

inline void PutBool(char* record, std::size_t offset, bool value) {
  PutInt16(record, offset, value ? std::int16_t{-1} : std::int16_t{0});
}

// Any non-zero value counts as true, as the runtime reads a boolean.
inline bool GetBool(const char* record, std::size_t offset) { return GetInt16(record, offset) != 0; }

// Left-justified, space-padded, cut at the width.
inline void PutText(char* record, std::size_t offset, std::size_t width, std::string_view text) {
  const std::size_t kept = text.size() < width ? text.size() : width;
  text.copy(record + offset, kept);
  std::memset(record + offset + kept, ' ', width - kept);
}

// The field without its padding: trailing spaces, and the zero bytes of a
// field that was never written (the header's SubTitle of a new engine).
std::string_view GetTextRightTrimmed(const char* record, std::size_t offset, std::size_t width);
// The field trimmed of spaces (and zero bytes) on both sides.
std::string_view GetTextTrimmed(const char* record, std::size_t offset, std::size_t width);

// Records as the engine writes them; every byte not named is zero.
SpoolRecord MakePageRecord(std::int16_t page, std::string_view keyword);
SpoolRecord MakeFontRecord(std::int16_t page, std::string_view name, std::int16_t size, bool bold,
                           bool italic, bool underline);
SpoolRecord MakeTextRecord(std::int16_t page, double x, double y, std::string_view text);
// LINEOUT and BOXOUT: X1, Y1, X2, Y2 in argument order.
SpoolRecord MakeGraphicsRecord(std::int16_t page, std::string_view keyword, double x1, double y1,
                               double x2, double y2);
// IMAGEOUT keeps its width in the fourth double and its height in the third.
SpoolRecord MakeImageRecord(std::int16_t page, std::string_view file, double x, double y,
                            double width, double height);

// Sets the eight header fields that creating a spool file resets. AutoNewPage
// and SubTitle are left as the record holds them: a second document of the
// same engine inherits them.
void ApplyHeaderCreationValues(SpoolRecord& header);

// Record 1 as a reader sees it, text fields trimmed.
struct SpoolHeader {
  std::int16_t orientation = spool::kDefaultOrientation;
  std::int16_t scaleMode = spool::kDefaultScaleMode;
  double spacing = spool::kDefaultSpacing;
  bool autoHeadings = false;
  std::string autoHeadingsFontName{spool::kDefaultHeadingFontName};
  std::int16_t autoHeadingsFontSize = spool::kDefaultHeadingFontSize;
  std::int32_t autoHeadingsFontAttr = 0;
  bool autoNewPage = false;
  std::string title;
  std::string subTitle;
};

SpoolHeader DecodeHeader(const char* record);

enum class SpoolKeyword { kNewPage, kEndDoc, kSetFont, kTextOut, kLineOut, kBoxOut, kImageOut, kUnknown };

// The keyword field trimmed, matched exactly (case counts).
SpoolKeyword KeywordOf(std::string_view trimmedKeyword);
std::string_view KeywordText(SpoolKeyword keyword);

// One command record decoded. Only the fields of its layout are filled.
struct SpoolCommand {
  std::int64_t recordNumber = 0;  // 1-based; the header is record 1
  std::int16_t page = 0;
  SpoolKeyword keyword = SpoolKeyword::kUnknown;
  std::string keywordText;  // trimmed, as on disk (for reports on unknown keywords)
  FontSpec font;            // SETFONT: name trimmed, whole points
  // TEXTOUT: x1 = X, y1 = Y. LINEOUT, BOXOUT: the two corners. IMAGEOUT: see
  // ImageWidth and ImageHeight.
  double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
  // TEXTOUT: the text without its padding (right-trimmed). IMAGEOUT: the
  // picture file name, trimmed.
  std::string text;
  // False when a reader found the record unusable (unknown keyword, a page
  // number or coordinate no document has); it has reported why.
  bool usable = true;

  double ImageWidth() const { return y2; }   // fourth double
  double ImageHeight() const { return x2; }  // third double
};

// Fills `command` from a raw record; reuses its strings' storage.
void DecodeCommand(const char* record, std::int64_t recordNumber, SpoolCommand& command);

}  // namespace cw
