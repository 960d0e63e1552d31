// The statistics of many random records against tests/reference/statistics.py, which adds them up
// by itself and with cell texts alone.
#include "analysis/nodeStatistics.h"
#include "analysis/nodeTag.h"
#include "analysis/statisticsGrid.h"
#include "support/dataTable.h"
#include "support/recordTable.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTest>

#include <random>

using namespace veltrona;

namespace {

const QStringList campaigns = {"Zoo", "apple", "Apple", "\u00C4pfel", "O'Neil ORDER BY x", "<b>&%"};
constexpr int days = 60;
constexpr int records = 9000;
const int firstDay = dayNumber(CalendarDay{2007, 3, 1});

/// Numbers that the engine hands out as whole numbers, decimals or texts; their sums are the same
/// in whatever order, also those above 15 digits.
class RandomRecords {
public:
    qint64 whole(int below) {
        return static_cast<qint64>(m_random() % static_cast<quint64>(below));
    }
    double decimal(int below, int scale) { return static_cast<double>(whole(below)) / scale; }
    bool oneOf(int count) { return whole(count) == 0; }

    std::map<std::string, QVariant> record(int number) {
        const QString campaign = campaigns.at(whole(static_cast<int>(campaigns.size())));
        const qint64 cpc = oneOf(3) ? 0 : whole(900'000);
        return {
            {"Campaign", campaign},
            {"Adgroup", QString(oneOf(9) ? " group %1 " : "group %1").arg(whole(5))},
            {"AdwordsTyp", QString(oneOf(3) ? "Content Only" : "Search Only")},
            {"KeyWord", QString("key %1").arg(whole(30))},
            {"kwType", QString(oneOf(2) ? "Broad" : "Exact")},
            {"GoogleDate", isoText(firstDay + number * days / records + (oneOf(4) ? .75 : 0))},
            {"Clicks", whole(100)},
            {"Impressions", campaign == "Zoo" ? whole(1'000'000) * 1'000'000'000 : whole(5000)},
            {"ctr", oneOf(5) ? QVariant(QString("%1.5%").arg(whole(90))) : decimal(10'000, 100)},
            {"cpc", cpc},
            {"cost", oneOf(4) ? QVariant(decimal(100'000'000, 7)) : cpc * whole(50)},
            {"conv", oneOf(2) ? QVariant(whole(4)) : decimal(2000, 1000)},
            {"Pos", oneOf(4) ? 0 : decimal(90, 10)},
            {"ConvValue", oneOf(2) ? 0 : decimal(3000, 100)},
            {"Transactions", oneOf(3) ? decimal(50, 4) : 1.0},
        };
    }

private:
    std::mt19937_64 m_random{20070301};
};

} // namespace

class StatisticsReferenceTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() {
        m_table = std::make_unique<test::RecordTable>();
        sqlite::Transaction transaction(m_table->connection());
        RandomRecords random;
        for (int i = 0; i < records; ++i)
            m_table->insert(random.record(i));
        transaction.commit();
    }

    void agrees_data() {
        const test::DataTable<QString, QString, QStringList, int, int> row(
            "level", "grouping", "conditions", "from", "to");
        const QStringList campaign = {"campaign=O'Neil ORDER BY x"};
        const QStringList adGroup = campaign + QStringList{"adGroup=group 2"};
        const QStringList search = adGroup + QStringList{"adWordsTyp=Search Only"};
        const QStringList keyword = search + QStringList{"Keyword=key 7"};
        row("root", "0-", "campaign", {}, 0, days);
        row("root, three days", "0-", "campaign", {}, 20, 22);
        row("campaign", "1-", "adGroup", campaign, 0, days);
        row("campaign, one day", "1-", "adGroup", campaign, 9, 9);
        row("ad group", "2-", "adWordsTyp", adGroup, 10, 50);
        row("search", "3-", "Keyword", search, 0, days);
        row("keyword", "4-", "kwType", keyword, 0, days);
    }
    void agrees() {
        QFETCH(QString, level);
        QFETCH(QString, grouping);
        QFETCH(QStringList, conditions);
        QFETCH(int, from);
        QFETCH(int, to);
        TreeNode node;
        node.Key = level + "path";
        for (const QString &condition : conditions)
            node.Tag += " AND " + condition.section('=', 0, 0) + "='" +
                        doubledApostrophes(condition.section('=', 1)) + "'";
        node.Tag += " ORDER BY " + grouping;

        const double first = firstDay + from;
        const double last = firstDay + to;
        Grid grid(gridColumn::Count);
        showStatistics(queryNodeStatistics(m_table->connection(), node, {first, last}), grid, true);

        const QJsonObject expected = reference(
            QStringList{m_table->connection().path(), isoText(first), isoText(last), grouping} +
            conditions);
        const QJsonArray rows = expected["rows"].toArray();
        QVERIFY(rows.size() > 1);
        QCOMPARE(grid.Rows() - 2, rows.size());
        for (int i = 0; i < rows.size(); ++i) {
            const int row = i + 1 < rows.size() ? i + 1 : grid.Rows() - 1;
            for (int col = 0; col < grid.Cols(); ++col)
                QCOMPARE(grid.TextMatrix(row, col), rows[i].toArray()[col].toString());
            const bool isRed = grid.cellColor(row, 0) == red;
            QCOMPARE(isRed, expected["red"].toArray().contains(i));
        }
    }

private:
    QJsonObject reference(const QStringList &arguments) const {
        QProcess python;
        python.start(VELTRONA_PYTHON, QStringList{VELTRONA_REFERENCE} + arguments);
        python.waitForFinished(120'000);
        const QByteArray errors = python.readAllStandardError();
        if (!errors.isEmpty())
            qWarning("%s", errors.constData());
        return QJsonDocument::fromJson(python.readAllStandardOutput()).object();
    }

    std::unique_ptr<test::RecordTable> m_table;
};

QTEST_GUILESS_MAIN(StatisticsReferenceTest)
#include "statisticsReferenceTest.moc"
