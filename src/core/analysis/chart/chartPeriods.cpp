#include "core/analysis/chart/chartPeriods.h"

#include "core/base/dateTexts.h"
#include "core/base/text.h"
#include "core/controls/chartAxis.h"

#include <QStringList>

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

const ChartUnitRow &rowOf(ChartUnit unit) {
    return chartUnits.at(static_cast<std::size_t>(unit));
}

int advanced(int day, const ChartPeriods &periods) {
    const ChartUnitRow &unit = rowOf(periods.unit);
    return unit.days > 0 ? day + unit.days * periods.step
                         : addMonths(day, unit.months * periods.step);
}

/// English; `month` counts from 1.
QString monthName(int month) {
    return QString::fromLatin1(shortMonthName(month));
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

QString daysText(int from, int to, const QString &between) {
    return from == to ? dateText(from) : dateText(from) + between + dateText(to);
}

/// "from 5 Jan 2007 to 11 Jan 2007" or "on 5 Jan 2007"
QString period(const DateRange &range) {
    const int from = dayNumber(range.start);
    const int to = dayNumber(range.end);
    return (from == to ? u"on "_s : u"from "_s) + daysText(from, to, u" to "_s);
}

bool covers(const DateRange &range, const DateRange &dates) {
    return dayNumber(range.start) <= dayNumber(dates.start) &&
           dayNumber(range.end) >= dayNumber(dates.end);
}

QString uncountedNotice(const QString &what, const ChartPeriods &periods, const DateRange &range) {
    const int days = dayNumber(range.end) - dayNumber(range.start) + 1;
    return u"The %1 of this period lie on days that no bar counts."_s.arg(what) +
           (periods.unit != ChartUnit::Day && days <= maxBars ? u"\nGroup by days to see them."_s
                                                              : QString());
}

QString emptyNotice(const ChartPeriods &periods, const DateRange &range,
                    const ChartSurroundings &surroundings) {
    if (!surroundings.table)
        return u"This project has no records yet.\n"
               "Choose Import to read a report file into it.\n"
               "For the manual, see \"man veltrona\"."_s;
    if (surroundings.inRange)
        return uncountedNotice(u"records"_s, periods, range);
    if (covers(range, *surroundings.table))
        return u"There are no records for this selection."_s;
    return u"There are no records %1.\nThe project has records %2; "
           "the date range \"All\" shows them."_s.arg(period(range), period(*surroundings.table));
}

/// "one day", "14 days"
QString spanOf(const ChartPeriods &periods) {
    const ChartUnitRow &unit = rowOf(periods.unit);
    const auto text = [&](int length, QLatin1StringView name) {
        const int count = length * periods.step;
        return count == 1 ? u"one "_s + name : counted(count, name);
    };
    if (unit.days > 0)
        return text(unit.days, "day"_L1);
    return unit.months % 12 == 0 ? text(unit.months / 12, "year"_L1)
                                 : text(unit.months, "month"_L1);
}

/// The first bar counts a single day, whatever the others count.
QString countedNote(const ChartPeriods &periods, const std::vector<ChartBar> &bars) {
    if (bars.size() == 1)
        return u"The bar counts %1."_s.arg(dateText(bars.front().toDay));
    const bool days = periods.unit == ChartUnit::Day && periods.step == 1;
    const int first = calendarDay(bars.front().fromDay).year;
    const int last = calendarDay(bars.back().toDay).year;
    const QString years =
        first == last ? u" of %1."_s.arg(first) : u", %1 to %2."_s.arg(first).arg(last);
    return (days ? u"Each bar counts "_s : u"Each bar after the first counts "_s) +
           spanOf(periods) + years;
}

/// Empty if the last bar counts the last day.
QString uncountedNote(const DateRange &range, const std::vector<ChartBar> &bars) {
    const int last = bars.back().toDay;
    const int end = dayNumber(range.end);
    if (last >= end)
        return {};
    const int first = calendarDay(bars.front().fromDay).year;
    const QString dates = datesText({static_cast<DateValue>(last + 1), range.end},
                                    first == calendarDay(last).year ? first : 0);
    return u"%1 %2 after the %3."_s.arg(dates, last + 1 == end ? u"lies"_s : u"lie"_s,
                                        bars.size() == 1 ? u"bar"_s : u"last bar"_s);
}

QString descriptionOf(const std::vector<ChartBar> &bars) {
    const auto highest = std::ranges::max_element(bars, {}, &ChartBar::value);
    const QString count = counted(static_cast<qint64>(bars.size()), "bar"_L1);
    const QString days = daysText(bars.front().fromDay, bars.back().toDay, u" to "_s);
    if (std::ranges::all_of(bars, [](const ChartBar &bar) { return bar.value == 0; }))
        return u"%1, %2: %3."_s.arg(count, days, bars.size() == 1 ? u"0"_s : u"all 0"_s);
    return u"%1, %2. Highest: %3, %4."_s.arg(count, days, spokenValue(highest->value),
                                             datesText(*highest));
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

QString datesText(const ChartBar &bar) {
    return daysText(bar.fromDay, bar.toDay, u" \u2013 "_s);
}

ChartTexts chartTexts(const ChartPeriods &periods, const DateRange &range,
                      const std::vector<ChartBar> &bars, const ChartSurroundings &surroundings) {
    ChartTexts texts;
    const bool empty = std::ranges::none_of(bars, &ChartBar::hasRecords);
    QStringList notes{countedNote(periods, bars), uncountedNote(range, bars)};
    notes.removeAll(QString());
    texts.note = notes.join(u' ');
    if (dayNumber(range.start) > dayNumber(range.end))
        texts.notice = u"The start date is after the end date."_s;
    else if (empty)
        texts.notice = emptyNotice(periods, range, surroundings);
    else if (surroundings.hasUncountedValues)
        texts.notice = uncountedNotice(u"values"_s, periods, range);
    QStringList sentences{texts.notice, texts.note};
    if (!empty)
        sentences.prepend(descriptionOf(bars));
    sentences.removeAll(QString());
    texts.description = sentences.join(u' ').replace(u'\n', u' ');
    return texts;
}

} // namespace veltrona
