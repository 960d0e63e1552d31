// The ready-made periods, day by day, and the time of day that they keep.
#include "analysis/dateRanges.h"

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

Q_DECLARE_METATYPE(veltrona::DateRange)

class DateRangesTest : public QObject {
    Q_OBJECT
private slots:
    void months_data();
    void months();
    void everyDayOfFourYears();
    void nowIsReadAgainForTheEnd();
    void theFixedDates();
};

void DateRangesTest::months_data() {
    QTest::addColumn<double>("today");
    QTest::addColumn<DateRange>("thisOne");
    QTest::addColumn<DateRange>("lastOne");
    const auto row = [](const char *name, double today, double first, double lastFirst,
                        double lastEnd) {
        QTest::newRow(name) << today << DateRange{first, today} << DateRange{lastFirst, lastEnd};
    };
    row("the 1st", day(2007, 6, 1), day(2007, 6, 1), day(2007, 5, 1), day(2007, 5, 31));
    row("the 31st", day(2007, 5, 31), day(2007, 5, 1), day(2007, 4, 1), day(2007, 4, 30));
    row("January", day(2007, 1, 9), day(2007, 1, 1), day(2006, 12, 1), day(2006, 12, 31));
    row("March", day(2007, 3, 30), day(2007, 3, 1), day(2007, 2, 1), day(2007, 2, 28));
    row("March of a leap year", day(2008, 3, 31), day(2008, 3, 1), day(2008, 2, 1),
        day(2008, 2, 29));
    row("March of 1900", day(1900, 3, 1), day(1900, 3, 1), day(1900, 2, 1), day(1900, 2, 28));
}

void DateRangesTest::months() {
    QFETCH(const double, today);
    QFETCH(const DateRange, thisOne);
    QFETCH(const DateRange, lastOne);
    const double time = 86399.0 / 86400;
    QCOMPARE(thisMonth(at(today + time)), (DateRange{thisOne.start + time, thisOne.end + time}));
    QCOMPARE(lastMonth(at(today + time)), (DateRange{lastOne.start + time, lastOne.end + time}));
}

void DateRangesTest::everyDayOfFourYears() {
    const double time = 0.625;
    for (int number = 39052; number < 39052 + 4 * 365; ++number) {
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
        const DateRange monthBefore = lastMonth(at(today));
        QCOMPARE(calendarDay(dayNumber(monthBefore.start)).day, 1);
        QCOMPARE(monthBefore.end + 1, thisMonth(at(today)).start);
        QVERIFY(monthBefore.end - monthBefore.start <= 30);
    }
}

void DateRangesTest::nowIsReadAgainForTheEnd() {
    // Midnight passes between the two readings.
    for (const auto preset : {thisWeek, thisMonth}) {
        DateValue now = day(2007, 5, 31) + 0.999;
        const DateRange range = preset([&now] { return std::exchange(now, now + 1); });
        QCOMPARE(range.end, day(2007, 6, 1) + 0.999);
        QCOMPARE(calendarDay(dayNumber(range.start)).month, 5);
    }
}

void DateRangesTest::theFixedDates() {
    QCOMPARE(allDates(), (DateRange{32509, 48214}));
}

QTEST_APPLESS_MAIN(DateRangesTest)
#include "dateRangesTest.moc"
