#include "core/analysis/chart/chartPeriods.h"

#include "core/base/text.h"

#include <array>

namespace veltrona {

namespace {

constexpr int mostBars = 90;
constexpr int largestStep = 8;

/// The end of the range, moved on so that it counts. For weeks and years this is one day: odd, and
/// kept.
DateValue oneOn(ChartUnit unit, DateValue end) {
    if (unit == ChartUnit::Month)
        return addMonths(dayNumber(end), 1) + timeOfDay(end);
    return end + 1;
}

/// Days, months and years count the boundaries crossed, so that the time of day plays no part;
/// weeks count whole spans of seven days, so that it does.
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
    ChartPeriods periods{unit, difference(unit, range.start, oneOn(unit, range.end)), 1};
    if (periods.count <= 0)
        periods.count = 1;
    const int units = periods.count;
    while (periods.count > mostBars && periods.step < largestStep) {
        ++periods.step;
        periods.count = roundedQuotient(units, periods.step);
    }
    return periods;
}

int advanced(int day, const ChartPeriods &periods) {
    switch (periods.unit) {
    case ChartUnit::Day:
        return day + periods.step;
    case ChartUnit::Week:
        return day + 7 * periods.step;
    case ChartUnit::Month:
        return addMonths(day, periods.step);
    case ChartUnit::Year:
        return addMonths(day, 12 * periods.step);
    }
    return day;
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
    bool tooMany = true; // for all units so far
    constexpr std::array wishes = {ChartUnit::Day, ChartUnit::Week, ChartUnit::Month};
    for (int wish = grouping; wish < static_cast<int>(wishes.size()) && tooMany; ++wish) {
        periods = tryUnit(wishes.at(static_cast<std::size_t>(wish)), range);
        tooMany = periods.count > mostBars;
    }
    return tooMany ? tryUnit(ChartUnit::Year, range) : periods;
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

QString dateInWords(int day) {
    const CalendarDay date = calendarDay(day);
    return QStringLiteral("%1 %2 %3").arg(date.day).arg(monthName(date.month)).arg(date.year);
}

} // namespace veltrona
