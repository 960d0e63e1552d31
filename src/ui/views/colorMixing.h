// The toolkit's colours and ours, and shades between two colours of a palette.
#pragma once

#include "core/controls/grid.h"

#include <QColor>

namespace veltrona {

inline Rgb toRgb(const QColor &color) {
    return {color.red(), color.green(), color.blue()};
}

inline QColor toColor(Rgb color) {
    return {color.red, color.green, color.blue};
}

/// `part` of the way from one colour to the other.
inline QColor mixed(const QColor &from, const QColor &to, double part) {
    const auto between = [part](float a, float b) {
        return static_cast<float>(a + (b - a) * part);
    };
    return QColor::fromRgbF(between(from.redF(), to.redF()), between(from.greenF(), to.greenF()),
                            between(from.blueF(), to.blueF()));
}

} // namespace veltrona
