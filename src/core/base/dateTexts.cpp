#include "core/base/dateTexts.h"

#include "core/base/text.h"

namespace veltrona {

namespace {

QString dateText(const CalendarDay &day, bool withMonth, bool withYear) {
    QString text = QString::number(day.day);
    if (withMonth)
        text += u' ' + QString::fromLatin1(shortMonthName(day.month));
    if (withYear)
        text += u' ' + QString::number(day.year);
    return text;
}

} // namespace

QString dateText(int dayNumber) {
    return dateText(calendarDay(dayNumber), true, true);
}

QString datesText(const DateRange &range, int year) {
    const CalendarDay first = calendarDay(dayNumber(range.start));
    const CalendarDay last = calendarDay(dayNumber(range.end));
    const bool years = first.year != last.year;
    const QString end = dateText(last, true, years || last.year != year);
    if (first == last)
        return end;
    return dateText(first, years || first.month != last.month, years) + u" to "_s + end;
}

} // namespace veltrona
