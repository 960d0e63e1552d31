// A grid as texts, and rows as sumUp leaves them.
#pragma once

#include "core/controls/grid.h"

#include <QStringList>

namespace veltrona::test {

/// The cells of the first `columns` columns, parted by "|".
inline QString rowText(const Grid &grid, int row, int columns) {
    QStringList texts;
    for (int col = 0; col < columns; ++col)
        texts += grid.TextMatrix(row, col);
    return texts.join(u'|');
}

/// A line for each row from `firstRow` on, with all its cells.
inline QStringList gridText(const Grid &grid, int firstRow = 0) {
    QStringList rows;
    for (int row = firstRow; row < grid.Rows(); ++row)
        rows += rowText(grid, row, grid.Cols());
    return rows;
}

inline void colorRow(Grid &grid, int row, Rgb color) {
    grid.setRow(row);
    for (int col = 0; col < grid.Cols(); ++col) {
        grid.setCol(col);
        grid.setCellForeColor(color);
    }
    grid.setLoss(row, color == Rgb{255, 0, 0});
}

} // namespace veltrona::test
