// Sentences about a chart: why it has no bars, what a bar counts, and the full description for
// screen readers.
#pragma once

#include "core/analysis/chart/chartPeriods.h"
#include "core/controls/chart.h"

#include <QString>

#include <optional>
#include <vector>

namespace veltrona {

/// The records of the project outside a chart without any.
struct ChartSurroundings {
    std::optional<DateRange> table; // its first and last date; none for an empty project
    bool inRange = false;           // the node has records on days of the range that no bar counts
};

/// `surroundings` are only used where no bar has a record.
ChartTexts chartTexts(const ChartPeriods &periods, const DateRange &range,
                      const std::vector<ChartBar> &bars, const ChartSurroundings &surroundings);

/// The days that a bar counts: "5 Jan 2007 – 11 Jan 2007".
QString datesText(const ChartBar &bar);

} // namespace veltrona
