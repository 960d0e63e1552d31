// The grid for screen readers: moving down reads the row's name and the figure, moving sideways the
// heading and the figure; a loss is announced with the name.
#pragma once

namespace veltrona {

class GridView;

/// Registers the factory with Qt; further calls do no harm.
void installGridAccessible();

/// To be called when the current row has changed, before screen readers are notified.
void notifyRowEntered(GridView &view);

} // namespace veltrona
