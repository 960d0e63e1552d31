// The mark of what didn't earn back its cost, for those who can't tell red from green: a triangle
// beside a name. All lengths are device-independent pixels.
#pragma once

#include <QRectF>

class QColor;
class QPainter;

namespace veltrona {

/// Where the mark stands behind a text that ends at `textEnd`, clear of it and of the end of its
/// line at `lineEnd`: as large as a font of that line height likes it, or as the room allows.
QRectF lossMarkBetween(double textEnd, double lineEnd, double middle, double lineHeight);
/// The room that a mark takes at least, with what keeps it clear.
inline constexpr double leastLossMarkRoom = 5;

void paintLossMark(QPainter &painter, const QRectF &box, const QColor &color);

} // namespace veltrona
