// What is said of a chart: why it has no bars, what a bar counts, and all of it for the ear.
#include "core/analysis/chart/chartSeries.h"

#include "support/dataTable.h"
#include "support/recordTable.h"

#include <QTest>

using namespace veltrona;
using test::day;

namespace {

enum Grouping { Days, Weeks, Months };

} // namespace

class ChartTextsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        m_table = std::make_unique<test::RecordTable>();
        m_table->insert({{"Campaign", "Brand"}, {"GoogleDate", "2007-05-14"}, {"MaxCpc", 0}});
        m_table->insert({{"Campaign", "Sale"}, {"GoogleDate", "2007-06-02 10:00:00"}});
    }

    void sentences_data() {
        const test::DataTable<int, QString, QString, QString, QString> row;
        const QString all = "The project has records from 14 May 2007 to 2 Jun 2007; "
                            "the date range \"All\" shows them.";
        const QString uncounted = "The records of this period lie on days that no bar counts.";
        row("records", Days, "2007-05-14", "2007-05-15", "", "Each bar counts one day of 2007.");
        row("one day", Days, "2007-05-14", "2007-05-14", "", "The bar counts 14 May 2007.");
        row("none in the period", Days, "2006-12-31", "2007-01-06",
            "There are no records from 31 Dec 2006 to 6 Jan 2007.\n" + all,
            "Each bar counts one day, 2006 to 2007.");
        row("none on the day", Days, "2007-05-13", "2007-05-13",
            "There are no records on 13 May 2007.\n" + all, "The bar counts 13 May 2007.");
        row("after the last boundary", Days, "2007-06-02", "2007-06-02", uncounted,
            "The bar counts 2 Jun 2007.");
        row("less than a week", Weeks, "2007-05-13", "2007-05-15",
            uncounted + "\nGroup by days to see them.",
            "The bar counts 13 May 2007. 14 to 15 May lie after the bar.");
        row("ninety days, as many as bars", Weeks, "2007-02-14", "2007-05-14",
            uncounted + "\nGroup by days to see them.",
            "Each bar after the first counts 7 days of 2007. 3 to 14 May lie after the last bar.");
        row("backwards", Days, "2007-05-15", "2007-05-14", "The start date is after the end date.",
            "The bar counts 15 May 2007.");
        row("steps", Days, "2007-05-14", "2007-08-21", "",
            "Each bar after the first counts 2 days of 2007. 21 Aug lies after the last bar.");
        row("weeks", Weeks, "2007-05-07", "2008-05-13", "",
            "Each bar after the first counts 7 days, 2007 to 2008. 6 to 13 May 2008 lie after the "
            "last bar.");
        row("months", Months, "2007-04-20", "2007-08-20", "",
            "Each bar after the first counts one month of 2007.");
        row("years, which end early", Months, "1900-01-01", "2007-08-20", uncounted,
            "Each bar after the first counts 2 years, 1900 to 2006. 2 Jan 2006 to 20 Aug 2007 lie "
            "after the last bar.");
    }
    void sentences() {
        const auto [grouping, start, end, notice, note] =
            test::row<int, QString, QString, QString, QString>();
        const ChartRequest request{9, grouping, {day(start), day(end)}, false, {}};
        ProjectRecords records(m_table->connection());
        const ChartTexts texts = queryChartSeries(records, request).texts;
        QCOMPARE(texts.notice, notice);
        QCOMPARE(texts.note, note);
    }

    void anEmptyProjectAndAnEmptyNode() {
        ChartRequest request{0, Days, {day("2007-05-01"), day("2007-06-30")}, true, {}};
        const QString empty =
            "This project has no records yet.\nChoose Import to read a report file into it.\n"
            "For the manual, see \"man veltrona\".";
        test::RecordTable nothing;
        ProjectRecords noRecords(nothing.connection());
        QCOMPARE(queryChartSeries(noRecords, request).texts.notice, empty);
        request.path = {{"Gone"}};
        ProjectRecords records(m_table->connection());
        QCOMPARE(queryChartSeries(records, request).texts.notice,
                 "There are no records for this selection.");
    }

    void allValuesAfterTheLastBar() {
        test::RecordTable table;
        table.insert({{"GoogleDate", "2007-05-14"}});
        table.insert({{"GoogleDate", "2007-05-20"}, {"MaxCpc", -1}, {"Clicks", 1}});
        ProjectRecords records(table.connection());
        const auto notice = [&](int metric, int grouping) {
            const DateRange week{day("2007-05-14"), day("2007-05-20")};
            return queryChartSeries(records, {metric, grouping, week, false, {}}).texts.notice;
        };
        const int clicks = 3;
        const int maxCpc = 9; // counts what is above 0
        QCOMPARE(notice(clicks, Weeks), "The values of this period lie on days that no bar counts."
                                        "\nGroup by days to see them.");
        QCOMPARE(notice(maxCpc, Weeks), "");
        QCOMPARE(notice(clicks, Days), "");
    }

    void theEarHearsTheHighest() {
        const ChartPeriods weeks{ChartUnit::Week, 2, 1};
        std::vector<ChartBar> bars = emptyBars(weeks, day("2007-05-14"));
        bars[0].value = -3;
        bars[1].value = 1234.5;
        bars[1].hasRecords = true;
        QCOMPARE(chartTexts(weeks, {day("2007-05-14"), day("2007-05-21")}, bars, {}).description,
                 "2 bars, 14 May 2007 to 21 May 2007. Highest: 1234.5, 15 May 2007 \u2013 21 May "
                 "2007. Each bar after the first counts 7 days of 2007.");
        bars[0].value = bars[1].value = 0;
        QVERIFY(chartTexts(weeks, {day("2007-05-14"), day("2007-05-21")}, bars, {})
                    .description.startsWith("2 bars, 14 May 2007 to 21 May 2007: all 0. "));
    }

private:
    std::unique_ptr<test::RecordTable> m_table;
};

QTEST_GUILESS_MAIN(ChartTextsTest)
#include "chartTextsTest.moc"
