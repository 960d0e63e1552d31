#include "ui/views/readableColor.h"

#include <algorithm>
#include <cmath>

namespace veltrona {

namespace {

constexpr Rgb white{255, 255, 255};
constexpr Rgb black{0, 0, 0};

double linear(int channel) {
    const double part = channel / 255.0;
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

double luminance(Rgb color) {
    return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

Rgb mix(Rgb from, Rgb to, double part) {
    const auto channel = [part](int a, int b) {
        return static_cast<int>(std::lround(a + (b - a) * part));
    };
    return {channel(from.red, to.red), channel(from.green, to.green), channel(from.blue, to.blue)};
}

} // namespace

double contrast(Rgb one, Rgb other) {
    const auto [low, high] = std::minmax({luminance(one), luminance(other)});
    return (high + 0.05) / (low + 0.05);
}

Rgb readableColor(Rgb color, Rgb base, double wanted) {
    if (contrast(color, base) >= wanted)
        return color;
    const Rgb target = contrast(white, base) >= contrast(black, base) ? white : black;
    if (color.red == color.green && color.green == color.blue)
        return target;
    constexpr int steps = 64;
    for (int step = 1; step < steps; ++step) {
        const Rgb mixed = mix(color, target, static_cast<double>(step) / steps);
        if (contrast(mixed, base) >= wanted)
            return mixed;
    }
    return target;
}

} // namespace veltrona
