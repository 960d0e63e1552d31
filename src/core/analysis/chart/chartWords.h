// The sentences about a chart: why it has no bars, what a bar counts, and the whole for those who
// hear it.
#pragma once

#include "core/analysis/chart/chartPeriods.h"
#include "core/controls/chart.h"

#include <optional>

namespace veltrona {

/// What the project holds around a chart none of whose bars has a record.
struct ChartSurroundings {
    std::optional<DateRange> table; // its first and last date; none for an empty project
    bool inRange = false;           // the node has records in the range, on days that no bar counts
};

/// `surroundings` matter only where no bar has a record.
ChartWords chartWords(const ChartPeriods &periods, const DateRange &range,
                      const std::vector<ChartBar> &bars, const ChartSurroundings &surroundings);

/// The days that a bar counts: "5 Jan 2007 – 11 Jan 2007".
QString datesInWords(const ChartBar &bar);

} // namespace veltrona
