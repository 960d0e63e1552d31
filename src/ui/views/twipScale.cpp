#include "ui/views/twipScale.h"

#include <QFontMetricsF>

#include <algorithm>

namespace veltrona {

namespace {
constexpr double twipsPerPixel = 15; // at 96 dots per inch
constexpr double designLineHeight = 13;

struct MeasuredText {
    QLatin1String text;
    double width; // pixels, in the font that the designs assume
};

// Labels whose width in the designs is just that of their text.
constexpr MeasuredText measuredTexts[] = {
    {QLatin1String("Start Date:"), 51},
    {QLatin1String("End Date:"), 48},
    {QLatin1String("Date Range:"), 61},
    {QLatin1String("Campaign Summary"), 93},
    {QLatin1String("Please wait while the XML file is importing..."), 204},
};

double ratioOf(const QFont &font) {
    const QFontMetricsF metrics(font);
    double ratio = std::max(1.0, metrics.height() / designLineHeight);
    for (const MeasuredText &measured : measuredTexts) {
        // A label asks for whole pixels and a little more than the advance.
        const double width = metrics.horizontalAdvance(measured.text) + 2;
        ratio = std::max(ratio, width / measured.width);
    }
    return ratio;
}
} // namespace

TwipScale::TwipScale(const QFont &font) : m_ratio(ratioOf(font)) {}

int TwipScale::toPixels(float twips) const {
    return qRound(static_cast<double>(twips) * m_ratio / twipsPerPixel);
}

QRect TwipScale::toPixels(const TwipRect &rect) const {
    const QPoint topLeft(toPixels(rect.left), toPixels(rect.top));
    const QPoint end(toPixels(rect.left + rect.width), toPixels(rect.top + rect.height));
    return {topLeft, QSize(end.x() - topLeft.x(), end.y() - topLeft.y())};
}

float TwipScale::toTwips(int pixels) const {
    return static_cast<float>(pixels * twipsPerPixel / m_ratio);
}

} // namespace veltrona
