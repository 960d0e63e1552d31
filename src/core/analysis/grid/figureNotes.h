// Notes on the figures of the statistics: the true ratio of a row's sums where a column shows
// another figure, the row's share, what was spent without a conversion, a loss in figures, and the
// same figure in the period before and in the year before.
#pragma once

#include "core/analysis/grid/gridColumns.h"
#include "core/analysis/records/nodePath.h"
#include "core/base/dateValue.h"
#include "core/database/projectRecords.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace veltrona {

/// What records add up to, without the rounding of cells. Money in currency units.
struct NotedSums {
    ColumnSums sums;
    /// Keywords, which are leaves of the account, that have a cost and no conversion.
    int wastingKeywords = 0;
    double wastedCost = 0;
};

class FigureNotes {
public:
    /// Reads the records of the node in all the periods compared. Throws Failure.
    FigureNotes(ProjectRecords &records, const NodePath &path, const DateRange &range);

    /// Some lines about the figure in a column; in the first column about a loss.
    QStringList ofRow(const QString &name, int col) const;
    QStringList ofSummary(int col) const;

    /// The lines about a node that loses money. Reads the records of the node. Throws Failure.
    static QStringList ofLoss(ProjectRecords &records, const NodePath &path,
                              const DateRange &range);

private:
    struct Period {
        DateRange range;
        QHash<QString, NotedSums> rows;
        NotedSums all;
    };
    static Period periodOf(ProjectRecords &records, const NodePath &path, const DateRange &range);
    /// With the share of `whole`, which may be null.
    QStringList lines(const std::function<NotedSums(const Period &)> &sumsOf, int col,
                      const NotedSums *whole) const;

    Period m_shown;
    std::vector<Period> m_earlier; // that are compared
};

} // namespace veltrona
