#include "ui/views/colors.h"

#include <QPalette>

#include <algorithm>
#include <cmath>

namespace veltrona {

namespace {

double linear(int channel) {
    const double part = channel / 255.0;
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

double luminance(const QColor &color) {
    return 0.2126 * linear(color.red()) + 0.7152 * linear(color.green()) +
           0.0722 * linear(color.blue());
}

} // namespace

QColor mixed(const QColor &from, const QColor &to, double part) {
    const auto between = [part](float a, float b) {
        return static_cast<float>(a + (b - a) * part);
    };
    return QColor::fromRgbF(between(from.redF(), to.redF()), between(from.greenF(), to.greenF()),
                            between(from.blueF(), to.blueF()));
}

double contrast(const QColor &one, const QColor &other) {
    const auto [low, high] = std::minmax({luminance(one), luminance(other)});
    return (high + 0.05) / (low + 0.05);
}

QColor readableColor(const QColor &color, const QColor &base, double wanted) {
    if (contrast(color, base) >= wanted)
        return color;
    const QColor target =
        contrast(Qt::white, base) >= contrast(Qt::black, base) ? Qt::white : Qt::black;
    if (color.red() == color.green() && color.green() == color.blue())
        return target;
    constexpr int steps = 64;
    for (int step = 1; step < steps; ++step) {
        // Rounds to the 8 bits that contrast is computed for. `mixed` keeps QColor's 16, which are
        // truncated when painted, so its shades may differ by one.
        const auto between = [&](int a, int b) {
            return static_cast<int>(std::lround(a + (b - a) * (static_cast<double>(step) / steps)));
        };
        const QColor shade(between(color.red(), target.red()),
                           between(color.green(), target.green()),
                           between(color.blue(), target.blue()));
        if (contrast(shade, base) >= wanted)
            return shade;
    }
    return target;
}

double contrastOnBase(const QPalette &palette) {
    return palette.color(QPalette::Base).rgb() == QColor(Qt::white).rgb() ? 1 : readableContrast;
}

} // namespace veltrona
