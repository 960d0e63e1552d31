// Draws the items of grid and tree. A triangle beside its name marks what didn't earn back its
// cost, for those who can't tell red from green. Lengths are device-independent pixels.
#pragma once

#include <QRectF>

class QAbstractItemDelegate;
class QObject;

namespace veltrona {

class GridView;

/// With the grid's colours and a line above the summary row. The view owns it.
QAbstractItemDelegate *newGridDelegate(GridView &view);
QAbstractItemDelegate *newTreeDelegate(QObject *parent);

/// The place of the mark after a text that ends at `textEnd`, clear of it and of the end of its
/// line at `lineEnd`: as large as fits the line height, or as the room allows.
QRectF lossMarkBetween(double textEnd, double lineEnd, double middle, double lineHeight);

} // namespace veltrona
