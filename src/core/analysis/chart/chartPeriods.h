// The bars of the chart: how a date range is divided into them, each bar's label and days, and the
// sentences that explain them.
#pragma once

#include "core/base/dateValue.h"
#include "core/controls/chart.h"

#include <QString>

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

namespace veltrona {

enum class ChartUnit { Day, Week, Month, Year };

struct ChartUnitRow {
    ChartUnit unit;
    const char *caption; // in the grouping combo; null where it can't be chosen
    int days;            // length in days, or else in months
    int months;
};
/// From fine to coarse; the first ones are the groupings.
inline constexpr std::array chartUnits = {
    ChartUnitRow{ChartUnit::Day, "Days", 1, 0},
    ChartUnitRow{ChartUnit::Week, "Weeks", 7, 0},
    ChartUnitRow{ChartUnit::Month, "Months", 0, 1},
    ChartUnitRow{ChartUnit::Year, nullptr, 0, 12},
};
static_assert(std::ranges::is_sorted(chartUnits, std::ranges::less_equal(), &ChartUnitRow::unit) &&
                  chartUnits.back().unit == ChartUnit(chartUnits.size() - 1),
              "a row for each unit, in the order of the enum");

/// More bars only where they are years.
inline constexpr int maxBars = 90;

/// `count` bars of `step` units each.
struct ChartPeriods {
    ChartUnit unit = ChartUnit::Day;
    int count = 1;
    int step = 1;
    friend bool operator==(const ChartPeriods &, const ChartPeriods &) = default;
};

struct ChartBar {
    QString label;
    int fromDay = 0; // first and last day number that the bar counts
    int toDay = 0;
    double value = 0;
    bool hasRecords = false; // of the node, whatever their values
};

/// `grouping` is the index of the requested unit. A coarser one is taken where it would give more
/// than `maxBars` bars.
ChartPeriods choosePeriods(int grouping, const DateRange &range);
/// The bars from `start` on. The first one counts that single day, whatever the unit; the others
/// end with their own date.
std::vector<ChartBar> emptyBars(const ChartPeriods &periods, DateValue start);

/// The records of the project outside a chart whose bars are all 0.
struct ChartSurroundings {
    std::optional<DateRange> table;  // its first and last date; none for an empty project
    bool inRange = false;            // the node has records on days of the range that no bar counts
    bool hasUncountedValues = false; // some of them have a value
};
/// `surroundings` are only used where all bars are 0.
ChartTexts chartTexts(const ChartPeriods &periods, const DateRange &range,
                      const std::vector<ChartBar> &bars, const ChartSurroundings &surroundings);
/// The days that a bar counts: "5 Jan 2007 – 11 Jan 2007".
QString datesText(const ChartBar &bar);

} // namespace veltrona
