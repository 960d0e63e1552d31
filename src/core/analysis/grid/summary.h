// Finishes the statistics grid: averages, summary row, display forms and colours.
#pragma once

#include "core/controls/grid.h"

#include <QString>

namespace veltrona {

/// The return on investment as a percent text, not yet rounded; money in currency units.
QString returnOnInvestment(double conversionValue, double cost);

/// Compares the sums as rounded for display.
bool isLoss(double conversionValue, double cost);

/// Expects running sums in the data rows and counts in the hidden columns.
void sumUp(Grid &grid, bool gridColor);

} // namespace veltrona
