// Texts of numbers and dates, and the cell texts, against a plain reference: patterns of the forms
// that are allowed, the C library's reading and writing of numbers, Qt's calendar. The input is a
// text, and its first eight bytes are a number.
#include "attack/finding.h"

#include "core/analysis/records/cellText.h"
#include "core/base/dateValue.h"
#include "core/import/rowValues.h"

#include <QDate>
#include <QRegularExpression>
#include <QTime>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

using namespace veltrona;

namespace {

const QString numberForm = "[+-]?(?:\\d+\\.?\\d*|\\.\\d+)(?:[eE][+-]?\\d+)?";
const QString months =
    QStringLiteral("(?<n>(?i:jan(?:uary)?|feb(?:ruary)?|mar(?:ch)?|apr(?:il)?|may|june?|july?|"
                   "aug(?:ust)?|sep(?:tember)?|oct(?:ober)?|nov(?:ember)?|dec(?:ember)?))");
const QString timeForm = QStringLiteral(
    "(?:(?:T| +)(?<h>\\d\\d?):(?<i>\\d\\d)(?::(?<s>\\d\\d))?(?: *(?<half>(?i:[ap]m)))?)?");

QRegularExpression dateForm(const QString &day) {
    return QRegularExpression("\\A" + day + timeForm + "\\z");
}

const QRegularExpression leadingNumber("\\A" + numberForm);
const QRegularExpression wholeNumber("\\A[+-]?\\d+\\z");
const QRegularExpression anyNumber("\\A" + numberForm + "\\z");
const QRegularExpression dateForms[] = {
    dateForm("(?<y>\\d{4})(?<p>[-/])(?<m>\\d\\d?)\\k<p>(?<d>\\d\\d?)"),
    dateForm("(?<m>\\d\\d?)/(?<d>\\d\\d?)/(?<y>\\d{4})"),
    dateForm("(?<d>\\d\\d?)\\.(?<m>\\d\\d?)\\.(?<y>\\d{4})"),
    dateForm(months + " +(?<d>\\d\\d?), *(?<y>\\d{4})"),
    dateForm("(?<d>\\d\\d?) +" + months + " +(?<y>\\d{4})"),
};
const QRegularExpression
    storedDate("\\A(\\d{4})-(\\d\\d)-(\\d\\d)(?: ([01]\\d|2[0-3]):([0-5]\\d):([0-5]\\d))?\\z");

double plainNumber(const QString &text) {
    const double read = std::strtod(text.toLatin1().constData(), nullptr);
    return std::isinf(read) ? 0 : read;
}

void attackNumbers(std::string_view bytes, const QString &text) {
    const std::optional<RowNumber> read = readNumber(bytes);
    const QByteArray latin = text.toLatin1();
    errno = 0;
    if (wholeNumber.match(text).hasMatch()) {
        const long long plain = std::strtoll(latin.constData(), nullptr, 10);
        const bool fits = errno == 0;
        FINDING_UNLESS(read && std::holds_alternative<qint64>(*read) == fits, "whole number");
        FINDING_UNLESS(fits ? std::get<qint64>(*read) == plain
                            : std::get<double>(*read) == std::strtod(latin.constData(), nullptr),
                       "value of a whole number");
    } else if (anyNumber.match(text).hasMatch()) {
        const double plain = std::strtod(latin.constData(), nullptr);
        FINDING_UNLESS(read && std::get<double>(*read) == plain, "value of a decimal");
    } else {
        FINDING_UNLESS(!read, "no number");
    }

    const QString leading = leadingNumber.match(text).captured();
    FINDING_UNLESS(numberOfText(QStringView(text)) == plainNumber(leading), "number of a cell");
    FINDING_UNLESS(numberOfText(bytes) == plainNumber(leading), "number of a text");
    const QString rest = QString(text).remove(u'%');
    const double plain = plainNumber(leadingNumber.match(rest).captured());
    FINDING_UNLESS(percentNumberOfText(QStringView(text)) == plain, "percent number of a cell");
    FINDING_UNLESS(percentNumberOfText(bytes) == plain, "percent number of a text");
}

void attackCellText(double number) {
    constexpr double largest = 1.79769313486231E308;
    const double shown = std::max(-largest, std::min(largest, number)) + 0.0;
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.15G", shown);
    const QByteArray digits(buffer);
    QByteArray plain = digits;
    if (plain.startsWith("0."))
        plain.remove(0, 1);
    else if (plain.startsWith("-0."))
        plain.remove(1, 1);
    FINDING_UNLESS(numberText(number) == QLatin1String(plain), "text of %s", digits.constData());
    FINDING_UNLESS(toFifteenDigits(number) == std::strtod(digits.constData(), nullptr),
                   "fifteen digits of %s", digits.constData());
    for (const int decimals : {0, 2, 4}) {
        const double power = std::pow(10, decimals);
        const double scaled = number * power;
        const double below = std::floor(scaled);
        const double part = scaled - below;
        const bool up = part > 0.5 || (part == 0.5 && std::fmod(below, 2) != 0);
        const double rounded = std::isfinite(scaled) ? (below + up) / power : number;
        FINDING_UNLESS(roundHalfToEven(number, decimals) == rounded, "rounding of %s",
                       digits.constData());
    }
}

int monthOf(const QRegularExpressionMatch &match) {
    const QString name = match.captured("n").left(3).toLower();
    const QString all = "janfebmaraprmayjunjulaugsepoctnovdec";
    return name.isEmpty() ? match.captured("m").toInt()
                          : static_cast<int>(all.indexOf(name)) / 3 + 1;
}

/// Seconds, or -1 for a time that no clock shows.
int secondsOf(const QRegularExpressionMatch &match) {
    int hour = match.captured("h").toInt();
    const QString half = match.captured("half").toLower();
    if (!half.isEmpty()) {
        if (hour < 1 || hour > 12)
            return -1;
        hour = hour % 12 + (half == "pm" ? 12 : 0);
    }
    const QTime time(hour, match.captured("i").toInt(), match.captured("s").toInt());
    return time.isValid() ? time.msecsSinceStartOfDay() / 1000 : -1;
}

void attackDates(std::string_view bytes, const QString &text) {
    const std::optional<RowDate> read = readDate(bytes);
    QRegularExpressionMatch match;
    for (const QRegularExpression &form : dateForms) {
        if (!match.hasMatch())
            match = form.match(text);
    }
    const QDate day(match.captured("y").toInt(), monthOf(match), match.captured("d").toInt());
    const int seconds = match.hasMatch() ? secondsOf(match) : -1;
    const bool isDate = day.isValid() && day >= QDate(1752, 9, 14) && seconds >= 0;
    FINDING_UNLESS(read.has_value() == isDate, "date or not");
    if (isDate) {
        const QString plain =
            day.toString(Qt::ISODate) +
            (seconds == 0 ? QString() : u' ' + QTime(0, 0).addSecs(seconds).toString(Qt::ISODate));
        const int newYear = QDate(day.year(), 1, 1).dayOfWeek() % 7; // Sunday is 0
        FINDING_UNLESS(read->text == plain.toStdString(), "text of a date");
        FINDING_UNLESS(read->month == day.toString("yyyy MM").toStdString(), "month");
        FINDING_UNLESS(read->week == QString::asprintf("%d %02d", day.year(),
                                                       (day.dayOfYear() - 1 + newYear) / 7 + 1)
                                         .toStdString(),
                       "week");
        const std::optional<DateValue> value = dateOfIsoText(read->text);
        FINDING_UNLESS(value && isoText(*value) == plain, "date there and back");
    }
    const QRegularExpressionMatch stored = storedDate.match(text);
    // Qt's calendar has no year 0, and every 400 years are alike.
    const bool isStored =
        stored.hasMatch() && QDate::isValid(stored.captured(1).toInt() + 400,
                                            stored.captured(2).toInt(), stored.captured(3).toInt());
    FINDING_UNLESS(dateOfIsoText(bytes).has_value() == isStored, "stored date or not");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char *>(data), size);
    const QString text = QString::fromLatin1(bytes.data(), static_cast<qsizetype>(size));
    attackNumbers(bytes, text);
    attackDates(bytes, text);
    double number = 0;
    if (size >= sizeof number)
        std::memcpy(&number, data, sizeof number);
    if (!std::isnan(number))
        attackCellText(number);
    attackCellText(numberOfText(bytes));
    return 0;
}
