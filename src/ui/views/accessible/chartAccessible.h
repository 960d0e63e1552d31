// The chart for screen readers: an accessible of role Chart, a table with a row for each bar and
// the columns dates and value.
#pragma once

namespace veltrona {

class ChartView;

/// Registers the factory with Qt; further calls do no harm.
void installChartAccessible();

void notifyChartChanged(ChartView &view);
void notifyBarMarked(ChartView &view);

} // namespace veltrona
