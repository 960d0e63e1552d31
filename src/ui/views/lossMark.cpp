#include "ui/views/lossMark.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace veltrona {

QRectF lossMarkBetween(double textEnd, double lineEnd, double middle, double lineHeight) {
    constexpr double air = 1;       // on either side, where there is little room
    constexpr double widestGap = 4; // between text and mark, where there is much
    const double room = lineEnd - textEnd;
    const double size =
        std::clamp(room - 2 * air, leastLossMarkRoom - 2 * air, std::round(lineHeight * 0.4));
    const double gap = std::clamp((room - size) / 2, 0.0, widestGap);
    return {textEnd + gap, std::round(middle - size / 2 + 1), size, size};
}

void paintLossMark(QPainter &painter, const QRectF &box, const QColor &color) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawPolygon(
        QPolygonF({box.topLeft(), box.topRight(), QPointF(box.center().x(), box.bottom())}));
    painter.restore();
}

} // namespace veltrona
