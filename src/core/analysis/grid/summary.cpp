#include "core/analysis/grid/summary.h"

#include "core/analysis/grid/statisticsGrid.h"
#include "core/analysis/records/cellText.h"

namespace veltrona {

namespace {

double cellNumber(const Grid &grid, int row, int col) {
    const QString &text = grid.TextMatrix(row, col);
    return gridColumn::at(col).isPercent ? percentNumberOfText(text) : numberOfText(text);
}

void setCellNumber(Grid &grid, int row, int col, double number) {
    grid.setTextMatrix(row, col, figureText(col, number));
}

void averageRow(Grid &grid, int row) {
    for (const GridColumn &column : gridColumn::table) {
        if (column.rule != CellRule::Mean)
            continue;
        const double count = cellNumber(grid, row, column.countColumn);
        if (count > 0)
            setCellNumber(grid, row, column.column,
                          cellNumber(grid, row, column.column) / (count * column.divisor));
    }
}

constexpr bool isAddedUp(const GridColumn &column) {
    return column.rule == CellRule::Sum || column.rule == CellRule::Mean ||
           column.rule == CellRule::Quotient;
}

void addRow(const Grid &grid, int row, ColumnSums &sums) {
    for (const GridColumn &column : gridColumn::table) {
        if (isAddedUp(column)) {
            double &sum = sums[column.column];
            sum = toFifteenDigits(sum + cellNumber(grid, row, column.column));
        }
    }
}

/// Each of the `rows` counts once in a mean, however many records it holds.
void writeSums(Grid &grid, const ColumnSums &sums, int rows) {
    const int row = gridRow::summary(grid.Rows());
    for (const GridColumn &column : gridColumn::table) {
        const double sum = sums[column.column];
        if (isAddedUp(column))
            setCellNumber(grid, row, column.column,
                          column.rule == CellRule::Mean ? sum / rows : sum);
    }
    grid.setTextMatrix(
        row, gridColumn::Roi,
        returnOnInvestment(sums[gridColumn::ConversionValue], sums[gridColumn::Cost]));
}

void roundRow(Grid &grid, int row) {
    for (const GridColumn &column : gridColumn::table) {
        if (column.decimals < 0)
            continue;
        const int col = column.column;
        const double rounded = roundHalfToEven(cellNumber(grid, row, col), column.decimals);
        const QString text = figureText(col, rounded);
        grid.setTextMatrix(row, col, column.hasLeadingZero ? withLeadingZero(text) : text);
    }
}

bool earnedLessThanItsCost(const Grid &grid, int row) {
    return isLoss(cellNumber(grid, row, gridColumn::ConversionValue),
                  cellNumber(grid, row, gridColumn::Cost));
}

void colorRow(Grid &grid, int row, bool isLoss) {
    grid.setRow(row);
    for (int col = 0; col < grid.Cols(); ++col) {
        grid.setCol(col);
        grid.setCellForeColor(isLoss ? red : green);
    }
    grid.setLoss(row, isLoss);
}

} // namespace

QString returnOnInvestment(double conversionValue, double cost) {
    if (cost == 0)
        return QStringLiteral("0.00%");
    const double percent = (conversionValue / cost) * 100;
    // A negative cost may give two signs; such a text is read as 0.
    if (conversionValue < cost)
        return u'-' + numberText(100 - percent) + u'%';
    return numberText(percent - 100) + u'%';
}

bool isLoss(double conversionValue, double cost) {
    const auto shown = [](double sum) { return toFifteenDigits(roundHalfToEven(sum, 2)); };
    return shown(conversionValue) < shown(cost);
}

void sumUp(Grid &grid, bool gridColor) {
    const RedrawPause pause(grid);
    resetSummary(grid);
    const int rows = gridRow::dataRows(grid.Rows());
    const int summary = gridRow::summary(grid.Rows());
    ColumnSums sums;
    for (int row = gridRow::FirstData; row <= rows; ++row) {
        averageRow(grid, row);
        addRow(grid, row, sums);
        roundRow(grid, row);
        if (gridColor && earnedLessThanItsCost(grid, row))
            colorRow(grid, row, true);
    }
    if (rows > 0)
        writeSums(grid, sums, rows);
    roundRow(grid, summary);
    if (gridColor)
        colorRow(grid, summary, earnedLessThanItsCost(grid, summary));
}

} // namespace veltrona
