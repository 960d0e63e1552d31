// Notes on the figures of the statistics: the true ratio of a row's sums where a column shows
// another figure, and the figure of the preceding period of equal length.
#pragma once

#include "core/analysis/grid/gridColumns.h"
#include "core/analysis/records/nodePath.h"
#include "core/base/dateValue.h"
#include "core/database/projectRecords.h"

#include <QHash>
#include <QString>
#include <QStringList>

namespace veltrona {

class FigureNotes {
public:
    /// Reads the records of the node in both periods. Throws Failure.
    FigureNotes(ProjectRecords &records, const NodePath &path, const DateRange &range);

    /// None, one or two lines about the figure in a column.
    QStringList ofRow(const QString &name, int col) const;
    QStringList ofSummary(int col) const;

private:
    /// What records add up to, without the rounding of cells. Money in currency units.
    struct Period {
        DateRange range;
        QHash<QString, ColumnSums> rows;
        ColumnSums all;
    };
    static Period periodOf(ProjectRecords &records, const NodePath &path, const DateRange &range);
    QStringList lines(const ColumnSums &shown, const ColumnSums &earlier, int col) const;

    Period m_shown;
    Period m_earlier; // of equal length
};

} // namespace veltrona
