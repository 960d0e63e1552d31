// The columns of the statistics grid, one row of a table each. Headings, zero texts, notes, sums,
// means and display forms are derived from it.
#pragma once

#include "core/database/recordColumns.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <utility>

namespace veltrona {

namespace gridColumn {
enum : int {
    Name,
    Clicks,
    Impressions,
    Ctr,
    AverageCpc,
    Cost,
    Conversions,
    ConversionRate,
    CostPerConversion,
    AveragePosition,
    ConversionValue,
    Roi,
    Transactions,
    PositionCount, // this and the next are hidden
    CpcCount,
    Count,
    Shown = PositionCount // number of visible columns
};
}

/// How a cell is computed from the records of its row.
enum class CellRule {
    Name,
    Sum,      // of figure / divisor
    Mean,     // sum of the figure / (records where it isn't 0 * divisor)
    Quotient, // sum of figure / perFigure, of the records where perFigure isn't 0
    Return,   // on investment
    Count,    // the number of records that a mean divides by
};

/// The true ratio of a row's plain sums, for columns that show another figure.
struct TrueRatio {
    int dividend = gridColumn::Name;
    int divisor = gridColumn::Name;
    bool ofGain = false;            // the divisor is subtracted from the dividend first
    const char *sentence = nullptr; // %1 is the dividend, %2 the divisor; null without a ratio
};

struct GridColumn {
    int column = -1;
    const char *heading = "";
    const char *zeroText = ""; // of the summary row
    const char *note = "";
    const char *unit = "";
    CellRule rule = CellRule::Sum;
    std::optional<Figure> figure = std::nullopt;
    std::optional<Figure> perFigure = std::nullopt;
    double divisor = 1;
    int countColumn = -1; // of a mean
    int decimals = -1;    // -1 shows the plain number text
    bool isPercent = false;
    bool hasLeadingZero = true; // else the form is .75
    TrueRatio ratio = {};
    std::optional<Figure> weight = std::nullopt; // of the figure, in plain sums
};

// clang-format off
inline constexpr std::array<GridColumn, gridColumn::Count> gridColumns = {{
    {.column = gridColumn::Name, .heading = "Campaigns", .zeroText = "Summary",
     .note = "The parts of the node that is selected in the tree.",
     .unit = "none, names as reports give them", .rule = CellRule::Name},
    {.column = gridColumn::Clicks, .heading = "Clicks", .zeroText = "0",
     .note = "Clicks of all records, added up.", .unit = "clicks",
     .figure = Figure::Clicks},
    {.column = gridColumn::Impressions, .heading = "Impr.", .zeroText = "0",
     .note = "Impressions of all records, added up: how often ads were shown.",
     .unit = "impressions", .figure = Figure::Impressions},
    {.column = gridColumn::Ctr, .heading = "CTR", .zeroText = "0.00%",
     .note = "Click-through rates of all records, added up: a sum, not an average.",
     .unit = "per cent", .figure = Figure::Ctr, .decimals = 2, .isPercent = true,
     .ratio = {gridColumn::Clicks, gridColumn::Impressions, false,
               "%1 clicks of %2 impressions: "}},
    {.column = gridColumn::AverageCpc, .heading = "Avg.CPC", .zeroText = "0",
     .note = "Mean of the records' costs per click, each record alike; none counts where it is 0.",
     .unit = "the currency of the reports", .rule = CellRule::Mean,
     .figure = Figure::Cpc, .divisor = millionths, .countColumn = gridColumn::CpcCount, .decimals = 2,
     .ratio = {gridColumn::Cost, gridColumn::Clicks, false, "%1 for %2 clicks: "}},
    {.column = gridColumn::Cost, .heading = "Cost", .zeroText = "0",
     .note = "Costs of all records, added up.", .unit = "the currency of the reports",
     .figure = Figure::Cost, .divisor = millionths, .decimals = 2},
    {.column = gridColumn::Conversions, .heading = "Conv.", .zeroText = "0",
     .note = "Conversions of all records, added up.", .unit = "conversions",
     .figure = Figure::Conv},
    {.column = gridColumn::ConversionRate, .heading = "Conv.Rate", .zeroText = "0.00%",
     .note = "Conversions of all records, added up, shown as per cent: a sum, not a rate.",
     .unit = "per cent", .figure = Figure::Conv, .decimals = 2, .isPercent = true,
     .ratio = {gridColumn::Conversions, gridColumn::Clicks, false,
               "%1 conversions of %2 clicks: "}},
    // The cost stays in millionths here.
    {.column = gridColumn::CostPerConversion, .heading = "Cost/Conv.", .zeroText = "0.00",
     .note = "Cost by conversions of each record that has conversions, added up.",
     .unit = "millionths of the currency of the reports", .rule = CellRule::Quotient,
     .figure = Figure::Cost, .perFigure = Figure::Conv, .decimals = 2, .hasLeadingZero = false,
     .ratio = {gridColumn::Cost, gridColumn::Conversions, false, "%1 for %2 conversions: "}},
    {.column = gridColumn::AveragePosition, .heading = "Avg.Pos", .zeroText = "0.0",
     .note = "Mean of the records' positions, each record alike; none counts where it is 0.",
     .unit = "positions, 1 is the top", .rule = CellRule::Mean,
     .figure = Figure::Pos, .countColumn = gridColumn::PositionCount, .decimals = 1,
     .ratio = {gridColumn::AveragePosition, gridColumn::PositionCount, false,
               "Weighted by %2 impressions: "},
     .weight = Figure::Impressions},
    {.column = gridColumn::ConversionValue, .heading = "Conv. Val.", .zeroText = ".00",
     .note = "Conversion values of all records, added up.", .unit = "the currency of the reports",
     .figure = Figure::ConvValue, .decimals = 2},
    {.column = gridColumn::Roi, .heading = "ROI", .zeroText = "0.00%",
     .note = "Conversion value by cost, times 100, less 100; 0 without a cost.",
     .unit = "per cent", .rule = CellRule::Return, .decimals = 2, .isPercent = true,
     .ratio = {gridColumn::ConversionValue, gridColumn::Cost, true,
               "A value of %1 for a cost of %2: "}},
    {.column = gridColumn::Transactions, .heading = "Transactions", .zeroText = "0",
     .note = "Transactions of all records, added up.", .unit = "transactions",
     .figure = Figure::Transactions},
    {.column = gridColumn::PositionCount, .rule = CellRule::Count},
    {.column = gridColumn::CpcCount, .rule = CellRule::Count},
}};
// clang-format on

static_assert(std::ranges::is_sorted(gridColumns, std::ranges::less_equal(), &GridColumn::column) &&
                  gridColumns.front().column == 0 &&
                  gridColumns.back().column == gridColumn::Count - 1,
              "a row for each column, in the order of the enum");

constexpr const GridColumn &gridColumnAt(int col) {
    return gridColumns[static_cast<std::size_t>(col)];
}

/// Calls `visitor` with a std::integral_constant of each column, so that the table is unrolled.
template<class Visitor, std::size_t... cols>
constexpr void forEachColumn(Visitor visitor, std::index_sequence<cols...>) {
    (visitor(std::integral_constant<std::size_t, cols>()), ...);
}
template<class Visitor>
constexpr void forEachColumn(Visitor visitor) {
    forEachColumn(visitor, std::make_index_sequence<gridColumn::Count>());
}

/// The figures that a computation over the columns reads, each once.
struct FigureList {
    std::array<Figure, figureColumns.size()> figures{};
    std::size_t count = 0;

    constexpr std::size_t placeOf(Figure figure) const {
        return static_cast<std::size_t>(
            std::find(figures.begin(), figures.begin() + count, figure) - figures.begin());
    }
    constexpr void add(const std::optional<Figure> &figure) {
        if (figure && placeOf(*figure) == count)
            figures[count++] = *figure;
    }
    constexpr operator std::span<const Figure>() const { return {figures.data(), count}; }
};

} // namespace veltrona
