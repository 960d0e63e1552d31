// The chart for a screen reader: an accessible of role Chart with a table of a row for each bar and
// the columns label and value.
#pragma once

namespace veltrona {

class ChartView;

/// Makes the toolkit ask here for each ChartView; once is enough, more does no harm.
void installChartAccessible();

void tellChartChanged(ChartView &view);
void tellBarMarked(ChartView &view);

} // namespace veltrona
