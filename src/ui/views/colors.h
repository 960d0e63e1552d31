// Colours on screen: shades between two colours, and text colours that stay readable on any base.
#pragma once

#include "core/controls/grid.h"

#include <QColor>

class QPalette;

namespace veltrona {

inline QColor toColor(Rgb color) {
    return {color.red, color.green, color.blue};
}

/// `part` of the way from one colour to the other.
QColor mixed(const QColor &from, const QColor &to, double part);

inline constexpr double readableContrast = 4.5;
/// As WCAG counts it, 1 to 21.
double contrast(const QColor &one, const QColor &other);
/// `color` itself where it is readable on `base`; else the nearest mix with white or black that is.
/// A grey, black included, becomes plain white or black.
QColor readableColor(const QColor &color, const QColor &base, double wanted = readableContrast);
/// The contrast that red and green need on the palette's Base and its tints: none where Base is
/// white, so that they are shown exactly.
double contrastOnBase(const QPalette &palette);

} // namespace veltrona
