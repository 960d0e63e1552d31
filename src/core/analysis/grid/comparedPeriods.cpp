#include "core/analysis/grid/comparedPeriods.h"

namespace veltrona {

namespace {

constexpr int monthsOfYear = 12;

struct Days {
    int first;
    int afterLast;

    explicit Days(const DateRange &range)
        : first(dayNumber(range.start)), afterLast(dayNumber(range.end) + 1) {}
    bool areNone() const { return first >= afterLast; }
    bool areWholeMonths() const {
        return calendarDay(first).day == 1 && calendarDay(afterLast).day == 1;
    }
    int months() const {
        const CalendarDay from = calendarDay(first);
        const CalendarDay to = calendarDay(afterLast);
        return (to.year - from.year) * monthsOfYear + to.month - from.month;
    }
};

DateRange range(int first, int last) {
    return {static_cast<DateValue>(first), static_cast<DateValue>(last)};
}

} // namespace

std::optional<DateRange> periodBefore(const DateRange &shown) {
    const Days days(shown);
    if (days.areNone())
        return std::nullopt;
    const int first = days.areWholeMonths() ? addMonths(days.first, -days.months())
                                            : days.first - (days.afterLast - days.first);
    return range(first, days.first - 1);
}

std::optional<DateRange> sameDaysOfYearBefore(const DateRange &shown) {
    const Days days(shown);
    const int first = addMonths(days.first, -monthsOfYear);
    const int last = days.areWholeMonths() ? addMonths(days.afterLast, -monthsOfYear) - 1
                                           : addMonths(days.afterLast - 1, -monthsOfYear);
    return days.areNone() || last >= days.first ? std::nullopt : std::optional(range(first, last));
}

} // namespace veltrona
