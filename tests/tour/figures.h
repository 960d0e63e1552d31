// What the main window shows in its figures: whether there are any, and the grid as text.
#pragma once

#include "core/controls/chart.h"
#include "core/controls/grid.h"

namespace veltrona {
class frmMain;
}

namespace veltrona::tour {

bool hasRows(const Grid &grid);
bool hasRedRow(const Grid &grid);
/// Whether at least one bar stands above the axis.
bool hasBars(const Chart &chart);

/// Caption, period and grid: a line for each row, names to the left and numbers to the right.
QString gridTable(const frmMain &window);

} // namespace veltrona::tour
