#include "platform/font_face.h"

#include <QGuiApplication>
#include <QtEndian>

#include "platform/font_mapping.h"
#include "support/ansi_text.h"
#include "support/runtime_error.h"

namespace cw {
namespace {

// The classic line height is the Windows ascent plus descent of the OS/2
// table; fonts without one fall back to the horizontal header's values.
void ReadVerticalMetrics(FontFace& face) {
  const QByteArray os2 = face.raw.fontTable("OS/2");
  constexpr int kWinAscent = 74, kWinDescent = 76;
  if (os2.size() >= kWinDescent + 2) {
    const auto* data = reinterpret_cast<const uchar*>(os2.constData());
    const double ascent = qFromBigEndian<quint16>(data + kWinAscent);
    const double descent = qFromBigEndian<quint16>(data + kWinDescent);
    if (ascent + descent > 0) {
      face.ascent = ascent;
      face.descent = descent;
      return;
    }
  }
  face.ascent = face.raw.ascent();
  face.descent = face.raw.descent();
}

std::unique_ptr<FontFace> LoadFace(const FontSpec& font) {
  QFont qfont = MakeLayoutFont(font);
  qfont.setPixelSize(2048);
  auto face = std::make_unique<FontFace>();
  face->raw = QRawFont::fromFont(qfont);
  if (!face->raw.isValid() || face->raw.unitsPerEm() <= 0) {
    throw RuntimeError(err::kFileNotFound,
                       "No installed font can draw \"" + font.name + "\" (looked for \"" +
                           qfont.family().toStdString() + "\"; install fonts-liberation2)");
  }
  face->unitsPerEm = face->raw.unitsPerEm();
  // At one em per pixel the design advances come out in font units.
  face->raw.setPixelSize(face->unitsPerEm);
  ReadVerticalMetrics(*face);

  for (int byte = 0; byte < 256; ++byte) {
    const char c = static_cast<char>(byte);
    const QString text = QString::fromStdString(Win1252ToUtf8(std::string_view(&c, 1)));
    quint32 glyph = 0;
    int count = 1;
    if (text.size() == 1 && !face->raw.glyphIndexesForChars(text.constData(), 1, &glyph, &count)) {
      glyph = 0;
    }
    face->glyphs[byte] = glyph;
  }
  QPointF advances[256];
  face->raw.advancesForGlyphIndexes(face->glyphs.data(), advances, 256, QRawFont::UseDesignMetrics);
  for (int byte = 0; byte < 256; ++byte) face->advances[byte] = advances[byte].x();
  return face;
}

}  // namespace

FontFaceCache::FontFaceCache() {
  if (qGuiApp == nullptr) {
    throw RuntimeError(err::kInvalidCall, "Fonts can only be measured once a QGuiApplication exists");
  }
}

const FontFace& FontFaceCache::Get(const FontSpec& font) {
  if (last_ != nullptr && font.bold == lastBold_ && font.italic == lastItalic_ && font.name == lastName_) {
    return *last_;
  }
  std::string key = font.name;
  key += '\0';
  key += font.bold ? 'b' : '-';
  key += font.italic ? 'i' : '-';
  auto found = faces_.find(key);
  if (found == faces_.end()) found = faces_.emplace(std::move(key), LoadFace(font)).first;
  last_ = found->second.get();
  lastName_ = font.name;
  lastBold_ = font.bold;
  lastItalic_ = font.italic;
  return *last_;
}

}  // namespace cw
