#include "core/analysis/grid/summary.h"

#include "core/analysis/grid/statisticsGrid.h"
#include "core/analysis/records/cellText.h"

#include <array>
#include <utility>

namespace veltrona {

namespace {

using namespace gridColumn;

constexpr bool isPercent(int col) {
    return col == Ctr || col == ConversionRate || col == Roi;
}

double cellNumber(const Grid &grid, int row, int col) {
    const QString &text = grid.TextMatrix(row, col);
    return isPercent(col) ? percentNumberOfText(text) : numberOfText(text);
}

void setCellNumber(Grid &grid, int row, int col, double number) {
    const QString text = numberText(number);
    grid.setTextMatrix(row, col, isPercent(col) ? text + u'%' : text);
}

void averageRow(Grid &grid, int row) {
    const double positions = cellNumber(grid, row, PositionCount);
    if (positions > 0)
        setCellNumber(grid, row, AveragePosition,
                      cellNumber(grid, row, AveragePosition) / positions);
    const double cpcs = cellNumber(grid, row, CpcCount);
    if (cpcs > 0)
        setCellNumber(grid, row, AverageCpc,
                      cellNumber(grid, row, AverageCpc) / (cpcs * 1'000'000));
}

/// Every number column is added up but the return on investment.
using Sums = std::array<double, Transactions + 1>;

void addRow(const Grid &grid, int row, Sums &sums) {
    for (int col = Clicks; col <= Transactions; ++col) {
        double &sum = sums[static_cast<std::size_t>(col)];
        if (col != Roi)
            sum = toFifteenDigits(sum + cellNumber(grid, row, col));
    }
}

void writeSums(Grid &grid, const Sums &sums) {
    const int row = gridRow::summary(grid.Rows());
    for (int col = Clicks; col <= Transactions; ++col) {
        if (col != Roi)
            setCellNumber(grid, row, col, sums[static_cast<std::size_t>(col)]);
    }
    grid.setTextMatrix(row, Roi, returnOnInvestment(sums[ConversionValue], sums[Cost]));
}

void roundRow(Grid &grid, int row) {
    constexpr std::pair<int, int> decimalsOfColumn[] = {
        {Ctr, 2},
        {AverageCpc, 2},
        {Cost, 2},
        {ConversionRate, 2},
        {CostPerConversion, 2},
        {AveragePosition, 1},
        {ConversionValue, 2},
        {Roi, 2},
    };
    for (const auto &[col, decimals] : decimalsOfColumn) {
        setCellNumber(grid, row, col, roundHalfToEven(cellNumber(grid, row, col), decimals));
        // "Cost/Conv." alone keeps the form .75
        if (col != CostPerConversion)
            grid.setTextMatrix(row, col, withLeadingZero(grid.TextMatrix(row, col)));
    }
}

bool earnedLessThanItsCost(const Grid &grid, int row) {
    return isLoss(cellNumber(grid, row, ConversionValue), cellNumber(grid, row, Cost));
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
    // With a cost below zero two signs may meet; such a text reads as 0.
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
    Sums sums{};
    for (int row = gridRow::FirstData; row <= rows; ++row) {
        averageRow(grid, row);
        addRow(grid, row, sums);
        roundRow(grid, row);
        if (gridColor && earnedLessThanItsCost(grid, row))
            colorRow(grid, row, true);
    }
    if (rows > 0) {
        writeSums(grid, sums);
        // Each row counts once, however many records it holds.
        for (const int col : {AverageCpc, AveragePosition})
            setCellNumber(grid, summary, col, cellNumber(grid, summary, col) / rows);
    }
    roundRow(grid, summary);
    if (gridColor)
        colorRow(grid, summary, earnedLessThanItsCost(grid, summary));
}

} // namespace veltrona
