// The calendar, held against QDate where the two agree and against hand-worked days elsewhere.
#include "platform/dateValue.h"

#include "support/dataTable.h"

#include <QTest>

using namespace veltrona;

namespace {
int day(int year, int month, int dayOfMonth) {
    return dayNumber(CalendarDay{year, month, dayOfMonth});
}
} // namespace

class DateValueTest : public QObject {
    Q_OBJECT
private slots:
    void everyDay() {
        const QDate dayZero(1899, 12, 30);
        const int last = day(9999, 12, 31);
        for (int number = day(1752, 1, 1); number <= last; ++number) {
            const QDate date = dayZero.addDays(number);
            const CalendarDay expected{date.year(), date.month(), date.day()};
            if (calendarDay(number) != expected || dayNumber(expected) != number ||
                weekday(number) != date.dayOfWeek() % 7 + 1)
                QFAIL(qPrintable(date.toString(Qt::ISODate)));
        }
    }

    void knownDays() {
        QCOMPARE(day(1899, 12, 30), 0);
        QVERIFY(isValid({2008, 2, 29}));
        QVERIFY(!isValid({2007, 2, 29}));
        QVERIFY(!isValid({1900, 2, 29}));
        QVERIFY(!isValid({2007, 13, 1}));
        QVERIFY(!isValid({2007, 0, 1}));
    }

    void weeks() {
        QCOMPARE(weekOfYear(day(2006, 1, 1)), 1); // a Sunday
        QCOMPARE(weekOfYear(day(2006, 12, 31)), 53);
        QCOMPARE(weekOfYear(day(2000, 1, 1)), 1); // a Saturday, of a leap year
        QCOMPARE(weekOfYear(day(2000, 1, 2)), 2);
        QCOMPARE(weekOfYear(day(2000, 12, 31)), 54);
    }

    void months_data() {
        const test::DataTable<QString, int, QString> table("from", "months", "expected");
        const auto row = [&](const char *from, int months, const char *expected) {
            table(QByteArray(from) + ' ' + QByteArray::number(months), from, months, expected);
        };
        row("2007-01-31", 1, "2007-02-28");
        row("2008-01-31", 1, "2008-02-29");
        row("2008-02-29", 12, "2009-02-28");
        row("2096-02-29", 48, "2100-02-28");
        row("2007-12-31", 2, "2008-02-29");
        row("2007-03-31", -1, "2007-02-28");
        row("2007-01-15", -13, "2005-12-15");
        row("1899-11-30", 1, "1899-12-30");
    }
    void months() {
        QFETCH(const QString, from);
        QFETCH(const int, months);
        QTEST(isoText(addMonths(dayNumber(*dateOfIsoText(from.toStdString())), months)),
              "expected");
    }

    void textsOfTimes_data() {
        const test::DataTable<double, QString> row("value", "text");
        row("midnight", 39216.0, "2007-05-14");
        row("last second", 39216 + 86399.0 / 86400, "2007-05-14 23:59:59");
        row("last millisecond", 39216 + 86399.999 / 86400, "2007-05-14 23:59:59");
        row("first millisecond", 39216 + 0.001 / 86400, "2007-05-14");
        row("before day 0", -0.25, "1899-12-29 18:00:00");
        row("early year", day(1752, 9, 14), "1752-09-14");
    }
    void textsOfTimes() {
        QFETCH(const double, value);
        QTEST(isoText(value), "text");
        QCOMPARE(isoText(dayNumber(value)), isoText(value).left(10));
    }

    void everySecondSurvives() {
        for (const int number : {day(1752, 1, 1), -1, 0, 32767, 65535, day(9999, 12, 31)}) {
            for (int second = 0; second < 86400; ++second) {
                const DateValue value = dateValue(calendarDay(number), second);
                if (dayNumber(value) != number || secondOfDay(value) != second)
                    QFAIL(qPrintable(QStringLiteral("%1 %2").arg(number).arg(second)));
            }
            const DateValue late = dateValue(calendarDay(number), 86399);
            QCOMPARE(dateOfIsoText(isoText(late).toStdString()), std::optional<DateValue>(late));
        }
        const QDateTime local(QDate(2007, 3, 25), QTime(23, 59, 59, 999));
        QCOMPARE(isoText(dateValue(local)), "2007-03-25 23:59:59");
    }

    void refusedTexts() {
        for (const char *text : {"", "2007-5-14", "2007-02-29", "2007-13-01", "2007-00-10",
                                 "2007/05/14", "2007-05-14T13:05:09", "2007-05-14 24:00:00",
                                 "2007-05-14 13:60:00", "2007-05-14 13:05:61", "2007-05-14 13:05",
                                 "2007-05-1x", "-007-05-14", "2007-05-14 ", "12007-05-14"})
            QVERIFY2(!dateOfIsoText(text), text);
    }
};

QTEST_APPLESS_MAIN(DateValueTest)
#include "dateValueTest.moc"
