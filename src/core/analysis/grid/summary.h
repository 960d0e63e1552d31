// Finishes the statistics grid: averages of the rows, the summary row, display forms and colours.
#pragma once

#include "core/controls/grid.h"

namespace veltrona {

/// The return on investment as a percent text, not yet rounded; money in currency units.
QString returnOnInvestment(double conversionValue, double cost);

/// Whether a row of these sums is red: what counts is what its cells show.
bool isLoss(double conversionValue, double cost);

/// Expects raw running sums in the data rows and the counts in the hidden columns.
void sumUp(Grid &grid, bool gridColor);

} // namespace veltrona
