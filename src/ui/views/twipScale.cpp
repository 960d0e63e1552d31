#include "ui/views/twipScale.h"

#include <QFontMetricsF>

#include <algorithm>

namespace veltrona {

namespace {
constexpr double designLineHeight = 13;

double ratioOf(const QFont &font, WindowDesign measured) {
    const QFontMetricsF metrics(font);
    double ratio = std::max(1.0, metrics.height() / designLineHeight);
    for (const DesignedControl &label : measured) {
        // A label asks for whole pixels and a little more than the advance.
        const double width = metrics.horizontalAdvance(QLatin1String(label.caption)) + 2;
        ratio = std::max(ratio, width / (static_cast<double>(label.place.width) / twipsPerPixel));
    }
    return ratio;
}
} // namespace

TwipScale::TwipScale(const QFont &font, WindowDesign measured) : m_ratio(ratioOf(font, measured)) {}

void TwipScale::makeRoom(int pixels, float twips) {
    m_ratio = std::max(m_ratio, pixels * twipsPerPixel / static_cast<double>(twips));
}

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
