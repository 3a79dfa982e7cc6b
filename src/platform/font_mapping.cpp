#include "platform/font_mapping.h"

#include <QFontDatabase>

#include "support/ansi_text.h"
#include "support/text.h"

namespace cw {
namespace {

constexpr const char* kSans = "Liberation Sans";
constexpr const char* kSerif = "Liberation Serif";
constexpr const char* kMono = "Liberation Mono";

const char* ClassicSubstitute(const QString& family) {
  if (family.compare(QLatin1String("Arial"), Qt::CaseInsensitive) == 0) return kSans;
  if (family.compare(QLatin1String("Times New Roman"), Qt::CaseInsensitive) == 0) return kSerif;
  if (family.compare(QLatin1String("Courier New"), Qt::CaseInsensitive) == 0) return kMono;
  return nullptr;
}

// A font that is not installed is replaced by the Liberation font closest in
// kind, guessed from its name; a report then still keeps its proportions.
const char* KindSubstitute(const QString& family) {
  const QString lower = family.toLower();
  if (lower.contains(QLatin1String("mono")) || lower.contains(QLatin1String("courier")) ||
      lower.contains(QLatin1String("console")) || lower.contains(QLatin1String("fixed"))) {
    return kMono;
  }
  if (lower.contains(QLatin1String("times")) || lower.contains(QLatin1String("serif")) ||
      lower.contains(QLatin1String("roman")) || lower.contains(QLatin1String("georgia")) ||
      lower.contains(QLatin1String("garamond"))) {
    // "Sans Serif" names a sans font.
    if (!lower.contains(QLatin1String("sans"))) return kSerif;
  }
  return kSans;
}

}  // namespace

QString ResolveFontFamily(std::string_view name) {
  const QString family = QString::fromStdString(Win1252ToUtf8(Trim(name)));
  if (const char* classic = ClassicSubstitute(family)) return QString::fromLatin1(classic);
  if (!family.isEmpty() && QFontDatabase::hasFamily(family)) return family;
  return QString::fromLatin1(KindSubstitute(family));
}

QFont MakeLayoutFont(const FontSpec& font) {
  QFont qfont(ResolveFontFamily(font.name));
  qfont.setBold(font.bold);
  qfont.setItalic(font.italic);
  qfont.setUnderline(font.underline);
  qfont.setKerning(false);
  qfont.setHintingPreference(QFont::PreferNoHinting);
  qfont.setStyleStrategy(QFont::StyleStrategy(QFont::NoFontMerging | QFont::ForceOutline));
  return qfont;
}

}  // namespace cw
