#pragma once
// Which installed font draws a font the reports ask for. Reports are laid out
// for "Arial", "Times New Roman" and "Courier New"; on this platform those are
// the metric-compatible Liberation fonts, named explicitly so that a machine
// that happens to have other fonts installed still lays out the same page.

#include <QFont>
#include <QString>
#include <string_view>

#include "printer/text_metrics.h"

namespace cw {

// The family that draws a font name (Windows-1252 bytes): the Liberation
// font for the three classic names, the name itself when it is installed,
// else the Liberation font of the same kind (mono, serif, else sans).
QString ResolveFontFamily(std::string_view name);

// A QFont of that family with the requested bold, italic and underline, set up
// for exact layout: no hinting, no kerning, no glyphs borrowed from other fonts.
// Its size is left to the caller.
QFont MakeLayoutFont(const FontSpec& font);

}  // namespace cw
