// Writes a report: the HTML file, and graph.jpg beside it if the graph is wanted. Both are put in
// place when they are complete, the page first.
#pragma once

#include "core/base/dateValue.h"
#include "core/controls/grid.h"
#include "core/controls/tree.h"
#include "core/picture/drawing.h"
#include "core/report/reportText.h"

#include <QLocale>
#include <QString>

#include <functional>

namespace veltrona {

/// What a report is made from; the caller owns it all.
struct ReportSource {
    const TreeNode *selected = nullptr;
    DateRange range;
    Grid *grid = nullptr; // its current cell moves to the last cell written
    QString metric;
    ReportOptions options;
    /// Copies the chart to the clipboard and into the picture box, and gives the box's picture;
    /// null if there is none. Asked only if the graph is wanted.
    std::function<const drawing::Picture *()> copyChart;
    QLocale locale = QLocale::system();
};

/// Blanks around the name are cut; a relative name starts from the current directory. Throws
/// Failure where the page can't be written: an older page and its picture are as they were then. A
/// picture that can't be written is told in a message, and the page is put in place all the same,
/// without an older picture beside it.
/// Gives the places of the values in the page.
ReportPlaces writeReport(const QString &strFilename, bool doColor, const ReportSource &source);

} // namespace veltrona
