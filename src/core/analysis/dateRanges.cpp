#include "core/analysis/dateRanges.h"

namespace veltrona {

namespace {

/// Whole days are taken off, so that the time of day stays.
DateValue firstOfMonth(DateValue date) {
    return date - (calendarDay(dayNumber(date)).day - 1);
}

} // namespace

DateRange thisWeek(const NowFunction &now) {
    const DateValue today = now();
    const DateValue sunday = today - (weekday(dayNumber(today)) - 1);
    return {sunday, now()};
}

DateRange lastWeek(const NowFunction &now) {
    const DateValue today = now();
    const DateValue end = today - weekday(dayNumber(today)); // on a Saturday the one before
    return {end - 6, end};
}

DateRange thisMonth(const NowFunction &now) {
    const DateValue first = firstOfMonth(now());
    return {first, now()};
}

DateRange lastMonth(const NowFunction &now) {
    const DateValue end = firstOfMonth(now()) - 1;
    return {firstOfMonth(end), end};
}

DateRange allDates() {
    return {dateValue(CalendarDay{1989, 1, 1}), dateValue(CalendarDay{2032, 1, 1})};
}

} // namespace veltrona
