// The toolkit's colours and ours, and shades between two colours of a palette.
#pragma once

#include "platform/controls/grid.h"

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
    return QColor::fromRgbF(from.redF() + (to.redF() - from.redF()) * part,
                            from.greenF() + (to.greenF() - from.greenF()) * part,
                            from.blueF() + (to.blueF() - from.blueF()) * part);
}

} // namespace veltrona
