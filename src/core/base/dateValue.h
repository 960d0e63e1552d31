// Date values and the calendar. A date value counts days since 1899-12-30, which is day 0, with the
// time of day as its fraction; days before that are negative, and their times of day still count
// upwards. All arithmetic is on day numbers, independent of time zones and clock changes. Days are
// converted by std::chrono, in a third to a half of QDate's time.
#pragma once

#include <QString>

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

class QDateTime;

namespace veltrona {

using DateValue = double;

/// A day of the Gregorian calendar; month and day count from 1.
struct CalendarDay {
    int year = 0;
    int month = 0;
    int day = 0;
    friend bool operator==(const CalendarDay &, const CalendarDay &) = default;
};

/// The first day of the Gregorian calendar in Britain: dates before it are refused.
inline constexpr CalendarDay firstCalendarDay{1752, 9, 14};

/// Start and end of a period, both inclusive.
struct DateRange {
    DateValue start = 0;
    DateValue end = 0;
    friend bool operator==(const DateRange &, const DateRange &) = default;
};

int dayNumber(DateValue value);
int dayNumber(const CalendarDay &day);
CalendarDay calendarDay(int dayNumber);
/// Whether the calendar has this day.
bool isValid(const CalendarDay &day);

/// The fraction of a date value, from 0 to below 1.
double timeOfDay(DateValue value);
/// The time of day in whole seconds, rounded; never the next day's midnight.
int secondOfDay(DateValue value);

DateValue dateValue(const QDateTime &localTime);
DateValue dateValue(const CalendarDay &day, int secondOfDay = 0);

/// The form of dates in the table: "2007-05-14", or "2007-05-14 13:05:09" unless it is midnight.
/// Such texts compare like their dates.
QString isoText(DateValue value);
/// Reads the two forms of isoText, also with the time of midnight; none for anything else.
std::optional<DateValue> dateOfIsoText(std::string_view text);

/// From January on; the first three letters are the short name.
inline constexpr std::array<std::string_view, 12> monthNames{
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"};
constexpr std::string_view shortMonthName(int month) {
    return monthNames.at(static_cast<std::size_t>(month - 1)).substr(0, 3);
}

/// Sunday is 1, Saturday is 7.
int weekday(int dayNumber);
/// 1 to 54; weeks begin on Sunday, and week 1 is the week of 1 January.
int weekOfYear(int dayNumber);
/// A day that the target month doesn't have becomes the month's last day.
int addMonths(int dayNumber, int months);

} // namespace veltrona
