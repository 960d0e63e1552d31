// What the columns of the statistics say of themselves, for who first meets them.
#pragma once

#include <QString>

namespace veltrona {

/// Two lines: how a column is worked out, and its unit. Empty for a hidden column.
QString columnNote(int col);

} // namespace veltrona
