#include "core/import/rowValues.h"

#include "core/base/dateValue.h"
#include "core/base/numberGrammar.h"
#include "core/base/text.h"

#include <charconv>

namespace veltrona {

namespace {

/// Reads a text from its front; a piece that isn't there changes nothing.
class Scanner {
public:
    explicit Scanner(std::string_view text) : m_rest(text) {}

    bool atEnd() const { return m_rest.empty(); }
    bool take(char c) {
        const bool found = !m_rest.empty() && m_rest.front() == c;
        m_rest.remove_prefix(found);
        return found;
    }
    bool takeBlanks() {
        const std::size_t before = m_rest.size();
        while (take(' ')) {
        }
        return m_rest.size() < before;
    }
    /// -1 unless there are from `min` to `max` digits.
    int number(std::size_t min, std::size_t max) {
        std::size_t count = 0;
        int value = 0;
        for (; count < m_rest.size() && m_rest[count] >= '0' && m_rest[count] <= '9'; ++count) {
            if (count == max)
                return -1;
            value = value * 10 + (m_rest[count] - '0');
        }
        if (count < min)
            return -1;
        m_rest.remove_prefix(count);
        return value;
    }
    /// The letters up to the next other character, in lower case.
    std::string word() {
        std::string letters;
        for (; !m_rest.empty(); m_rest.remove_prefix(1)) {
            const char lower = static_cast<char>(m_rest.front() | 0x20);
            if (lower < 'a' || lower > 'z')
                break;
            letters += lower;
        }
        return letters;
    }

private:
    std::string_view m_rest;
};

/// 0 if the word isn't a month.
int monthOfWord(const std::string &word) {
    for (int month = 1; month <= 12; ++month) {
        if (isSameName(word, monthNames[static_cast<std::size_t>(month - 1)]) ||
            isSameName(word, shortMonthName(month)))
            return month;
    }
    return 0;
}

/// A day after its first number; `isYear` distinguishes 2007/05/14 from 5/14/2007.
std::optional<CalendarDay> dayFromNumber(Scanner &scanner, int first, bool isYear) {
    for (const char separator : {'-', '/', '.'}) {
        if (!scanner.take(separator))
            continue;
        const int second = scanner.number(1, 2);
        if (second < 0 || !scanner.take(separator) || (separator == '-') > isYear)
            return std::nullopt;
        if (isYear && separator != '.')
            return CalendarDay{first, second, scanner.number(1, 2)};
        const int year = scanner.number(4, 4);
        if (isYear)
            return std::nullopt;
        return separator == '/' ? CalendarDay{year, first, second}
                                : CalendarDay{year, second, first};
    }
    if (isYear || !scanner.takeBlanks())
        return std::nullopt;
    const int month = monthOfWord(scanner.word());
    if (!scanner.takeBlanks())
        return std::nullopt;
    return CalendarDay{scanner.number(4, 4), month, first};
}

std::optional<CalendarDay> day(Scanner &scanner) {
    const int year = Scanner(scanner).number(4, 4);
    if (year >= 0) {
        scanner.number(4, 4);
        return dayFromNumber(scanner, year, true);
    }
    const int first = scanner.number(1, 2);
    if (first >= 0)
        return dayFromNumber(scanner, first, false);
    const int month = monthOfWord(scanner.word());
    if (!scanner.takeBlanks())
        return std::nullopt;
    const int number = scanner.number(1, 2);
    if (!scanner.take(','))
        return std::nullopt;
    scanner.takeBlanks();
    return CalendarDay{scanner.number(4, 4), month, number};
}

/// Seconds since midnight; none for an invalid time or with anything after it.
std::optional<int> time(Scanner &scanner) {
    int hour = scanner.number(1, 2);
    if (hour < 0 || hour > 23 || !scanner.take(':'))
        return std::nullopt;
    const int minute = scanner.number(2, 2);
    const int second = scanner.take(':') ? scanner.number(2, 2) : 0;
    if (minute < 0 || minute > 59 || second < 0 || second > 59)
        return std::nullopt;
    if (!scanner.atEnd()) {
        scanner.takeBlanks();
        const std::string half = scanner.word();
        if ((half != "am" && half != "pm") || hour < 1 || hour > 12 || !scanner.atEnd())
            return std::nullopt;
        hour = hour % 12 + (half == "pm" ? 12 : 0);
    }
    return (hour * 60 + minute) * 60 + second;
}

} // namespace

RowReader::RowReader(const ReportColumnNames &names) {
    for (std::size_t i = 0; i < names.size(); ++i)
        m_spellings[i] = names[i].toStdString();
}

void RowReader::read(const xml::NodeReader &nodes) {
    m_values.fill({});
    std::size_t place = 0;
    for (const xml::Attribute &attribute : nodes.attributes()) {
        if (place == m_places.size())
            m_places.push_back({std::string(attribute.name), columnOf(attribute.name)});
        else if (m_places[place].name != attribute.name)
            m_places[place] = {std::string(attribute.name), columnOf(attribute.name)};
        const int column = m_places[place++].column;
        if (column >= 0)
            m_values[static_cast<std::size_t>(column)] = withoutBlanks(attribute.value);
    }
}

int RowReader::columnOf(std::string_view name) const {
    const auto found = std::ranges::find(m_spellings, name);
    return found == m_spellings.end() ? -1 : static_cast<int>(found - m_spellings.begin());
}

std::optional<RowNumber> readNumber(std::string_view text) {
    const ScannedNumber<char> parts = scanNumber(text);
    if (text.empty() || parts.length != text.size())
        return std::nullopt;
    if (text.front() == '+')
        text.remove_prefix(1); // which from_chars doesn't accept
    const char *end = text.data() + text.size();
    qint64 whole = 0;
    if (parts.isWhole && std::from_chars(text.data(), end, whole).ec == std::errc())
        return whole;
    double decimal = 0;
    if (std::from_chars(text.data(), end, decimal).ec != std::errc()) // too large or too small
        decimal = QString::fromUtf8(text.data(), qsizetype(text.size())).toDouble();
    return decimal;
}

std::optional<RowDate> readDate(std::string_view text) {
    Scanner scanner(text);
    const std::optional<CalendarDay> day = veltrona::day(scanner);
    if (!day || !isValid(*day) || dayNumber(*day) < dayNumber(firstCalendarDay))
        return std::nullopt;
    int seconds = 0;
    if (!scanner.atEnd()) {
        if (!scanner.take('T') && !scanner.takeBlanks())
            return std::nullopt;
        const std::optional<int> read = time(scanner);
        if (!read)
            return std::nullopt;
        seconds = *read;
    }
    const QString year = QString::number(day->year) + u' ';
    return RowDate{isoText(dateValue(*day, seconds)).toStdString(),
                   (year + padded(day->month)).toStdString(),
                   (year + padded(weekOfYear(dayNumber(*day)))).toStdString()};
}

} // namespace veltrona
