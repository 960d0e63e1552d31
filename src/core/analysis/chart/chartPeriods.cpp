#include "core/analysis/chart/chartPeriods.h"

#include "core/base/text.h"

namespace veltrona {

namespace {

constexpr int maxStep = 8;

/// Makes the end exclusive. Weeks and years add one day only (docs/oddities.md).
DateValue exclusiveEnd(ChartUnit unit, DateValue end) {
    if (unit == ChartUnit::Month)
        return addMonths(dayNumber(end), 1) + timeOfDay(end);
    return end + 1;
}

/// Days, months and years count crossed boundaries, regardless of the time of day; weeks count full
/// spans of seven days, including the time of day.
int difference(ChartUnit unit, DateValue from, DateValue to) {
    const int days = dayNumber(to) - dayNumber(from);
    if (unit == ChartUnit::Day)
        return days;
    if (unit == ChartUnit::Week)
        return (secondOfDay(to) < secondOfDay(from) ? days - 1 : days) / 7;
    const CalendarDay first = calendarDay(dayNumber(from));
    const CalendarDay last = calendarDay(dayNumber(to));
    const int years = last.year - first.year;
    return unit == ChartUnit::Year ? years : years * 12 + last.month - first.month;
}

/// Half to even; both are positive.
int roundedQuotient(int dividend, int divisor) {
    const int quotient = dividend / divisor;
    const int rest = 2 * (dividend % divisor);
    return rest > divisor || (rest == divisor && quotient % 2 == 1) ? quotient + 1 : quotient;
}

ChartPeriods tryUnit(ChartUnit unit, const DateRange &range) {
    ChartPeriods periods{unit, difference(unit, range.start, exclusiveEnd(unit, range.end)), 1};
    if (periods.count <= 0)
        periods.count = 1;
    const int units = periods.count;
    while (periods.count > maxBars && periods.step < maxStep) {
        ++periods.step;
        periods.count = roundedQuotient(units, periods.step);
    }
    return periods;
}

int advanced(int day, const ChartPeriods &periods) {
    const ChartUnitRow &unit = rowOf(periods.unit);
    return unit.days > 0 ? day + unit.days * periods.step
                         : addMonths(day, unit.months * periods.step);
}

/// English; `month` counts from 1.
QString monthName(int month) {
    const std::string_view name = shortMonthName(month);
    return QLatin1String(name.data(), static_cast<qsizetype>(name.size()));
}

QString label(ChartUnit unit, int day) {
    const CalendarDay date = calendarDay(day);
    const QString year = padded(date.year, 4);
    switch (unit) {
    case ChartUnit::Day:
        return monthName(date.month) + u' ' + padded(date.day);
    case ChartUnit::Week:
        return year + u' ' + padded(weekOfYear(day));
    case ChartUnit::Month:
        return year + u' ' + monthName(date.month);
    case ChartUnit::Year:
        return year;
    }
    return {};
}

} // namespace

ChartPeriods choosePeriods(int grouping, const DateRange &range) {
    ChartPeriods periods;
    for (auto unit = static_cast<std::size_t>(grouping); unit < chartUnits.size(); ++unit) {
        periods = tryUnit(chartUnits[unit].unit, range);
        if (periods.count <= maxBars)
            break;
    }
    return periods;
}

std::vector<ChartBar> emptyBars(const ChartPeriods &periods, DateValue start) {
    std::vector<ChartBar> bars;
    bars.reserve(static_cast<std::size_t>(periods.count));
    int day = dayNumber(start);
    for (int i = 0; i < periods.count; ++i) {
        const int from = bars.empty() ? day : bars.back().toDay + 1;
        bars.push_back({label(periods.unit, day), from, day, 0});
        day = advanced(day, periods);
    }
    return bars;
}

QString dateText(int day) {
    const CalendarDay date = calendarDay(day);
    return QStringLiteral("%1 %2 %3").arg(date.day).arg(monthName(date.month)).arg(date.year);
}

} // namespace veltrona
