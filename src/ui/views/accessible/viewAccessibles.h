// The views for screen readers. Each view installs its own kind of accessible: once is enough, more
// does no harm.
#pragma once

namespace veltrona {

class ChartView;
class ComboBoxView;
class GridView;

/// Role Chart: a table with a row for each bar and the columns dates, value and axis label.
void installChartAccessible();
void notifyChartChanged(ChartView &view);
void notifyBarMarked(ChartView &view);

/// Qt's own reports neither the value when the list gets the focus nor a new one chosen by key.
void installComboBoxAccessible();
/// The user has changed the value while the list is closed.
void notifyChoice(ComboBoxView &view);

/// Moving down reads the row's name and the figure, moving sideways the heading and the figure; a
/// loss is announced with the name.
void installGridAccessible();
/// To be called when the current row has changed, before screen readers are notified.
void notifyRowEntered(GridView &view);

} // namespace veltrona
