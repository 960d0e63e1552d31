// The calendar, held against QDate where the two agree and against hand-worked days elsewhere.
#include "core/base/dateValue.h"

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

    void textsOfTimes_data() {
        const test::DataTable<double, QString> row;
        row("midnight", 39216.0, "2007-05-14");
        row("last second", 39216 + 86399.0 / 86400, "2007-05-14 23:59:59");
        row("last millisecond", 39216 + 86399.999 / 86400, "2007-05-14 23:59:59");
        row("before day 0", -0.25, "1899-12-29 18:00:00");
    }
    void textsOfTimes() {
        const auto [value, text] = test::row<double, QString>();
        QCOMPARE(isoText(value), text);
        QCOMPARE(isoText(dayNumber(value)), isoText(value).left(10));
    }
};

QTEST_APPLESS_MAIN(DateValueTest)
#include "dateValueTest.moc"
