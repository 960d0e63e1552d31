// The ready-made periods, day by day, and the time of day that they keep.
#include "core/analysis/dateRanges.h"

#include "support/dataTable.h"

#include <QTest>

using namespace veltrona;

namespace {
DateValue day(int year, int month, int dayOfMonth) {
    return dateValue(CalendarDay{year, month, dayOfMonth});
}
NowFunction at(DateValue now) {
    return [now] { return now; };
}
} // namespace

class DateRangesTest : public QObject {
    Q_OBJECT
private slots:
    void months_data() {
        const test::DataTable<double, double, double, double> row;
        row("January 31", day(2007, 1, 31), day(2007, 1, 1), day(2006, 12, 1), day(2006, 12, 31));
        row("leap year", day(2008, 3, 31), day(2008, 3, 1), day(2008, 2, 1), day(2008, 2, 29));
    }
    void months() {
        const auto [today, first, lastFirst, lastEnd] = test::row<double, double, double, double>();
        const double time = 86399.0 / 86400;
        QCOMPARE(thisMonth(at(today + time)), (DateRange{first + time, today + time}));
        QCOMPARE(lastMonth(at(today + time)), (DateRange{lastFirst + time, lastEnd + time}));
    }

    void weeksOfEveryDay() {
        const double time = 0.625;
        for (int number = 39052; number < 39052 + 400; ++number) {
            const DateValue today = number + time;
            const DateRange week = thisWeek(at(today));
            QCOMPARE(weekday(dayNumber(week.start)), 1);
            QVERIFY(today - week.start < 7);
            QCOMPARE(timeOfDay(week.start), time);
            QCOMPARE(week.end, today);
            const DateRange weekBefore = lastWeek(at(today));
            QCOMPARE(weekday(dayNumber(weekBefore.start)), 1);
            QCOMPARE(weekBefore.end, weekBefore.start + 6);
            QVERIFY(weekBefore.end < today && weekBefore.end >= today - 7);
        }
    }
};

QTEST_APPLESS_MAIN(DateRangesTest)
#include "dateRangesTest.moc"
