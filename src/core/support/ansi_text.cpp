#include "support/ansi_text.h"

#include <array>
#include <cstdint>

namespace cw {

namespace {

// Code points of the bytes 0x80..0x9F. The five bytes that Windows-1252
// leaves undefined (0x81, 0x8D, 0x8F, 0x90, 0x9D) stand for the C1 control
// of the same number, so that every byte survives the trip through Unicode
// and back.
constexpr std::array<char32_t, 32> kHighControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  // 80..87
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,  // 88..8F
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  // 90..97
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,  // 98..9F
};

char32_t CodePointOf(unsigned char byte) {
  if (byte >= 0x80 && byte <= 0x9F) return kHighControls[byte - 0x80];
  return byte;
}

void AppendUtf8(std::string& out, char32_t cp) {
  if (cp < 0x80) {
    out += static_cast<char>(cp);
  } else if (cp < 0x800) {
    out += static_cast<char>(0xC0 | (cp >> 6));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else {
    out += static_cast<char>(0xE0 | (cp >> 12));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  }
}

constexpr char kUnmappable = '?';

char ByteOf(char32_t cp) {
  if (cp < 0x80 || (cp >= 0xA0 && cp <= 0xFF)) return static_cast<char>(cp);
  for (std::size_t i = 0; i < kHighControls.size(); ++i) {
    if (kHighControls[i] == cp) return static_cast<char>(0x80 + i);
  }
  return kUnmappable;
}

// Decodes one UTF-8 sequence at pos; false (pos moved past one byte) for a
// malformed, overlong or surrogate sequence.
bool DecodeUtf8(std::string_view text, std::size_t& pos, char32_t& cp) {
  const auto lead = static_cast<unsigned char>(text[pos]);
  std::size_t length = 0;
  char32_t minimum = 0;
  if (lead < 0x80) {
    cp = lead;
    ++pos;
    return true;
  } else if ((lead & 0xE0) == 0xC0) {
    length = 2;
    cp = lead & 0x1F;
    minimum = 0x80;
  } else if ((lead & 0xF0) == 0xE0) {
    length = 3;
    cp = lead & 0x0F;
    minimum = 0x800;
  } else if ((lead & 0xF8) == 0xF0) {
    length = 4;
    cp = lead & 0x07;
    minimum = 0x10000;
  } else {
    ++pos;
    return false;
  }
  if (text.size() - pos < length) {
    ++pos;
    return false;
  }
  for (std::size_t i = 1; i < length; ++i) {
    const auto next = static_cast<unsigned char>(text[pos + i]);
    if ((next & 0xC0) != 0x80) {
      ++pos;
      return false;
    }
    cp = (cp << 6) | (next & 0x3F);
  }
  if (cp < minimum || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) {
    ++pos;
    return false;
  }
  pos += length;
  return true;
}

}  // namespace

std::string Win1252ToUtf8(std::string_view bytes) {
  std::string out;
  out.reserve(bytes.size() + bytes.size() / 8);
  for (char c : bytes) AppendUtf8(out, CodePointOf(static_cast<unsigned char>(c)));
  return out;
}

std::string Utf8ToWin1252(std::string_view utf8) {
  std::string out;
  out.reserve(utf8.size());
  std::size_t pos = 0;
  while (pos < utf8.size()) {
    char32_t cp = 0;
    out += DecodeUtf8(utf8, pos, cp) ? ByteOf(cp) : kUnmappable;
  }
  return out;
}

bool IsValidUtf8(std::string_view bytes) {
  std::size_t pos = 0;
  char32_t cp = 0;
  while (pos < bytes.size()) {
    if (!DecodeUtf8(bytes, pos, cp)) return false;
  }
  return true;
}

std::optional<std::string> Utf8ToWin1252Exactly(std::string_view utf8, std::string* unmappable) {
  if (unmappable != nullptr) unmappable->clear();
  if (!IsValidUtf8(utf8)) return std::nullopt;
  std::string out;
  out.reserve(utf8.size());
  std::size_t pos = 0;
  while (pos < utf8.size()) {
    const std::size_t start = pos;
    char32_t cp = 0;
    DecodeUtf8(utf8, pos, cp);
    const char byte = ByteOf(cp);
    // '?' stands for itself only when it was one.
    if (byte == kUnmappable && cp != static_cast<char32_t>(kUnmappable)) {
      if (unmappable != nullptr) *unmappable = std::string(utf8.substr(start, pos - start));
      return std::nullopt;
    }
    out += byte;
  }
  return out;
}

}  // namespace cw
