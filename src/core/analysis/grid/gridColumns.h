// The columns of the statistics grid, one row of a table each. Headings, zero texts, notes, sums,
// means and display forms are derived from it.
#pragma once

#include "core/database/recordColumns.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <utility>

namespace veltrona {

/// How a cell is computed from the records of its row.
enum class CellRule {
    Name,
    Sum,      // of figure / divisor
    Mean,     // sum of the figure / (records where it isn't 0 * divisor)
    Quotient, // sum of figure / perFigure, of the records where perFigure isn't 0
    Return,   // on investment
    Count,    // the number of records that a mean divides by
};

/// The true ratio of two columns' plain sums.
struct TrueRatio {
    int dividend = 0;
    int divisor = 0;
    const char *sentence = nullptr; // %1 is the dividend, %2 the divisor, with noun if counted;
                                    // null: no ratio
    bool ofGain = false;            // subtracts the divisor from the dividend first
};

struct GridColumn {
    int column = -1;
    const char *heading = "";
    const char *zeroText = ""; // of the summary row
    CellRule rule = CellRule::Sum;
    std::optional<Figure> figure = std::nullopt;
    std::optional<Figure> perFigure = std::nullopt;
    std::optional<Figure> weight = std::nullopt; // of the figure, in plain sums
    double divisor = 1;
    int countColumn = -1; // of a mean
    int decimals = -1;    // -1 shows the plain number text
    bool isPercent = false;
    bool hasLeadingZero = true; // else the form is .75
    const char *unit = "";
    const char *noun = nullptr; // one of what is counted, or what an amount of money is
    const char *note = "";
    TrueRatio ratio = {}; // where the column shows another figure
};

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

// clang-format off
inline constexpr std::array<GridColumn, Count> table = {{
    {.column = Name, .heading = "Campaigns", .zeroText = "Summary", .rule = CellRule::Name,
     .unit = "none, names as reports give them",
     .note = "The parts of the node that is selected in the tree."},
    {.column = Clicks, .heading = "Clicks", .zeroText = "0", .figure = Figure::Clicks,
     .unit = "clicks", .noun = "click", .note = "Clicks of all records, added up."},
    {.column = Impressions, .heading = "Impr.", .zeroText = "0", .figure = Figure::Impressions,
     .unit = "impressions", .noun = "impression",
     .note = "Impressions of all records, added up: how often ads were shown."},
    {.column = Ctr, .heading = "CTR", .zeroText = "0.00%", .figure = Figure::Ctr, .decimals = 2,
     .isPercent = true, .unit = "per cent",
     .note = "Click-through rates of all records, added up: a sum, not an average.",
     .ratio = {Clicks, Impressions, "%1 of %2: "}},
    {.column = AverageCpc, .heading = "Avg.CPC", .zeroText = "0", .rule = CellRule::Mean,
     .figure = Figure::Cpc, .divisor = millionths, .countColumn = CpcCount, .decimals = 2,
     .unit = "the currency of the reports",
     .note = "Mean of the records' costs per click; every record counts the same, those with 0 "
             "are left out.",
     .ratio = {Cost, Clicks, "%1 for %2: "}},
    {.column = Cost, .heading = "Cost", .zeroText = "0", .figure = Figure::Cost,
     .divisor = millionths, .decimals = 2, .unit = "the currency of the reports",
     .noun = "cost", .note = "Costs of all records, added up."},
    {.column = Conversions, .heading = "Conv.", .zeroText = "0", .figure = Figure::Conv,
     .unit = "conversions", .noun = "conversion",
     .note = "Conversions of all records, added up."},
    {.column = ConversionRate, .heading = "Conv.Rate", .zeroText = "0.00%", .figure = Figure::Conv,
     .decimals = 2, .isPercent = true, .unit = "per cent",
     .note = "Conversions of all records, added up, shown as per cent: a sum, not a rate.",
     .ratio = {Conversions, Clicks, "%1 of %2: "}},
    // The cost stays in millionths here.
    {.column = CostPerConversion, .heading = "Cost/Conv.", .zeroText = "0.00",
     .rule = CellRule::Quotient, .figure = Figure::Cost, .perFigure = Figure::Conv, .decimals = 2,
     .hasLeadingZero = false, .unit = "millionths of the currency of the reports",
     .note = "Cost divided by conversions, for each record that has conversions, added up.",
     .ratio = {Cost, Conversions, "%1 for %2: "}},
    {.column = AveragePosition, .heading = "Avg.Pos", .zeroText = "0.0", .rule = CellRule::Mean,
     .figure = Figure::Pos, .weight = Figure::Impressions, .countColumn = PositionCount,
     .decimals = 1, .unit = "positions, 1 is the top",
     .note = "Mean of the records' positions; every record counts the same, those with 0 are "
             "left out.",
     .ratio = {AveragePosition, PositionCount, "Weighted by %2: "}},
    {.column = ConversionValue, .heading = "Conv. Val.", .zeroText = ".00",
     .figure = Figure::ConvValue, .decimals = 2, .unit = "the currency of the reports",
     .noun = "conversion value",
     .note = "Conversion values of all records, added up."},
    {.column = Roi, .heading = "ROI", .zeroText = "0.00%", .rule = CellRule::Return, .decimals = 2,
     .isPercent = true, .unit = "per cent",
     .note = "What came back above the cost: value / cost x 100 - 100; 0 without a cost.",
     .ratio = {ConversionValue, Cost, "A value of %1 for a cost of %2: ", true}},
    {.column = Transactions, .heading = "Transactions", .zeroText = "0",
     .figure = Figure::Transactions, .unit = "transactions", .noun = "transaction",
     .note = "Transactions of all records, added up."},
    {.column = PositionCount, .rule = CellRule::Count, .noun = "impression"}, // in weighted sums
    {.column = CpcCount, .rule = CellRule::Count},
}};
// clang-format on

static_assert(std::ranges::is_sorted(table, std::ranges::less_equal(), &GridColumn::column) &&
                  table.front().column == 0 && table.back().column == Count - 1,
              "a row for each column, in the order of the enum");

constexpr const GridColumn &at(int col) {
    return table[static_cast<std::size_t>(col)];
}

/// Whether the column adds up rates: its figures mislead, the true rate is in their notes.
constexpr bool addsUpRates(const GridColumn &column) {
    return column.ratio.sentence &&
           (column.rule == CellRule::Sum || column.rule == CellRule::Quotient);
}

/// Calls `visitor` with a std::integral_constant of each column, so that the table is unrolled.
template<class Visitor>
constexpr void forEach(Visitor visitor) {
    [&]<int... cols>(std::integer_sequence<int, cols...>) {
        (visitor(std::integral_constant<int, cols>()), ...);
    }
    (std::make_integer_sequence<int, Count>());
}
} // namespace gridColumn

/// A number for each column.
struct ColumnSums {
    std::array<double, gridColumn::Count> values{};
    double &operator[](int col) { return values[static_cast<std::size_t>(col)]; }
    double operator[](int col) const { return values[static_cast<std::size_t>(col)]; }
};

/// The figures that some of the columns read, each once.
struct FigureList {
    std::array<Figure, figureColumns.size()> figures{};
    std::size_t count = 0;

    explicit constexpr FigureList(bool (*reads)(const GridColumn &)) {
        for (const GridColumn &column : gridColumn::table) {
            for (const auto &figure : {column.figure, column.perFigure, column.weight}) {
                if (reads(column) && figure && placeOf(*figure) == count)
                    figures[count++] = *figure;
            }
        }
    }
    constexpr std::size_t placeOf(Figure figure) const {
        const auto *end = figures.data() + count;
        return static_cast<std::size_t>(std::find(figures.data(), end, figure) - figures.data());
    }
    constexpr operator std::span<const Figure>() const { return {figures.data(), count}; }
};

} // namespace veltrona
