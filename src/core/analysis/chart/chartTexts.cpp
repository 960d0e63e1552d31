#include "core/analysis/chart/chartTexts.h"

#include "core/controls/chartAxis.h"

#include <QStringList>

#include <algorithm>

namespace veltrona {

namespace {

QString daysText(int from, int to, const QString &between) {
    return from == to ? dateText(from) : dateText(from) + between + dateText(to);
}

/// "from 5 Jan 2007 to 11 Jan 2007" or "on 5 Jan 2007"
QString period(const DateRange &range) {
    const int from = dayNumber(range.start);
    const int to = dayNumber(range.end);
    return (from == to ? QStringLiteral("on ") : QStringLiteral("from ")) +
           daysText(from, to, QStringLiteral(" to "));
}

bool covers(const DateRange &range, const DateRange &dates) {
    return dayNumber(range.start) <= dayNumber(dates.start) &&
           dayNumber(range.end) >= dayNumber(dates.end);
}

QString emptyNotice(const ChartPeriods &periods, const DateRange &range,
                    const ChartSurroundings &surroundings) {
    if (!surroundings.table)
        return QStringLiteral("This project has no records yet.\n"
                              "Choose Import to read a report file into it.");
    if (surroundings.inRange) {
        const int days = dayNumber(range.end) - dayNumber(range.start) + 1;
        return QStringLiteral("The records of this period lie on days that no bar counts.") +
               (periods.unit != ChartUnit::Day && days <= maxBars
                    ? QStringLiteral("\nGroup by days to see them.")
                    : QString());
    }
    if (covers(range, *surroundings.table))
        return QStringLiteral("There are no records for this selection.");
    return QStringLiteral("There are no records %1.\nThe project has records %2; "
                          "the date range \"All\" shows them.")
        .arg(period(range), period(*surroundings.table));
}

/// "one day", "14 days"
QString spanOf(const ChartPeriods &periods) {
    const ChartUnitRow &unit = rowOf(periods.unit);
    const auto text = [&](int length, const QString &name) {
        const int count = length * periods.step;
        return count == 1 ? QStringLiteral("one ") + name
                          : QStringLiteral("%1 %2s").arg(count).arg(name);
    };
    if (unit.days > 0)
        return text(unit.days, QStringLiteral("day"));
    return unit.months % 12 == 0 ? text(unit.months / 12, QStringLiteral("year"))
                                 : text(unit.months, QStringLiteral("month"));
}

/// The first bar counts a single day, whatever the others count.
QString noteOf(const ChartPeriods &periods, const std::vector<ChartBar> &bars) {
    if (bars.size() == 1)
        return QStringLiteral("The bar counts %1.").arg(dateText(bars.front().toDay));
    const bool days = periods.unit == ChartUnit::Day && periods.step == 1;
    const int first = calendarDay(bars.front().fromDay).year;
    const int last = calendarDay(bars.back().toDay).year;
    const QString years = first == last ? QStringLiteral(" of %1.").arg(first)
                                        : QStringLiteral(", %1 to %2.").arg(first).arg(last);
    return (days ? QStringLiteral("Each bar counts ")
                 : QStringLiteral("Each bar after the first counts ")) +
           spanOf(periods) + years;
}

QString descriptionOf(const std::vector<ChartBar> &bars) {
    const auto highest =
        std::max_element(bars.begin(), bars.end(), [](const ChartBar &one, const ChartBar &other) {
            return one.value < other.value;
        });
    const QString count =
        bars.size() == 1 ? QStringLiteral("1 bar") : QStringLiteral("%1 bars").arg(bars.size());
    return QStringLiteral("%1, %2. Highest: %3, %4.")
        .arg(count, daysText(bars.front().fromDay, bars.back().toDay, QStringLiteral(" to ")),
             spokenValue(highest->value), datesText(*highest));
}

} // namespace

QString datesText(const ChartBar &bar) {
    return daysText(bar.fromDay, bar.toDay, QStringLiteral(" \u2013 "));
}

ChartTexts chartTexts(const ChartPeriods &periods, const DateRange &range,
                      const std::vector<ChartBar> &bars, const ChartSurroundings &surroundings) {
    ChartTexts texts;
    const bool empty =
        std::none_of(bars.begin(), bars.end(), [](const ChartBar &bar) { return bar.hasRecords; });
    texts.note = noteOf(periods, bars);
    if (dayNumber(range.start) > dayNumber(range.end))
        texts.notice = QStringLiteral("The start date lies behind the end date.");
    else if (empty)
        texts.notice = emptyNotice(periods, range, surroundings);
    QStringList sentences{texts.notice, texts.note};
    if (!empty)
        sentences.prepend(descriptionOf(bars));
    sentences.removeAll(QString());
    texts.description = sentences.join(u' ').replace(u'\n', u' ');
    return texts;
}

} // namespace veltrona
