// Reports for tests of preview and print: written as the program writes them, of rows given by name
// only.
#pragma once

#include "core/analysis/grid/statisticsGrid.h"
#include "core/picture/drawing.h"
#include "core/report/reportWriter.h"
#include "support/gridText.h"

#include <QImage>
#include <QStringList>

namespace veltrona::test {

struct WrittenReport {
    QStringList names = {};
    QString campaign = {}; // is selected; empty selects nothing
    /// Every row of these is red.
    QStringList redNames = {};
    ReportOptions options{.graph = false};

    Report write(const QString &path) const {
        Grid grid(gridColumn::Count);
        initGrid(grid, true);
        grid.setRows(static_cast<int>(names.size()) + 3);
        for (int row = 1; row <= names.size(); ++row) {
            grid.setTextMatrix(row, gridColumn::Name, names[row - 1]);
            for (int col = 1; col < gridColumn::Count; ++col)
                grid.setTextMatrix(row, col, QString::number(row * col % 977 / 7.0, 'f', 2));
            if (redNames.contains(names[row - 1]))
                colorRow(grid, row, red);
        }
        grid.setTextMatrix(grid.Rows() - 1, 0, "Summary");
        QImage graph(600, 200, QImage::Format_BGR888);
        graph.fill(QColor(200, 0, 200));
        const drawing::Picture picture(drawing::createBitmap(
            graph.width(), graph.height(), graph.constBits(), graph.bytesPerLine()));
        ReportSource source;
        if (!campaign.isEmpty())
            source.selected.names = {campaign};
        source.grid = &grid;
        source.metric = "Clicks";
        source.options = options;
        source.copyChart = [&] { return &picture; };
        source.locale = QLocale::c();
        return writeReport(path, true, source);
    }
};

/// "row 1", "row 2" and so on.
inline QStringList numberedNames(int count) {
    QStringList names = {};
    for (int i = 1; i <= count; ++i)
        names << QString("row %1").arg(i);
    return names;
}

} // namespace veltrona::test
