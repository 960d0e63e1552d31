#include "tour/figures.h"

#include "core/analysis/grid/statisticsGrid.h"
#include "ui/shell/frmMain.h"
#include "ui/views/controls/elidedLabel.h"

#include <QDateEdit>

#include <algorithm>

namespace veltrona::tour {

namespace {

// The heading, the spacer and the summary.
constexpr int rowsAroundData = 3;

QString day(const frmMain &window, const char *picker) {
    return window.findChild<QDateEdit *>(QLatin1String(picker))->date().toString(Qt::ISODate);
}

void appendColumn(QStringList &lines, const Grid &grid, int col) {
    qsizetype width = 0;
    for (int row = 0; row < grid.Rows(); ++row)
        width = std::max(width, grid.TextMatrix(row, col).size());
    for (int row = 0; row < grid.Rows(); ++row) {
        const QString &text = grid.TextMatrix(row, col);
        lines[row] +=
            col == gridColumn::Name ? text.leftJustified(width) : "  " + text.rightJustified(width);
    }
}

} // namespace

bool hasRows(const Grid &grid) {
    return grid.Rows() > rowsAroundData;
}

bool hasRedRow(const Grid &grid) {
    for (int row = 1; row <= grid.Rows() - rowsAroundData; ++row) {
        if (grid.cellColor(row, gridColumn::Name) == red)
            return true;
    }
    return false;
}

bool hasBars(const Chart &chart) {
    const std::vector<ChartRow> &bars = chart.DataGrid().rows();
    return std::any_of(bars.begin(), bars.end(),
                       [](const ChartRow &bar) { return !bar.isNull && bar.value > 0; });
}

QString gridTable(const frmMain &window) {
    const Grid &grid = window.flxStat;
    QStringList lines(grid.Rows());
    for (int col = 0; col < grid.Cols(); ++col) {
        if (grid.ColWidth(col) != 0)
            appendColumn(lines, grid, col);
    }
    QString table = window.findChild<ElidedLabel *>("lblSum")->fullText() +
                    QString(", %1 to %2\n\n").arg(day(window, "dtpStart"), day(window, "dtpEnd"));
    for (QString &line : lines) {
        while (line.endsWith(u' '))
            line.chop(1);
        table += line + u'\n';
    }
    return table;
}

} // namespace veltrona::tour
