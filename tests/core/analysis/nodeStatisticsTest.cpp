// The statistics of a node from records worked out by hand, from the table to the grid's cells.
#include "analysis/nodeStatistics.h"
#include "analysis/nodeTag.h"
#include "analysis/statisticsGrid.h"
#include "support/dataTable.h"
#include "support/recordTable.h"

#include <QTest>

using namespace veltrona;

namespace {

/// Neither SQL nor the Tag's own words in a name mean anything.
const QString hostileName = "O'Neil'; DELETE FROM tblGoogleDays; -- ORDER BY ?1";

using Values = std::map<std::string, QVariant>;

TreeNode nodeOf(const QString &key, const QString &tag) {
    TreeNode node;
    node.Key = key;
    node.Tag = tag;
    return node;
}

TreeNode root() {
    return nodeOf("0-Campaign Summary", " ORDER BY campaign");
}

TreeNode inCampaign(const QString &key, const QString &campaign, const QString &rest) {
    return nodeOf(key, " AND campaign='" + doubledApostrophes(campaign) + "'" + rest);
}

DateRange days(int first, int last, double time = 0) {
    return {dateValue(CalendarDay{2007, 5, first}) + time, dateValue(CalendarDay{2007, 5, last})};
}

QStringList names(const NodeStatistics &statistics) {
    QStringList all;
    for (const StatisticsRow &row : statistics.rows)
        all += row.name;
    return all;
}

QStringList shown(const NodeStatistics &statistics, Grid &grid) {
    showStatistics(statistics, grid, false);
    QStringList rows;
    for (int row = 0; row < grid.Rows(); ++row) {
        QStringList texts;
        for (int col = 0; col < grid.Cols(); ++col)
            texts += grid.TextMatrix(row, col);
        rows += texts.join('|');
    }
    return rows;
}

} // namespace

class NodeStatisticsTest : public QObject {
    Q_OBJECT
private slots:
    void init() { m_table = std::make_unique<test::RecordTable>(); }
    void allColumns() {
        const auto record = [this](const char *campaign, const std::vector<QVariant> &values) {
            constexpr const char *columns[] = {"Clicks", "Impressions", "ctr",
                                               "cpc",    "cost",        "conv",
                                               "Pos",    "ConvValue",   "Transactions"};
            Values all{{"Campaign", campaign}};
            for (std::size_t i = 0; i < values.size(); ++i)
                all[columns[i]] = values[i];
            insert(all);
        };
        record("A", {10, 200, 5, 250000, 2500000, 2, 1.5, 1.5, 1});
        record("B", {3, 30, 10.25, 500000, 1500000, .5, 2, 3, 0});
        record("A", {0, 50, 0, 0, 0, 0, 0, 0, 0});
        record("B", {1, 10, 10, 100000, 100000, 3, 3.1, .25, 0});
        record("C", {0, 7, 0, 0, 0, 0, 0, 0, 0});

        // Cost/Conv.: 2500000 / 2 for A; 1500000 / .5 + 100000 / 3 for B.
        // Avg.Pos: (2 + 3.1) / 2 = 2.55 for B; (1.5 + 2.55 + 0) / 3 = 1.35 below.
        // Avg.CPC: .3 for B; (.25 + .3 + 0) / 3 below.
        Grid grid(gridColumn::Count);
        initGrid(grid, false);
        const QStringList rows = shown(query(root(), days(14, 14)), grid);
        QCOMPARE(rows.mid(1),
                 QStringList(
                     {"A|10|250|5%|0.25|2.5|2|2%|1250000|1.5|1.5|-40%|1|1|1",
                      "B|4|40|20.25%|0.3|1.6|3.5|3.5%|3033333.33|2.6|3.25|103.12%|0|2|2",
                      "C|0|7|0%|0|0|0|0%|0|0|0|0%|0||", QString(14, '|'),
                      "Summary|14|297|25.25%|0.18|4.1|5.5|5.5%|4283333.33|1.4|4.75|15.85%|1||"}));
    }

    void numbersThatAreTexts() {
        insert({{"ctr", "2.5%"}, {"conv", "1%2"}, {"cost", "36 or so"}, {"cpc", "none"}});
        insert({{"ctr", ".5"}, {"Clicks", qint64(123456789012345678)}, {"Pos", .1234567890123456}});
        const auto rows = query(root(), days(14, 14)).rows;
        QCOMPARE(rows.size(), std::size_t(1));
        const StatisticsRow &row = rows.front();
        QCOMPARE(row.ctr, 3.);
        QCOMPARE(row.conversions, 1.);
        QCOMPARE(row.conversionRate, 12.);
        QCOMPARE(row.costPerConversion, 36.);
        QCOMPARE(row.recordsWithCpc, 0);
        QVERIFY(row.clicks == 123456789012346E3);
        QVERIFY(row.position == .123456789012346);
    }

    void headingsAndNames() {
        const auto record = [this](const char *branch, const char *keyword, const char *type) {
            insert({{"Campaign", hostileName},
                    {"Adgroup", "g"},
                    {"AdwordsTyp", branch},
                    {"KeyWord", keyword},
                    {"kwType", type}});
        };
        record("Search Only", "k1", "Broad");
        record("Search Only", "k1", " Exact ");
        record("Search Only", "k2", "Phrase");
        record("Content Only", "k3", "Broad");
        insert({{"Campaign", "ONeil"}, {"Adgroup", "h"}});
        const QString group = " AND adGroup='g'";
        const QString search = group + " AND adWordsTyp='Search Only'";
        const QString content = group + " AND adWordsTyp='Content Only'";
        const QString types = "Keyword Type|Broad|Exact";
        for (const auto &[key, rest, expected] : std::initializer_list<std::array<QString, 3>>{
                 {"1-path", "", "Adgroups|g"},
                 {"2-path", group, "Search and Content|Content Only|Search Only"},
                 {"3-path", search, "Keywords|k1|k2"},
                 {"3-path", content, "Keywords|k3"},
                 {"4-path", search + " AND Keyword='k1'", types},
                 {"5-path", search + " AND Keyword='k1'", types}}) {
            const auto statistics =
                query(inCampaign(key, hostileName, rest + " ORDER BY kwType"), days(1, 31));
            QCOMPARE(statistics.caption, QString("path"));
            QCOMPARE((QStringList{statistics.heading} + names(statistics)).join('|'), expected);
        }
    }

    void period_data() {
        const test::DataTable<DateRange, double> row("range", "clicks");
        row("one day", days(14, 14), 6);
        row("times of day of a picker don't count", days(14, 14, .9), 6);
        row("all days", days(1, 31), 15);
        row("end before start", days(15, 14), 0);
    }
    void period() {
        QFETCH(DateRange, range);
        QFETCH(double, clicks);
        int clicksOfDate = 1;
        for (const char *date :
             {"2007-05-13 23:59:59", "2007-05-14", "2007-05-14 23:59:59", "2007-05-15"}) {
            insert({{"GoogleDate", date}, {"Clicks", clicksOfDate}});
            clicksOfDate *= 2;
        }
        // The rest of the table, so that a short period goes by its index.
        for (int i = 0; i < 50; ++i)
            insert({{"GoogleDate", "2006-01-01"}, {"Clicks", 100}});
        double sum = 0;
        for (const StatisticsRow &row : query(root(), range).rows)
            sum += row.clicks;
        QCOMPARE(sum, clicks);
    }

    void emptyFormAndBack() {
        insert({{"Adgroup", "g"}, {"cost", 2000000}});
        insert({{"Adgroup", "h"}});
        const TreeNode campaign = inCampaign("1-x", QString(), " ORDER BY adGroup");
        Grid grid(gridColumn::Count);
        initGrid(grid, false);
        QCOMPARE(shown(query(campaign, days(14, 14)), grid).size(), 5);
        QCOMPARE(grid.TextMatrix(0, 0), QString("Adgroups"));

        const QStringList empty = shown(query(campaign, days(1, 2)), grid);
        QCOMPARE(empty.size(), 3);
        QCOMPARE(empty.at(0), QString("Campaigns|Clicks|Impr.|CTR|Avg.CPC|Cost|Conv.|Conv.Rate|"
                                      "Cost/Conv.|Avg.Pos|Conv. Val.|ROI|Transactions||"));
        QCOMPARE(empty.at(1), QString(14, '|'));
        QCOMPARE(empty.at(2), QString("Summary|0|0|0.00%|0|0|0|0.00%|0.00|0.0|.00|0.00%|0||"));

        const QStringList again = shown(query(campaign, days(14, 14)), grid);
        QCOMPARE(again.at(0).section('|', 0, 0), QString("Adgroups"));
        QCOMPARE(again.at(1), QString("g|0|0|0%|0|2|0|0%|0|0|0|-100%|0||"));
    }

private:
    NodeStatistics query(const TreeNode &node, const DateRange &range) {
        return queryNodeStatistics(m_table->connection(), node, range);
    }
    void insert(Values values) {
        values.emplace("GoogleDate", "2007-05-14");
        m_table->insert(values);
    }

    std::unique_ptr<test::RecordTable> m_table;
};

QTEST_GUILESS_MAIN(NodeStatisticsTest)
#include "nodeStatisticsTest.moc"
