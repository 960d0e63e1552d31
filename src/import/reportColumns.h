// The 34 columns that the program knows of a report, and the spelling that the report in hand has
// declared for each of them.
#pragma once

#include <QString>

#include <array>

namespace veltrona {

inline constexpr int reportColumnCount = 34;

/// Indexed like the list of the column check; the empty text is a column not declared.
using ReportColumnNames = std::array<QString, reportColumnCount>;

} // namespace veltrona
