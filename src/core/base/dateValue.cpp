#include "core/base/dateValue.h"

#include "core/base/text.h"

#include <QDateTime>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace veltrona {

namespace {

using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr int secondsPerDay = 86400;
constexpr sys_days dayZero = sys_days(std::chrono::year(1899) / std::chrono::December / 30);

year_month_day chronoDay(const CalendarDay &day) {
    return {std::chrono::year(day.year), std::chrono::month(static_cast<unsigned>(day.month)),
            std::chrono::day(static_cast<unsigned>(day.day))};
}

int digits(std::string_view text, std::size_t from, std::size_t count) {
    int number = 0;
    for (const char c : text.substr(from, count)) {
        if (c < '0' || c > '9')
            return -1;
        number = number * 10 + (c - '0');
    }
    return number;
}

} // namespace

int dayNumber(DateValue value) {
    return static_cast<int>(std::floor(value));
}

int dayNumber(const CalendarDay &day) {
    return static_cast<int>((sys_days(chronoDay(day)) - dayZero).count());
}

CalendarDay calendarDay(int dayNumber) {
    const year_month_day day(dayZero + std::chrono::days(dayNumber));
    return {int(day.year()), static_cast<int>(unsigned(day.month())),
            static_cast<int>(unsigned(day.day()))};
}

bool isValid(const CalendarDay &day) {
    return day.month > 0 && day.day > 0 && chronoDay(day).ok();
}

double timeOfDay(DateValue value) {
    return value - std::floor(value);
}

int secondOfDay(DateValue value) {
    // The last half second isn't rounded up to the next day.
    return static_cast<int>(
        std::min<long long>(std::llround(timeOfDay(value) * secondsPerDay), secondsPerDay - 1));
}

DateValue dateValue(const QDateTime &localTime) {
    const QDate date = localTime.date();
    return dayNumber(CalendarDay{date.year(), date.month(), date.day()}) +
           localTime.time().msecsSinceStartOfDay() / (1000.0 * secondsPerDay);
}

DateValue dateValue(const CalendarDay &day, int secondOfDay) {
    return dayNumber(day) + static_cast<double>(secondOfDay) / secondsPerDay;
}

QString isoText(DateValue value) {
    const int seconds = secondOfDay(value);
    const CalendarDay day = calendarDay(dayNumber(value));
    QString text = padded(day.year, 4) + u'-' + padded(day.month) + u'-' + padded(day.day);
    if (seconds != 0)
        text += u' ' + padded(seconds / 3600) + u':' + padded(seconds / 60 % 60) + u':' +
                padded(seconds % 60);
    return text;
}

std::optional<DateValue> dateOfIsoText(std::string_view text) {
    const bool timed = text.size() == 19;
    if ((text.size() != 10 && !timed) || text[4] != '-' || text[7] != '-')
        return std::nullopt;
    const CalendarDay day{digits(text, 0, 4), digits(text, 5, 2), digits(text, 8, 2)};
    if (day.year < 0 || !isValid(day))
        return std::nullopt;
    if (!timed)
        return dateValue(day);
    if (text[10] != ' ' || text[13] != ':' || text[16] != ':')
        return std::nullopt;
    const int hour = digits(text, 11, 2);
    const int minute = digits(text, 14, 2);
    const int second = digits(text, 17, 2);
    if (hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59)
        return std::nullopt;
    return dateValue(day, hour * 3600 + minute * 60 + second);
}

int weekday(int dayNumber) {
    // Day 0 was a Saturday.
    return ((dayNumber - 1) % 7 + 7) % 7 + 1;
}

int weekOfYear(int dayNumber) {
    const int newYear = veltrona::dayNumber(CalendarDay{calendarDay(dayNumber).year, 1, 1});
    const int firstSunday = newYear - (weekday(newYear) - 1);
    return (dayNumber - firstSunday) / 7 + 1;
}

int addMonths(int dayNumber, int months) {
    const QDate zero(1899, 12, 30);
    return static_cast<int>(zero.daysTo(zero.addDays(dayNumber).addMonths(months)));
}

} // namespace veltrona
