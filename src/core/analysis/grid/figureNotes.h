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

#include <optional>

namespace veltrona {

/// What the records of a row add up to, without the rounding of cells, by column. Money in currency
/// units.
using PlainSums = ColumnSums;

class FigureNotes {
public:
    /// Reads the records of the node in both periods. Throws Failure.
    static FigureNotes query(ProjectRecords &records, const NodePath &path, const DateRange &range);

    /// None, one or two lines about the figure in a column.
    QStringList ofRow(const QString &name, int col) const;
    QStringList ofSummary(int col) const;

private:
    struct Period {
        QHash<QString, PlainSums> rows;
        PlainSums all;
    };
    QStringList lines(const PlainSums &shown, const PlainSums &earlier, int col) const;
    static Period periodOf(ProjectRecords &records, const NodePath &path, const DateRange &range);

    int m_year = 0; // of the first day shown
    DateRange m_before;
    Period m_shown;
    Period m_earlier;
};

/// The preceding period of equal length; none for a reversed range.
std::optional<DateRange> periodBefore(const DateRange &range);
/// "18 to 24 Nov", with the year if it isn't `year`.
QString shortDates(const DateRange &range, int year);

} // namespace veltrona
