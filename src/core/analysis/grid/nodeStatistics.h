// The statistics of a tree node over a period: running sums of all its day records, one row for
// each value of the column one level below the node.
#pragma once

#include "core/analysis/grid/gridColumns.h"
#include "core/analysis/records/nodePath.h"
#include "core/base/dateValue.h"
#include "core/controls/grid.h"
#include "core/database/projectRecords.h"

#include <QString>

#include <vector>

namespace veltrona {

/// The sums of one row, by column. They have passed through 15 significant digits after every
/// record, as they would in a cell.
struct StatisticsRow {
    QString name;
    ColumnSums sums;
};

struct NodeStatistics {
    QString caption;                 // the node's Key without its level prefix
    QString heading;                 // of the grid's first column
    std::vector<StatisticsRow> rows; // in reading order; empty if no record fell into the period
};

/// Throws Failure; touches no control.
NodeStatistics queryNodeStatistics(ProjectRecords &records, const NodePath &path,
                                   const DateRange &range);

/// Writes the sums into the grid's cells; sumUp must follow. Without rows the grid gets its empty
/// form, which is final. Column widths stay.
void fillGrid(const NodeStatistics &statistics, Grid &grid, bool gridColor);

} // namespace veltrona
