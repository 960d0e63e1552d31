// The grid for a screen reader: moving down it says the row's name and the figure, moving sideways
// the heading and the figure, and of a row that lost money it says so with the name.
#pragma once

namespace veltrona {

class GridView;

/// Makes the toolkit ask here for each GridView; once is enough, more does no harm.
void installGridAccessible();

/// To be called when the keyboard has come to another row, before a reader is told of it.
void tellRowEntered(GridView &view);

} // namespace veltrona
