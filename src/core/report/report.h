// A report as a value: all that it shows, as texts. Those of a row are shared with the grid's
// cells.
#pragma once

#include "core/analysis/grid/statisticsGrid.h"
#include "core/analysis/records/nodePath.h"
#include "core/base/dateValue.h"
#include "core/controls/grid.h"

#include <QLocale>
#include <QString>
#include <QStringList>

#include <array>
#include <functional>
#include <vector>

namespace veltrona {

namespace drawing {
class Picture;
}

/// The check boxes of the export dialog, in the order of their indices.
struct ReportOptions {
    bool graph = true;
    bool details = true;
    bool dateAndTime = true;
    bool footer = true;
};

/// What a report is made from, owned by the caller.
struct ReportSource {
    NodePath selected = {};
    DateRange range = {};
    Grid *grid = nullptr; // writing moves its current cell to the last cell written
    QString metric = {};
    ReportOptions options = {};
    /// Copies the chart to the clipboard and into the picture box, and returns the box's picture,
    /// null if there is none. Called only if the graph is wanted.
    std::function<const drawing::Picture *()> copyChart = {};
    QLocale locale = QLocale::system();
};

using ReportCells = std::array<QString, gridColumn::Shown>;

struct ReportRow {
    ReportCells cells;
    bool isMarked = false; // a loss, if losses are to be marked
};

struct Report {
    QString now; // in the locale's short form
    QStringList details;
    QString start; // days, as reportDate writes them
    QString end;
    QString metric;
    ReportOptions options;
    // Of the statistics; without `options.details` there are none.
    ReportCells headings;
    std::vector<ReportRow> rows; // the empty one and the summary included
};

/// `doColor` marks the rows that are a loss.
Report makeReport(const ReportSource &source, bool doColor);

/// What is selected: campaign, ad group, search type, keyword and keyword type; "All" where the
/// node fixes nothing.
QStringList reportDetails(const NodePath &path);

/// The first separator in the locale's short date format, "/" if it has none.
QChar dateSeparator(const QLocale &locale);
/// Month, day and year: "03/07/2006".
QString reportDate(DateValue date, QChar separator);

} // namespace veltrona
