// The shape of the statistics grid: its columns, headings, kinds of rows and column widths.
#pragma once

#include "core/controls/grid.h"

#include <functional>

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
    PositionCount,
    CpcCount, // hidden
    Count
};
}

inline constexpr Rgb red{255, 0, 0};
inline constexpr Rgb green{0, 128, 0};
inline constexpr Rgb black{0, 0, 0};

/// Three rows with the headings, no texts below them, hidden columns hidden, default text colour by
/// the flag.
void initGrid(Grid &grid, bool gridColor);
/// Writes the zero texts into the last row.
void resetSummary(Grid &grid);
/// Takes all data rows away; heading, spacer and summary stay.
void removeDataRows(Grid &grid);

/// Width of a text in twips, in the font of the main window.
using TextWidth = std::function<float(const QString &)>;
/// Sizes one column, or all for -1 and any number that is no column. Hidden columns stay hidden.
void sizeColumns(Grid &grid, int col, const TextWidth &textWidth);

} // namespace veltrona
