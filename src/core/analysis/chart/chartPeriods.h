// How the chart divides a date range into bars: the kind of period, the number of bars, and each
// bar's label and days. Pure calendar arithmetic.
#pragma once

#include "core/base/dateValue.h"

#include <vector>

namespace veltrona {

enum class ChartUnit { Day, Week, Month, Year };

/// `count` bars of `step` units each.
struct ChartPeriods {
    ChartUnit unit = ChartUnit::Day;
    int count = 1;
    int step = 1;
    friend bool operator==(const ChartPeriods &, const ChartPeriods &) = default;
};

struct ChartBar {
    QString label;
    int fromDay = 0; // the first and the last day number that the bar counts
    int toDay = 0;
    double value = 0;
    bool hasRecords = false; // of the node, whatever their values
};

/// `grouping` is the wish: 0 days, 1 weeks, 2 months. A coarser unit is taken where the wish would
/// give more than 90 bars.
ChartPeriods choosePeriods(int grouping, const DateRange &range);
/// The bars from `start` on. The first one counts that single day, whatever the unit; each other
/// one ends with its own date.
std::vector<ChartBar> emptyBars(const ChartPeriods &periods, DateValue start);
/// "5 Jan 2007"
QString dateInWords(int day);

} // namespace veltrona
