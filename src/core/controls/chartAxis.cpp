#include "core/controls/chartAxis.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace veltrona {

namespace {

constexpr QChar thousandsMark(0x202F); // narrow no-break space
constexpr QChar minusSign(0x2212);     // as wide as a plus
constexpr double maxPlain = 1E15;      // above it, not all digits are exact

double finite(double value) {
    return std::isfinite(value) ? value : 0;
}

QString grouped(QString text) {
    const auto point = text.indexOf(QLatin1Char('.'));
    const auto whole = point < 0 ? text.size() : point;
    const int start = text.startsWith(QLatin1Char('-')) ? 1 : 0;
    for (auto at = whole - 3; at > start; at -= 3)
        text.insert(at, thousandsMark);
    if (start == 1)
        text[0] = minusSign;
    return text;
}

template<class Number>
QString shortest(Number value) {
    std::array<char, 64> buffer;
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                   std::chars_format::fixed);
    return QString::fromLatin1(buffer.data(), end.ptr - buffer.data());
}

} // namespace

AxisScale axisScale(double low, double high, int maxSteps) {
    const double bottom = std::min(0.0, finite(low));
    const double top = std::max(0.0, finite(high));
    // Halves: the difference of two very large numbers would be infinite.
    const double half = top / 2 - bottom / 2;
    if (half < 1E-300)
        return {};
    int exponent = static_cast<int>(std::floor(std::log10(half / maxSteps))) - 1;
    for (;; ++exponent) {
        for (const int factor : {1, 2, 5}) {
            AxisScale scale;
            scale.step = factor * std::pow(10.0, exponent);
            // Tolerates rounding errors: 0.3 / 0.1 is more than 3.
            const double tolerance = 1E-9;
            const double first = std::floor(bottom / scale.step + tolerance);
            const double last = std::ceil(top / scale.step - tolerance);
            if (last - first > maxSteps)
                continue;
            scale.first = static_cast<int>(first);
            scale.last = static_cast<int>(last);
            scale.decimals = std::max(0, -exponent);
            return scale;
        }
    }
}

QString axisText(const AxisScale &scale, int line) {
    const double value = scale.step * line;
    if (std::fabs(value) >= maxPlain || scale.decimals > 6)
        return QString::number(value, 'g', 3);
    return grouped(QString::number(value, 'f', scale.decimals));
}

QString valueText(double value) {
    value += 0.0; // a negative zero is a zero
    if (!std::isfinite(value) || std::fabs(value) >= maxPlain)
        return QString::number(value, 'g', 15);
    // A value computed in single precision gets no more digits than that.
    const float single = static_cast<float>(value);
    if (static_cast<double>(single) == value)
        return grouped(shortest(single));
    const QString digits = QString::number(value, 'g', 15);
    return digits.contains(QLatin1Char('e')) ? digits : grouped(digits);
}

QString spokenValue(double value) {
    return valueText(value).remove(thousandsMark).replace(minusSign, QLatin1Char('-'));
}

int labelStep(double columnWidth, double labelWidth, double gap) {
    if (columnWidth <= 0)
        return 1;
    return std::max(1, static_cast<int>(std::ceil((labelWidth + gap) / columnWidth)));
}

} // namespace veltrona
