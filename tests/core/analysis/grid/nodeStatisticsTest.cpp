// The statistics of a node from records worked out by hand, from the table to the grid's cells.
#include "core/analysis/grid/nodeStatistics.h"

#include "core/analysis/chart/chartSeries.h"
#include "core/analysis/grid/statisticsGrid.h"
#include "core/analysis/tree/navigationTexts.h"
#include "core/analysis/tree/navigationTree.h"
#include "core/base/storedText.h"
#include "support/gridText.h"
#include "support/recordTable.h"

#include <QTest>

using namespace veltrona;

namespace {

QStringList shown(const NodeStatistics &statistics) {
    Grid grid(gridColumn::Count);
    initGrid(grid, false);
    fillGrid(statistics, grid, false);
    sumUp(grid, false);
    return test::gridText(grid);
}

} // namespace

class NodeStatisticsTest : public QObject {
    Q_OBJECT
private slots:
    void numbersBeyondTheReports() {
        test::RecordTable table;
        const auto record = [&table](const char *campaign, const QVariant &clicks, qint64 cost,
                                     int conv) {
            table.insert({{"Campaign", campaign},
                          {"GoogleDate", "2007-05-14"},
                          {"Clicks", clicks},
                          {"cost", cost},
                          {"conv", conv}});
        };
        table.connection().execute("BEGIN");
        for (int i = 0; i < 1000; ++i)
            record("shoes", 0.1, 0, 0); // the float sum is 99.9999999999986
        record("Shoes", 1, 3000000, -2);
        // Each record's 15 digits are added up, but its plain numbers are divided.
        record("tons", 53908118019552920LL, 10000000000000049, 2);
        record("tons", 13461290872932751LL, 0, 0);
        table.connection().execute("COMMIT");
        ProjectRecords records(table.connection());
        const DateValue day = test::day("2007-05-14");
        QCOMPARE(shown(queryNodeStatistics(records, {}, {day, day})).mid(1, 3),
                 QStringList({"Shoes|1|0|0%|0|3|-2|-2%|-1500000|0|0|-100%|0||",
                              "shoes|100|0|0%|0|0|0|0%|0|0|0|0%|0||",
                              "tons|6.73694088924857E+16|0|0%|0|10000000000|2|2%|"
                              "5.00000000000002E+15|0|0|-100%|0||"}));
        QVERIFY(queryNodeStatistics(records, {}, {day + 1, day - 1}).rows.empty());
        const NodePath shoes{{"shoes"}};
        QCOMPARE(queryNodeStatistics(records, shoes, {day, day}).rows.size(), 1U);
        QCOMPARE(queryNodeStatistics(records, shoes, {day, day}).rows[0].sums[gridColumn::Clicks],
                 100.0);
    }

    // From the table to tree, grid, chart and report, and back to the records by the node's path.
    void keepsEveryCharacterOfAName() {
        const QStringList names = {"\uFEFF\uFEFFmark",
                                   QString::fromLatin1("a\0b", 3),
                                   textOf("\xFFz\xED\xA0\x80"),
                                   textOf("\xFE\U0001F600z"),
                                   QString(100'000, 'l'),
                                   "\uFFFDz",
                                   "\U0001F600"};
        test::RecordTable table;
        for (const QString &name : names)
            table.insert({{"Campaign", name}, {"GoogleDate", "2007-05-14"}, {"Clicks", 7}});
        Tree tree;
        buildNavigationTree(table.connection(), "", tree);
        const DateValue day = test::day("2007-05-14");
        const int clicks = int(chartMetrics().indexOf("Clicks"));
        QStringList found;
        for (const std::size_t bound : {std::size_t(0), ProjectRecords::maxBytes}) {
            ProjectRecords records(table.connection(), bound); // from SQLite, or from memory
            records.read();
            for (const TreeNode *node : tree.Nodes().Item(1)->Children) {
                found += node->Text();
                const NodeStatistics below =
                    queryNodeStatistics(records, pathOf(*node), {day, day});
                QCOMPARE(int(below.rows.size()), 1);
                QCOMPARE(below.rows[0].sums[gridColumn::Clicks], 7.0);
                const ChartSeries series =
                    queryChartSeries(records, {clicks, 0, {day, day}, false, pathOf(*node)});
                QCOMPARE(series.bars[0].value, 7.0);
            }
            const QStringList rows = shown(queryNodeStatistics(records, {}, {day, day}));
            for (const QString &name : names)
                QCOMPARE(rows.filter(name + '|').size(), 1);
        }
        QCOMPARE(found.size(), 2 * names.size());
        QCOMPARE(QSet(found.begin(), found.end()), QSet(names.begin(), names.end()));
    }
};

QTEST_GUILESS_MAIN(NodeStatisticsTest)
#include "nodeStatisticsTest.moc"
