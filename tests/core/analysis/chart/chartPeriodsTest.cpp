// How a date range is divided into bars, worked out by hand.
#include "core/analysis/chart/chartPeriods.h"

#include "support/dataTable.h"
#include "support/recordTable.h"

#include <QTest>

using namespace veltrona;
using test::day;

namespace {

/// The bars as "label: first..last".
QStringList described(const std::vector<ChartBar> &bars) {
    QStringList list;
    for (const ChartBar &bar : bars)
        list += QString("%1: %2..%3").arg(bar.label, isoText(bar.fromDay), isoText(bar.toDay));
    return list;
}

} // namespace

Q_DECLARE_METATYPE(veltrona::ChartPeriods)

class ChartPeriodsTest : public QObject {
    Q_OBJECT
private slots:
    void choice_data() {
        const test::DataTable<int, DateRange, ChartPeriods> row;
        using enum ChartUnit;
        const auto days = [&](const char *name, int grouping, int count, ChartPeriods expected) {
            row(name, grouping, {36526.0, 36526.0 + count - 1}, expected);
        };
        days("1 day", 0, 1, {Day, 1, 1});
        days("90 days", 0, 90, {Day, 90, 1});
        days("91 days: 45.5 is 46", 0, 91, {Day, 46, 2});
        days("183 days: 91.5 is 92", 0, 183, {Day, 61, 3});
        days("724 days: 90.5 is 90", 0, 724, {Day, 90, 8});
        days("725 days go by weeks", 0, 725, {Week, 52, 2});
        days("13 days by weeks", 1, 13, {Week, 1, 1});
        days("14 days by weeks", 1, 14, {Week, 2, 1});
        days("725 weeks go by months", 1, 5075, {Month, 84, 2});

        const auto range = [](const char *start, const char *end) {
            return DateRange{day(start), day(end)};
        };
        row("within a month", 2, range("2007-01-05", "2007-01-31"), {Month, 1, 1});
        row("725 months go by years", 2, range("1950-01-01", "2010-05-01"), {Year, 60, 1});
        row("years count one on at the year's end alone", 2, range("1950-01-01", "2010-12-31"),
            {Year, 61, 1});
        row("a week begun isn't one", 1, {36526.5, 36539.0}, {Week, 1, 1});
        row("reversed by days", 0, range("2007-05-14", "2007-05-13"), {Day, 1, 1});
    }
    void choice() {
        const auto [grouping, range, expected] = test::row<int, DateRange, ChartPeriods>();
        const ChartPeriods chosen = choosePeriods(grouping, range);
        QCOMPARE(chosen.unit, expected.unit);
        QCOMPARE(chosen.count, expected.count);
        QCOMPARE(chosen.step, expected.step);
        const auto bars = emptyBars(chosen, range.start);
        QCOMPARE(static_cast<int>(bars.size()), expected.count);
        QCOMPARE(bars.front().fromDay, dayNumber(range.start));
    }

    void bars_data() {
        const test::DataTable<ChartPeriods, QString, QStringList> row;
        using enum ChartUnit;
        row("days over the leap day", {Day, 4, 2}, "2008-02-25",
            {"Feb 25: 2008-02-25..2008-02-25", "Feb 27: 2008-02-26..2008-02-27",
             "Feb 29: 2008-02-28..2008-02-29", "Mar 02: 2008-03-01..2008-03-02"});
        row("weeks over the year's end", {Week, 3, 1}, "2006-12-24",
            {"2006 52: 2006-12-24..2006-12-24", "2006 53: 2006-12-25..2006-12-31",
             "2007 02: 2007-01-01..2007-01-07"});
        row("a month's last day falls back for good", {Month, 4, 1}, "2008-12-31",
            {"2008 Dec: 2008-12-31..2008-12-31", "2009 Jan: 2009-01-01..2009-01-31",
             "2009 Feb: 2009-02-01..2009-02-28", "2009 Mar: 2009-03-01..2009-03-28"});
        row("years from a leap day", {Year, 3, 4}, "2008-02-29",
            {"2008: 2008-02-29..2008-02-29", "2012: 2008-03-01..2012-02-29",
             "2016: 2012-03-01..2016-02-29"});
    }
    void bars() {
        const auto [periods, start, expected] = test::row<ChartPeriods, QString, QStringList>();
        QCOMPARE(described(emptyBars(periods, day(start))), expected);
    }

    void longestRange() {
        const ChartPeriods periods = choosePeriods(0, {day("1752-01-01"), day("9999-12-31")});
        QCOMPARE(periods, (ChartPeriods{ChartUnit::Year, 1031, 8}));
        QCOMPARE(described(emptyBars(periods, day("1752-01-01"))).last(),
                 "9992: 9984-01-02..9992-01-01");
    }
};

QTEST_APPLESS_MAIN(ChartPeriodsTest)
#include "chartPeriodsTest.moc"
