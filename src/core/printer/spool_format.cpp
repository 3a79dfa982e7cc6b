#include "printer/spool_format.h"

namespace cw {

namespace {

bool IsPadding(char c) { return c == ' ' || c == '\0'; }

SpoolRecord CommandRecord(std::int16_t page, std::string_view keyword) {
  SpoolRecord record{};
  PutInt16(record.data(), spool::kPage, page);
  PutText(record.data(), spool::kKeyword, spool::kKeywordWidth, keyword);
  return record;
}

}  // namespace

std::string_view GetTextRightTrimmed(const char* record, std::size_t offset, std::size_t width) {
  std::size_t end = width;
  while (end > 0 && IsPadding(record[offset + end - 1])) --end;
  return {record + offset, end};
}

std::string_view GetTextTrimmed(const char* record, std::size_t offset, std::size_t width) {
  std::string_view text = GetTextRightTrimmed(record, offset, width);
  std::size_t first = 0;
  while (first < text.size() && IsPadding(text[first])) ++first;
  return text.substr(first);
}

SpoolRecord MakePageRecord(std::int16_t page, std::string_view keyword) {
  return CommandRecord(page, keyword);
}

SpoolRecord MakeFontRecord(std::int16_t page, std::string_view name, std::int16_t size, bool bold,
                           bool italic, bool underline) {
  SpoolRecord record = CommandRecord(page, spool::kSetFont);
  PutText(record.data(), spool::kFontName, spool::kFontNameWidth, name);
  PutInt16(record.data(), spool::kFontSize, size);
  PutBool(record.data(), spool::kFontBold, bold);
  PutBool(record.data(), spool::kFontItalic, italic);
  PutBool(record.data(), spool::kFontUnderline, underline);
  return record;
}

SpoolRecord MakeTextRecord(std::int16_t page, double x, double y, std::string_view text) {
  SpoolRecord record = CommandRecord(page, spool::kTextOut);
  PutDouble(record.data(), spool::kTextX, x);
  PutDouble(record.data(), spool::kTextY, y);
  PutText(record.data(), spool::kText, spool::kTextWidth, text);
  return record;
}

SpoolRecord MakeGraphicsRecord(std::int16_t page, std::string_view keyword, double x1, double y1,
                               double x2, double y2) {
  SpoolRecord record = CommandRecord(page, keyword);
  PutDouble(record.data(), spool::kFirstDouble, x1);
  PutDouble(record.data(), spool::kSecondDouble, y1);
  PutDouble(record.data(), spool::kThirdDouble, x2);
  PutDouble(record.data(), spool::kFourthDouble, y2);
  return record;
}

SpoolRecord MakeImageRecord(std::int16_t page, std::string_view file, double x, double y,
                            double width, double height) {
  SpoolRecord record = MakeGraphicsRecord(page, spool::kImageOut, x, y, height, width);
  PutText(record.data(), spool::kImageFile, spool::kImageFileWidth, file);
  return record;
}

void ApplyHeaderCreationValues(SpoolRecord& header) {
  char* data = header.data();
  PutInt16(data, spool::kOrientation, spool::kDefaultOrientation);
  PutInt16(data, spool::kScaleMode, spool::kDefaultScaleMode);
  PutDouble(data, spool::kSpacing, spool::kDefaultSpacing);
  PutBool(data, spool::kAutoHeadings, false);
  PutText(data, spool::kAutoHeadingsFontName, spool::kAutoHeadingsFontNameWidth,
          spool::kDefaultHeadingFontName);
  PutInt16(data, spool::kAutoHeadingsFontSize, spool::kDefaultHeadingFontSize);
  PutInt32(data, spool::kAutoHeadingsFontAttr, 0);
  PutText(data, spool::kTitle, spool::kTitleWidth, "");
}

SpoolHeader DecodeHeader(const char* record) {
  SpoolHeader header;
  header.orientation = GetInt16(record, spool::kOrientation);
  header.scaleMode = GetInt16(record, spool::kScaleMode);
  header.spacing = GetDouble(record, spool::kSpacing);
  header.autoHeadings = GetBool(record, spool::kAutoHeadings);
  header.autoHeadingsFontName =
      GetTextTrimmed(record, spool::kAutoHeadingsFontName, spool::kAutoHeadingsFontNameWidth);
  header.autoHeadingsFontSize = GetInt16(record, spool::kAutoHeadingsFontSize);
  header.autoHeadingsFontAttr = GetInt32(record, spool::kAutoHeadingsFontAttr);
  header.autoNewPage = GetBool(record, spool::kAutoNewPage);
  header.title = GetTextTrimmed(record, spool::kTitle, spool::kTitleWidth);
  header.subTitle = GetTextTrimmed(record, spool::kSubTitle, spool::kSubTitleWidth);
  return header;
}

SpoolKeyword KeywordOf(std::string_view trimmedKeyword) {
  if (trimmedKeyword == spool::kTextOut) return SpoolKeyword::kTextOut;
  if (trimmedKeyword == spool::kLineOut) return SpoolKeyword::kLineOut;
  if (trimmedKeyword == spool::kSetFont) return SpoolKeyword::kSetFont;
  if (trimmedKeyword == spool::kNewPage) return SpoolKeyword::kNewPage;
  if (trimmedKeyword == spool::kBoxOut) return SpoolKeyword::kBoxOut;
  if (trimmedKeyword == spool::kImageOut) return SpoolKeyword::kImageOut;
  if (trimmedKeyword == spool::kEndDoc) return SpoolKeyword::kEndDoc;
  return SpoolKeyword::kUnknown;
}

std::string_view KeywordText(SpoolKeyword keyword) {
  switch (keyword) {
    case SpoolKeyword::kNewPage: return spool::kNewPage;
    case SpoolKeyword::kEndDoc: return spool::kEndDoc;
    case SpoolKeyword::kSetFont: return spool::kSetFont;
    case SpoolKeyword::kTextOut: return spool::kTextOut;
    case SpoolKeyword::kLineOut: return spool::kLineOut;
    case SpoolKeyword::kBoxOut: return spool::kBoxOut;
    case SpoolKeyword::kImageOut: return spool::kImageOut;
    case SpoolKeyword::kUnknown: break;
  }
  return {};
}

void DecodeCommand(const char* record, std::int64_t recordNumber, SpoolCommand& command) {
  command.recordNumber = recordNumber;
  command.usable = true;
  command.page = GetInt16(record, spool::kPage);
  const std::string_view keyword = GetTextTrimmed(record, spool::kKeyword, spool::kKeywordWidth);
  command.keywordText.assign(keyword);
  command.keyword = KeywordOf(keyword);
  command.x1 = command.y1 = command.x2 = command.y2 = 0;
  command.text.clear();
  switch (command.keyword) {
    case SpoolKeyword::kSetFont:
      command.font.name.assign(GetTextTrimmed(record, spool::kFontName, spool::kFontNameWidth));
      command.font.points = GetInt16(record, spool::kFontSize);
      command.font.bold = GetBool(record, spool::kFontBold);
      command.font.italic = GetBool(record, spool::kFontItalic);
      command.font.underline = GetBool(record, spool::kFontUnderline);
      break;
    case SpoolKeyword::kTextOut:
      command.x1 = GetDouble(record, spool::kTextX);
      command.y1 = GetDouble(record, spool::kTextY);
      command.text.assign(GetTextRightTrimmed(record, spool::kText, spool::kTextWidth));
      break;
    case SpoolKeyword::kImageOut:
      command.text.assign(GetTextTrimmed(record, spool::kImageFile, spool::kImageFileWidth));
      [[fallthrough]];
    case SpoolKeyword::kLineOut:
    case SpoolKeyword::kBoxOut:
      command.x1 = GetDouble(record, spool::kFirstDouble);
      command.y1 = GetDouble(record, spool::kSecondDouble);
      command.x2 = GetDouble(record, spool::kThirdDouble);
      command.y2 = GetDouble(record, spool::kFourthDouble);
      break;
    case SpoolKeyword::kNewPage:
    case SpoolKeyword::kEndDoc:
    case SpoolKeyword::kUnknown:
      break;
  }
}

}  // namespace cw
