// The statistics grid: texts of an empty grid, summary row, display forms, colours and column
// widths.
#pragma once

#include "core/analysis/grid/gridColumns.h"
#include "core/controls/grid.h"

#include <QString>

#include <functional>

namespace veltrona {

/// The colour of a row that didn't earn back its cost.
inline constexpr Rgb red{255, 0, 0};
inline constexpr Rgb green{0, 128, 0};
inline constexpr Rgb black{0, 0, 0};

/// Resets the grid to three rows, empty but for the headings; hides the hidden columns and sets the
/// default text colour.
void initGrid(Grid &grid, bool gridColor);
/// Tooltip of a column's heading: how the column is computed, and its unit. Empty for a hidden one.
QString columnNote(int col);
/// The number text of a figure, with the column's percent sign.
QString figureText(int col, double figure);
/// Writes the zero texts into the last row.
void resetSummary(Grid &grid);
/// Removes all data rows; heading, spacer and summary stay.
void removeDataRows(Grid &grid);

/// The return on investment as a percent text, not yet rounded; money in currency units.
QString returnOnInvestment(double conversionValue, double cost);
/// Compares the sums as rounded for display.
bool isLoss(double conversionValue, double cost);
/// Finishes the grid: averages, summary row, display forms and colours. Expects running sums in the
/// data rows and counts in the hidden columns.
void sumUp(Grid &grid, bool gridColor);

/// Width of a text in twips, in the font of the main window.
using TextWidth = std::function<float(const QString &)>;
/// Sizes one column, or all for any number that isn't a column. Hidden columns stay hidden.
void sizeColumns(Grid &grid, int col, const TextWidth &textWidth);

} // namespace veltrona
